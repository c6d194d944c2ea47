#include "cimxml/RequestEncoder.h"

#include <utility>

namespace Pegasus::cimxml {

namespace {

/// Appends text with the characters that XML reserves, and white space that an attribute would lose, as references.
void appendEscaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\t':
            out += "&#9;";
            break;
        case '\n':
            out += "&#10;";
            break;
        case '\r':
            out += "&#13;";
            break;
        default:
            out += c;
        }
    }
}

void appendNamed(std::string& out, std::string_view element, std::string_view name, std::string_view end) {
    out.append("<").append(element).append(" NAME=\"");
    appendEscaped(out, name);
    out.append("\"").append(end);
}

void appendValue(std::string& out, std::string_view text) {
    out += "<VALUE>";
    appendEscaped(out, text);
    out += "</VALUE>";
}

void appendNamespacePath(std::string& out, std::string_view rest) {
    out += "<LOCALNAMESPACEPATH>";
    while (!rest.empty()) {
        const auto slash = rest.find('/');
        appendNamed(out, "NAMESPACE", rest.substr(0, slash), "/>");
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
    }
    out += "</LOCALNAMESPACEPATH>";
}

} // namespace

RequestEncoder::RequestEncoder(std::string_view messageId, std::string_view method, const CIMNamespaceName& nameSpace)
    : body_("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"") {
    appendEscaped(body_, messageId);
    body_ += "\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>";
    appendNamed(body_, "IMETHODCALL", method, ">");
    appendNamespacePath(body_, nameSpace.getString().view());
}

void RequestEncoder::addBoolean(std::string_view parameter, bool value) {
    addString(parameter, value ? "TRUE" : "FALSE");
}

void RequestEncoder::addString(std::string_view parameter, std::string_view value) {
    open(parameter);
    appendValue(body_, value);
    close();
}

void RequestEncoder::addClassName(std::string_view parameter, const CIMName& name) {
    if (name.isNull())
        return;
    open(parameter);
    appendNamed(body_, "CLASSNAME", name.getString().view(), "/>");
    close();
}

void RequestEncoder::addPropertyList(std::string_view parameter, const CIMPropertyList& list) {
    if (list.isNull())
        return;
    open(parameter);
    body_ += "<VALUE.ARRAY>";
    for (Uint32 i = 0; i < list.size(); ++i)
        appendValue(body_, list[i].getString().view());
    body_ += "</VALUE.ARRAY>";
    close();
}

std::string RequestEncoder::finish() {
    body_ += "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
    return std::move(body_);
}

void RequestEncoder::open(std::string_view parameter) { appendNamed(body_, "IPARAMVALUE", parameter, ">"); }

void RequestEncoder::close() { body_ += "</IPARAMVALUE>"; }

} // namespace Pegasus::cimxml
