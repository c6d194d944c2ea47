#include "wire/CimRequest.h"

#include "wire/CimError.h"

#include <pugixml.hpp>

namespace demo {

namespace {

constexpr int kBadRequest = 400;
constexpr int kNotImplemented = 501;

[[noreturn]] void NotValid(const std::string& what) { throw HttpError(kBadRequest, "request-not-valid", what); }

std::string Required(const pugi::xml_node& node, const char* attribute) {
    const auto found = node.attribute(attribute);
    if (!found)
        NotValid(std::string("element ") + node.name() + " has no attribute " + attribute);
    return found.value();
}

pugi::xml_node RequiredChild(const pugi::xml_node& node, const char* name) {
    const auto child = node.child(name);
    if (!child)
        NotValid(std::string("element ") + node.name() + " has no element " + name);
    return child;
}

/// Minor versions are compatible with each other, major versions are not.
void CheckVersion(const pugi::xml_node& node, const char* attribute, std::string_view major, const char* cimError) {
    const std::string version = Required(node, attribute);
    if (std::string_view(version).substr(0, major.size()) != major)
        throw HttpError(kNotImplemented, cimError, std::string(attribute) + ' ' + version + " is not supported");
}

std::string ReadNamespace(const pugi::xml_node& path) {
    std::string result;
    for (const auto& component : path.children("NAMESPACE"))
        (result += result.empty() ? "" : "/") += Required(component, "NAME");
    return result;
}

Value ReadScalar(const pugi::xml_node& node) { return Value::Text(node.text().get()); }

Value ReadArray(const pugi::xml_node& node) {
    Value::Items items;
    for (const auto& item : node.children()) {
        if (std::string_view(item.name()) == "VALUE.NULL")
            items.emplace_back(std::nullopt);
        else if (std::string_view(item.name()) == "VALUE")
            items.emplace_back(item.text().get());
        else
            NotValid(std::string("element ") + item.name() + " in a VALUE.ARRAY");
    }
    return Value::Array(std::move(items));
}

RequestParameter ReadParameter(const pugi::xml_node& node) {
    const auto value = node.first_child();
    RequestParameter result{Required(node, "NAME"), value.name(), {}};
    if (result.kind == "VALUE")
        result.value = ReadScalar(value);
    else if (result.kind == "VALUE.ARRAY")
        result.value = ReadArray(value);
    else if (result.kind == "CLASSNAME")
        result.value = Value::Reference({Required(value, "NAME"), {}});
    return result;
}

void ReadIntrinsicCall(const pugi::xml_node& call, CimRequest& result) {
    result.kind = CimRequest::Kind::kIntrinsic;
    result.method = Required(call, "NAME");
    result.nameSpace = ReadNamespace(RequiredChild(call, "LOCALNAMESPACEPATH"));
    for (const auto& parameter : call.children("IPARAMVALUE"))
        result.parameters.push_back(ReadParameter(parameter));
}

} // namespace

CimRequest ReadRequest(std::string_view body) {
    pugi::xml_document document;
    const auto parsed = document.load_buffer(body.data(), body.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!parsed)
        throw HttpError(kBadRequest, "request-not-well-formed",
                        "at offset " + std::to_string(parsed.offset) + ": " + parsed.description());
    const auto cim = document.document_element();
    if (std::string_view(cim.name()) != "CIM")
        NotValid("the root element is not CIM");
    CheckVersion(cim, "CIMVERSION", "2.", "unsupported-cim-version");
    CheckVersion(cim, "DTDVERSION", "2.", "unsupported-dtd-version");
    const auto message = RequiredChild(cim, "MESSAGE");
    CheckVersion(message, "PROTOCOLVERSION", "1.", "unsupported-protocol-version");
    if (message.child("MULTIREQ"))
        throw HttpError(kNotImplemented, "multiple-requests-unsupported", "send one request at a time");
    const auto request = RequiredChild(message, "SIMPLEREQ");

    CimRequest result;
    result.messageId = Required(message, "ID");
    if (const auto call = request.child("METHODCALL")) {
        result.kind = CimRequest::Kind::kExtrinsic;
        result.method = Required(call, "NAME");
        return result;
    }
    const auto call = RequiredChild(request, "IMETHODCALL");
    ReadIntrinsicCall(call, result);
    return result;
}

} // namespace demo
