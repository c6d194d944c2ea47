#include "wire/CimRequest.h"

#include "schema/Names.h"
#include "schema/XmlCharacters.h"
#include "wire/CimError.h"
#include "wire/NodeAccess.h"
#include "wire/ObjectPathReader.h"
#include "wire/XmlWriter.h"

#include <pugixml.hpp>

#include <algorithm>

namespace demo {

namespace {

constexpr int kBadRequest = 400;
constexpr int kNotImplemented = 501;

/// Minor versions are compatible with each other, major versions are not.
void CheckVersion(const pugi::xml_node& node, const char* attribute, std::string_view major, const char* cimError) {
    const std::string version = RequiredAttribute(node, attribute);
    if (std::string_view(version).substr(0, major.size()) != major) {
        throw HttpError(kNotImplemented, cimError, std::string(attribute) + ' ' + version + " is not supported");
    }
}

/// An attribute that the answer repeats. What XML does not have would come back as something else.
std::string RepeatedAttribute(const pugi::xml_node& node, const char* attribute) {
    std::string text = RequiredAttribute(node, attribute);
    if (!IsXmlText(text)) {
        RequestNotValid(std::string("the attribute ") + attribute + " of element " + node.name() +
                        " has characters that XML does not have");
    }
    return text;
}

Value ReadArray(const pugi::xml_node& node) {
    Value::Items items;
    for (const auto& item : Content(node)) {
        if (std::string_view(item.name()) == "VALUE.NULL") {
            items.emplace_back(std::nullopt);
        } else if (std::string_view(item.name()) == "VALUE") {
            items.emplace_back(item.text().get());
        } else {
            RequestNotValid(std::string("element ") + item.name() + " in a VALUE.ARRAY");
        }
    }
    return Value::Array(std::move(items));
}

RequestParameter ReadParameter(const pugi::xml_node& node) {
    const auto value = node.first_child();
    RequestParameter result{RequiredAttribute(node, "NAME"), value.name(), {}};
    if (value.next_sibling()) {
        RequestNotValid("the parameter " + result.name + " has several values");
    }
    if (result.kind == "VALUE") {
        result.value = Value::Text(value.text().get());
    } else if (result.kind == "VALUE.ARRAY") {
        result.value = ReadArray(value);
    } else if (result.kind == "CLASSNAME" || result.kind == "INSTANCENAME") {
        result.value = Value::Reference(ReadObjectPath(value));
    }
    return result;
}

void ReadIntrinsicCall(const pugi::xml_node& call, CimRequest& result) {
    result.kind = CimRequest::Kind::kIntrinsic;
    result.method = RepeatedAttribute(call, "NAME");
    result.nameSpace = ReadNamespace(RequiredChild(call, "LOCALNAMESPACEPATH"));
    for (const auto& parameter : call.children("IPARAMVALUE")) {
        result.parameters.push_back(ReadParameter(parameter));
    }
}

/// Each element and each attribute of a document costs some forty times its shortest text. Nothing is made of a
/// document before it is known how many there can be.
void CheckCost(std::string_view body) {
    const auto marks = std::count_if(body.begin(), body.end(), [](char c) { return c == '<' || c == '='; });
    if (static_cast<std::size_t>(marks) > kMaxMarks) {
        RequestNotValid("there are more than " + std::to_string(kMaxMarks) + " tags and attributes");
    }
}

/// The element CIM with everything in it.
pugi::xml_node Parse(std::string_view body, pugi::xml_document& document) {
    // A value of white space alone is a value, too.
    const auto parsed = document.load_buffer(body.data(), body.size(),
                                             pugi::parse_default | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
    if (!parsed) {
        throw HttpError(kBadRequest, "request-not-well-formed",
                        "at offset " + std::to_string(parsed.offset) + ": " + parsed.description());
    }
    const auto cim = document.document_element();
    if (cim.next_sibling()) {
        throw HttpError(kBadRequest, "request-not-well-formed", "there is more than one document element");
    }
    if (std::string_view(cim.name()) != "CIM") {
        RequestNotValid("the document element is not CIM");
    }
    return cim;
}

} // namespace

std::string CimRequest::ObjectName() const {
    for (const auto& parameter : parameters) {
        for (const char* const name : {"ClassName", "InstanceName", "ObjectName", "QualifierName"}) {
            if (SameName(parameter.name, name)) {
                const auto* const path = parameter.value.AsReference();
                const auto* const text = parameter.value.AsText();
                return path ? path->className : text ? *text : "";
            }
        }
    }
    return "";
}

CimRequest ReadRequest(std::string_view body) {
    CheckCost(body);
    pugi::xml_document document;
    const auto cim = Parse(body, document);
    CheckVersion(cim, "CIMVERSION", "2.", "unsupported-cim-version");
    CheckVersion(cim, "DTDVERSION", "2.", "unsupported-dtd-version");
    const auto message = RequiredChild(cim, "MESSAGE");
    CheckVersion(message, "PROTOCOLVERSION", "1.", "unsupported-protocol-version");
    if (message.child("MULTIREQ")) {
        throw HttpError(kNotImplemented, "multiple-requests-unsupported", "send one request at a time");
    }
    const auto request = RequiredChild(message, "SIMPLEREQ");

    CimRequest result;
    result.messageId = RepeatedAttribute(message, "ID");
    if (const auto call = request.child("METHODCALL")) {
        result.kind = CimRequest::Kind::kExtrinsic;
        result.method = RepeatedAttribute(call, "NAME");
        return result;
    }
    const auto call = RequiredChild(request, "IMETHODCALL");
    ReadIntrinsicCall(call, result);
    return result;
}

} // namespace demo
