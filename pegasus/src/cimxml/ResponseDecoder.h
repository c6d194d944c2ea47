#pragma once

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/ClientLimits.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <memory>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

class Checkpoint;
class Findings;
class ObjectDecoder;

/// Receives the objects of a return value, one by one, in the order of the document, and output parameters. An
/// operation overrides what it expects; every other kind of object ends in CIMClientResponseException, and every other
/// output parameter is ignored.
class ReturnValueSink {
  public:
    virtual ~ReturnValueSink() = default;

    virtual void onClass(const CIMClass& cimClass);
    /// The instance carries its path where the answer has it, else only the class name.
    virtual void onInstance(const CIMInstance& instance);
    /// An instance to which the answer gives no path; taken by onInstance() unless this is overridden, too.
    virtual void onInstanceAlone(const CIMInstance& instance);
    /// A class or an instance, with its path where the answer has it.
    virtual void onObject(const CIMObject& object);
    virtual void onClassName(const CIMName& name);
    virtual void onInstanceName(const CIMObjectPath& name);
    /// Where a class or an instance is.
    virtual void onObjectPath(const CIMObjectPath& path);
    virtual void onQualifierDecl(const CIMQualifierDecl& declaration);
    /// A value without a type: a text, an array of texts, or references. Only where takesValues() says so.
    virtual void onValue(const CIMValue& value);
    virtual bool takesValues() const { return false; }
    /// Where an instance is, of operations that promise nothing else.
    virtual void onInstancePath(const CIMObjectPath& path);
    /// A value that is no array, as it stands there.
    virtual void onValueText(const String& text);

    /// An output parameter with a value that is no array, as it stands there; one that is null is not handed over.
    virtual void onOutputText(const String& /*name*/, const String& /*text*/) {}
    /// One that is a class.
    virtual void onOutputClass(const String& /*name*/, const CIMClass& /*cimClass*/) {}
};

/// Decodes the body of an answer while it arrives. Each object of the return value is handed to the sink once it is
/// complete, at the latest when as much again as its text has arrived or the body ends; no more than that is held as
/// text.
///
/// feed() and finish() throw
///   CIMClientXmlException       for a body that is not well-formed, not CIM-XML, holds a bad value or passes a limit;
///                               the message says where that is,
///   CIMClientResponseException  for the answer to another request, or an object of an unexpected kind;
/// what the sink and the checkpoint throw passes through. After an exception the decoder is of no further use.
class ResponseDecoder {
  public:
    /// `messageId` and `method` are those of the request. The sink must outlive the decoder. What decodes the objects
    /// may have done so for other answers, and is faster then; it serves one answer at a time. The checkpoint, if there
    /// is one, must outlive the decoder, too, and so must the findings: with them the answer is read leniently (see
    /// CIMClient::setLenient), and they get what it takes.
    ResponseDecoder(std::string messageId, std::string method, ReturnValueSink& sink,
                    std::shared_ptr<ObjectDecoder> objects = nullptr, const ClientLimits& limits = {},
                    const Checkpoint* checkpoint = nullptr, Findings* findings = nullptr);
    ~ResponseDecoder();

    /// Takes the next bytes of the body, cut anywhere.
    void feed(std::string_view chunk);

    /// Says that the body is complete. Throws CIMClientXmlException when the document is not, CIMException when it
    /// holds the server's error instead of a return value. An answer with neither is accepted: the server's status may
    /// stand elsewhere.
    void finish();

    /// How many bytes have been fed.
    Uint64 bytes() const noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Pegasus::cimxml
