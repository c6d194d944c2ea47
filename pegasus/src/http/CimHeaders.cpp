#include "http/CimHeaders.h"

#include "http/BasicAuthentication.h"
#include "http/UriText.h"
#include "model/ServerError.h"

#include <Pegasus/Client/CIMClientException.h>
#include <charconv>
#include <utility>

namespace Pegasus::http {

namespace {

constexpr unsigned kOk = 200;
constexpr unsigned kUnauthorized = 401;

[[noreturn]] void fail(const Endpoint& endpoint, const std::string& what) {
    throw CIMClientMalformedHTTPException(String(endpoint.text() + ": " + what));
}

String decodedField(const HttpFields& fields, std::string_view name) {
    const std::string* value = fields.findCim(name);
    return value != nullptr ? String(decodeUri(*value)) : String();
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::string_view unquoted(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

/// Takes the part up to a separator from the front of a text.
std::string_view takeUpTo(char separator, std::string_view& text) {
    const std::size_t end = text.find(separator);
    const std::string_view part = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

bool isXmlInUtf8(std::string_view contentType) {
    const std::string_view type = takeUpTo(';', contentType);
    if (!equalsNoCase(type, "application/xml") && !equalsNoCase(type, "text/xml")) {
        return false;
    }
    while (!contentType.empty()) {
        std::string_view value = takeUpTo(';', contentType);
        const std::string_view name = takeUpTo('=', value);
        if (equalsNoCase(name, "charset") && !equalsNoCase(unquoted(trimmed(value)), "utf-8")) {
            return false;
        }
    }
    return true;
}

/// The reason of an error's status, and who gave it.
std::string reasonOf(const HttpHead& head, const Endpoint& endpoint) {
    std::string reason = head.reason + (head.reason.empty() ? "from " : " from ") + endpoint.text();
    if (head.status == kUnauthorized) {
        const std::string schemes = offeredSchemes(head.fields);
        reason += schemes.empty() ? ", which names no scheme of logging in" : ", which offers " + schemes;
    }
    return reason;
}

} // namespace

HttpRequest makeCimRequest(std::string_view method, std::string_view nameSpace, std::string body) {
    HttpRequest request;
    request.target = "/cimom";
    request.fields = "Content-Type: application/xml; charset=utf-8\r\n"
                     "CIMOperation: MethodCall\r\n"
                     "CIMMethod: " +
                     encodeUri(method) +
                     "\r\n"
                     "CIMObject: " +
                     encodeUri(nameSpace) +
                     "\r\n"
                     "TE: chunked, trailers\r\n";
    request.body = std::move(body);
    return request;
}

void checkCimAnswer(const HttpHead& head, const Endpoint& endpoint) {
    if (head.status != kOk) {
        throw CIMClientHTTPErrorException(head.status, String(reasonOf(head, endpoint)),
                                          decodedField(head.fields, "CIMError"),
                                          decodedField(head.fields, "PGErrorDetail"));
    }
    const std::string* operation = head.fields.findCim("CIMOperation");
    if (operation == nullptr) {
        fail(endpoint, "the answer has no CIMOperation header; is this a CIM server?");
    }
    if (!equalsNoCase(*operation, "MethodResponse")) {
        fail(endpoint, "the answer's CIMOperation header is \"" + *operation + "\" instead of \"MethodResponse\"");
    }
    const std::string* contentType = head.fields.find("Content-Type");
    if (contentType != nullptr && !isXmlInUtf8(*contentType)) {
        fail(endpoint, "the answer's content type is \"" + *contentType + "\" instead of XML in UTF-8");
    }
}

void checkCimTrailers(const HttpFields& trailers, const Endpoint& endpoint) {
    const std::string* status = trailers.findCim("CIMStatusCode");
    if (status == nullptr) {
        return;
    }
    Uint32 code = 0;
    const char* const end = status->data() + status->size();
    if (const auto parsed = std::from_chars(status->data(), end, code); parsed.ec != std::errc() || parsed.ptr != end) {
        fail(endpoint, "the trailer CIMStatusCode is not a number: \"" + *status + '"');
    }
    if (code == CIM_ERR_SUCCESS) {
        return;
    }
    throw detail::serverError(code, decodedField(trailers, "CIMStatusCodeDescription"));
}

} // namespace Pegasus::http
