#include <Pegasus/Client/CIMClientException.h>

#include <string>

namespace Pegasus {
inline namespace bundled {

namespace {

String describe(Uint32 code, const String& reason, const String& cimError, const String& cimErrorDetail) {
    String message(std::string_view("HTTP error " + std::to_string(code)));
    if (!reason.empty()) {
        message.append(String(" ")).append(reason);
    }
    if (!cimError.empty()) {
        message.append(String(", CIMError: ")).append(cimError);
    }
    if (!cimErrorDetail.empty()) {
        message.append(String(", ")).append(cimErrorDetail);
    }
    return message;
}

} // namespace

CIMClientHTTPErrorException::CIMClientHTTPErrorException(Uint32 code, const String& reason, const String& cimError,
                                                         const String& cimErrorDetail)
    : Exception(describe(code, reason, cimError, cimErrorDetail)),
      code_(code),
      cimError_(cimError),
      cimErrorDetail_(cimErrorDetail) {}

} // namespace bundled
} // namespace Pegasus
