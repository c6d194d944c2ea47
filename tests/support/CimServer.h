#pragma once

#include "support/HttpRequest.h"
#include "support/LoopbackAddress.h"
#include "support/ScriptedServer.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace support {

/// A CIM server without a model: it answers each request from a table that the test fills, and remembers all of them.
/// Every operation may be called at any time and from any thread; a change counts from the next request on.
class CimServer {
  public:
    /// One request as the server understood it.
    struct Call {
        std::string messageId;
        std::string method;    ///< the name of the IMETHODCALL
        std::string nameSpace; ///< the steps of the LOCALNAMESPACEPATH, joined with '/'
        /// Each IPARAMVALUE by name: a value's text, the name of a CLASSNAME, the texts of an array joined with ','.
        std::map<std::string, std::string> parameters;
        HttpRequest http;
    };

    enum class ErrorPlace { kBody, kTrailers };
    enum class Framing { kContentLength, kChunked };

    explicit CimServer(std::string address = LoopbackAddress());
    ~CimServer();

    /// See ScriptedServer.
    std::uint16_t Listen(std::uint16_t port);
    std::uint16_t ListenTls(std::uint16_t port, const TestCertificate& certificate);
    void Stop();
    const std::string& Address() const;
    std::size_t ConnectionCount() const;

    /// Answers a method's calls for one object (the text of its ClassName, QualifierName or EnumerationContext
    /// parameter, case aside; empty where the call has none) with the XML that stands inside IRETURNVALUE, and perhaps
    /// the output parameters after it.
    /// A call that the table does not know gets CIM_ERR_NOT_FOUND or, when it is one of a pulled enumeration,
    /// CIM_ERR_NOT_SUPPORTED: the server has none unless the table says otherwise.
    void Answer(const std::string& method, const std::string& object, const std::string& returnValue,
                const std::string& outputParameters = {});

    /// Answers with one portion of a pulled enumeration. `next` is the context by which the next one is pulled; the
    /// enumeration has ended when it is empty.
    void AnswerPortion(const std::string& method, const std::string& object, const std::string& objects,
                       const std::string& next);

    /// Answers with a CIM error instead. In the trailers it follows an empty response (needs Framing::kChunked, which
    /// is then used whatever SetFraming said).
    void Fail(const std::string& method, const std::string& object, unsigned code, const std::string& description,
              ErrorPlace place = ErrorPlace::kBody);

    /// How answers are delimited; by Content-Length unless set.
    void SetFraming(Framing framing);

    /// Demands Basic authentication from now on.
    void RequireUser(const std::string& user, const std::string& password);

    /// Sends these bytes, and nothing else, as the answer to the next request, then closes the connection.
    void AnswerNextWith(const std::string& bytes);

    /// All requests so far, also those answered with 401 or with bytes.
    std::vector<Call> Calls() const;
    void ForgetCalls();

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace support
