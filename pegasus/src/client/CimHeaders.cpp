#include "client/CimHeaders.h"

#include "http/BasicAuthentication.h"
#include "http/FieldText.h"
#include "http/PercentEncoding.h"
#include "model/ServerError.h"
#include "text/Ascii.h"

#include <Pegasus/Client/CIMClientException.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace Pegasus::client {

using http::Endpoint;
using http::HttpFields;
using http::HttpHead;
using http::HttpRequest;

namespace {

constexpr unsigned kOk = 200;

[[noreturn]] void fail(const Endpoint& endpoint, const std::string& what) {
    throw CIMClientMalformedHTTPException(String(endpoint.text() + ": " + what));
}

String decodedField(const HttpFields& fields, std::string_view name) {
    const std::string* value = fields.findExtension(name);
    return value != nullptr ? String(http::percentDecoded(*value)) : String();
}

std::string_view unquoted(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

/// Takes the part up to a separator from the front of a text.
std::string_view takeUpTo(char separator, std::string_view& text) {
    const std::size_t end = text.find(separator);
    const std::string_view part = http::withoutBlanks(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

bool isXmlInUtf8(std::string_view contentType) {
    const std::string_view type = takeUpTo(';', contentType);
    if (!text::equalIgnoringCase(type, "application/xml") && !text::equalIgnoringCase(type, "text/xml")) {
        return false;
    }
    while (!contentType.empty()) {
        std::string_view value = takeUpTo(';', contentType);
        const std::string_view name = takeUpTo('=', value);
        if (text::equalIgnoringCase(name, "charset") &&
            !text::equalIgnoringCase(unquoted(http::withoutBlanks(value)), "utf-8")) {
            return false;
        }
    }
    return true;
}

/// The reason of an error's status, and who gave it.
std::string reasonOf(const HttpHead& head, const Endpoint& endpoint) {
    std::string reason = head.reason + (head.reason.empty() ? "from " : " from ") + endpoint.text();
    if (head.status == http::kUnauthorized) {
        const std::string schemes = http::offeredSchemes(head.fields);
        reason += schemes.empty() ? ", which names no scheme of logging in" : ", which offers " + schemes;
    }
    return reason;
}

/// A field line; nothing without languages.
std::string acceptLanguage(const AcceptLanguageList& languages) {
    std::string line;
    for (Uint32 i = 0; i < languages.size(); ++i) {
        line += line.empty() ? "Accept-Language: " : ", ";
        line += languages.getLanguageTag(i).toString().view();
        const int thousandths = static_cast<int>(std::lround(1000 * languages.getQualityValue(i)));
        if (thousandths < 1000) {
            line += ";q=0." + std::to_string(1000 + std::max(thousandths, 0)).substr(1);
        }
    }
    return line.empty() ? line : line + "\r\n";
}

void addLanguages(std::string_view list, ContentLanguageList& languages) {
    while (!list.empty()) {
        try {
            languages.append(LanguageTag(String(takeUpTo(',', list))));
        } catch (const InvalidNameException&) {
            // a server's own name for a language
        }
    }
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional<Number>(number) : std::nullopt;
}

} // namespace

HttpRequest makeCimRequest(std::string_view method, std::string_view nameSpace, std::string body,
                           const AcceptLanguageList& languages) {
    HttpRequest request;
    request.target = "/cimom";
    request.fields = "Content-Type: application/xml; charset=utf-8\r\n"
                     "CIMOperation: MethodCall\r\n"
                     "CIMMethod: " +
                     http::percentEncoded(method) +
                     "\r\n"
                     "CIMObject: " +
                     http::percentEncoded(nameSpace) +
                     "\r\n"
                     "TE: chunked, trailers\r\n" +
                     acceptLanguage(languages);
    request.body = std::move(body);
    return request;
}

void checkCimAnswer(const HttpHead& head, const Endpoint& endpoint) {
    if (head.status != kOk) {
        throw CIMClientHTTPErrorException(head.status, String(reasonOf(head, endpoint)),
                                          decodedField(head.fields, "CIMError"),
                                          decodedField(head.fields, "PGErrorDetail"));
    }
    const std::string* operation = head.fields.findExtension("CIMOperation");
    if (operation == nullptr) {
        fail(endpoint, "the answer has no CIMOperation header; is this a CIM server?");
    }
    if (!text::equalIgnoringCase(*operation, "MethodResponse")) {
        fail(endpoint, "the answer's CIMOperation header is \"" + *operation + "\" instead of \"MethodResponse\"");
    }
    const std::string* contentType = head.fields.find("Content-Type");
    if (contentType != nullptr && !isXmlInUtf8(*contentType)) {
        fail(endpoint, "the answer's content type is \"" + *contentType + "\" instead of XML in UTF-8");
    }
}

void checkCimTrailers(const HttpFields& trailers, const Endpoint& endpoint) {
    const std::string* status = trailers.findExtension("CIMStatusCode");
    if (status == nullptr) {
        return;
    }
    const auto code = numberIn<Uint32>(*status);
    if (!code) {
        fail(endpoint, "the trailer CIMStatusCode is not a number: \"" + *status + '"');
    }
    if (*code != CIM_ERR_SUCCESS) {
        throw detail::serverError(*code, decodedField(trailers, "CIMStatusCodeDescription"));
    }
}

void addRemarks(const HttpFields& fields, AnswerRemarks& remarks) {
    if (const std::string* const time = fields.find("WBEMServerResponseTime")) {
        const auto known = numberIn<Uint64>(http::withoutBlanks(*time));
        remarks.serverMicroseconds = known ? known : remarks.serverMicroseconds;
    }
    for (const std::string_view list : fields.findAll("Content-Language")) {
        addLanguages(list, remarks.languages);
    }
}

} // namespace Pegasus::client
