#include "CimAnswers.h"

#include <algorithm>

namespace {

constexpr std::string_view kNotFound = "!6";
constexpr std::string_view kNotSupported = "!7";

/// What stands in a text between a beginning and a quote or tag; empty where there is none.
std::string Between(std::string_view text, std::string_view begin) {
    const std::size_t found = text.find(begin);
    if (found == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(found + begin.size());
    return std::string(text.substr(0, text.find_first_of("\"<")));
}

/// The class or the qualifier that a request is for.
std::string ObjectOf(std::string_view request) {
    const std::string qualifier = Between(request, "<IPARAMVALUE NAME=\"QualifierName\"><VALUE>");
    return qualifier.empty() ? Between(request, "<CLASSNAME NAME=\"") : qualifier;
}

bool BeginsWith(std::string_view text, std::string_view begin) { return text.substr(0, begin.size()) == begin; }

bool IsOfPulledEnumerations(std::string_view method) {
    return BeginsWith(method, "Open") || BeginsWith(method, "Pull") || method == "CloseEnumeration";
}

/// How a pulled enumeration goes on: an opening content that begins with '+' is not all.
std::string OutputParameters(std::string_view method, bool isAll) {
    if (!IsOfPulledEnumerations(method)) {
        return {};
    }
    return isAll ? "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>TRUE</VALUE></PARAMVALUE>"
                 : "<PARAMVALUE NAME=\"EnumerationContext\"><VALUE>next</VALUE></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>FALSE</VALUE></PARAMVALUE>";
}

std::string ResponseContent(std::string_view method, std::string_view content) {
    if (content.empty() || content.front() != '!') {
        const bool isAll = content.empty() || content.front() != '+' || !BeginsWith(method, "Open");
        content.remove_prefix(isAll ? 0 : 1);
        return "<IRETURNVALUE>" + std::string(content) + "</IRETURNVALUE>" + OutputParameters(method, isAll);
    }
    const std::string_view digits = content.substr(1, content.find_first_not_of("0123456789", 1) - 1);
    return "<ERROR CODE=\"" + std::string(digits) + "\" DESCRIPTION=\"as the input says\"/>";
}

std::string Body(const std::string& id, const std::string& method, std::string_view content) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"" + id +
           "\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" + method + "\">" +
           ResponseContent(method, content) + "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
}

} // namespace

CimAnswers::CimAnswers(std::string_view input) {
    while (!input.empty() && input.front() == '@') {
        const std::size_t line = std::min(input.find('\n'), input.size());
        const std::string_view method = input.substr(1, line - 1);
        input.remove_prefix(line);
        const std::size_t end = std::min(input.find("\n@"), input.size());
        contents_[std::string(method)].push_back(input.substr(std::min<std::size_t>(1, end), end));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
}

std::optional<std::string> CimAnswers::To(const std::string& request) {
    const std::string method = Between(request, "<IMETHODCALL NAME=\"");
    const std::string_view content = ContentFor(method, ObjectOf(request));
    if (!content.empty() && content.front() == '~') {
        return std::nullopt;
    }
    const std::string body = Body(Between(request, "<MESSAGE ID=\""), method, content);
    return "HTTP/1.1 200 OK\r\nContent-Type: application/xml; charset=utf-8\r\nCIMOperation: MethodResponse\r\n"
           "Content-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string_view CimAnswers::ContentFor(const std::string& method, const std::string& object) {
    auto& places = places_[method];
    const std::size_t place = places.emplace(object, places.size()).first->second;
    const auto& contents = contents_[method];
    return place < contents.size() ? contents[place] : IsOfPulledEnumerations(method) ? kNotSupported : kNotFound;
}
