#pragma once

#include "cimxml/ReturnValueSink.h"
#include "xml/Checkpoint.h"

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/ClientLimits.h>

#include <memory>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// To be derived from by a caller that may end the decoding early.
using xml::Checkpoint;

class Findings;
class ObjectDecoder;

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
    /// `messageId` and `method` are those of the request. The sink must outlive the decoder. `objects` may have decoded
    /// other answers, which makes it faster; it serves one answer at a time. The checkpoint, if there is one, must
    /// outlive the decoder, too, and so must the findings: with them the answer is read leniently (see
    /// CIMClient::setLenient), and they receive what was found.
    ResponseDecoder(std::string messageId, std::string method, ReturnValueSink& sink,
                    std::shared_ptr<ObjectDecoder> objects = nullptr, const ClientLimits& limits = {},
                    const Checkpoint* checkpoint = nullptr, Findings* findings = nullptr);
    ~ResponseDecoder();

    /// Takes the next bytes of the body, cut anywhere.
    void feed(std::string_view chunk);

    /// Ends the decoding: the body is complete. Throws CIMClientXmlException when the document is not, CIMException
    /// when it holds the server's error instead of a return value. An answer with neither is accepted: the server's
    /// status may come in the HTTP trailers.
    void finish();

    /// How many bytes have been fed.
    Uint64 bytes() const noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Pegasus::cimxml
