#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <string_view>

namespace Pegasus::cimxml {

/// Receives the objects of a return value, one by one, in the order of the document, and output parameters. An
/// operation overrides what it expects; every other kind of object ends in CIMClientResponseException, and every other
/// output parameter is ignored.
class ReturnValueSink {
  public:
    virtual ~ReturnValueSink() = default;

    /// Throws the CIMClientResponseException for an object of a kind that the operation does not return.
    [[noreturn]] static void throwUnexpected(std::string_view kind);

    virtual void onClass(const CIMClass& cimClass);
    /// The instance carries its path where the answer has it, else only the class name.
    virtual void onInstance(const CIMInstance& instance);
    /// An instance to which the answer gives no path; taken by onInstance() unless this is overridden, too.
    virtual void onInstanceAlone(const CIMInstance& instance);
    /// A class or an instance, with its path where the answer has it.
    virtual void onObject(const CIMObject& object);
    virtual void onClassName(const CIMName& name);
    virtual void onInstanceName(const CIMObjectPath& name);
    /// The path of a class or an instance.
    virtual void onObjectPath(const CIMObjectPath& path);
    virtual void onQualifierDecl(const CIMQualifierDecl& declaration);
    /// A value without a type: a text, an array of texts, or references. Only where takesValues() says so.
    virtual void onValue(const CIMValue& value);
    virtual bool takesValues() const { return false; }
    /// The path of an instance, of operations that return nothing else.
    virtual void onInstancePath(const CIMObjectPath& path);
    /// A scalar value, as its text in the answer.
    virtual void onValueText(const String& text);

    /// An output parameter with a scalar value, as its text in the answer; one that is null is not handed over.
    virtual void onOutputText(const String& /*name*/, const String& /*text*/) {}
    /// An output parameter that is a class.
    virtual void onOutputClass(const String& /*name*/, const CIMClass& /*cimClass*/) {}
};

} // namespace Pegasus::cimxml
