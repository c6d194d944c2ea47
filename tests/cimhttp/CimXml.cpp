#include "CimXml.h"

#include "support/CimXml.h"

namespace xml = support::xml;

namespace {

std::string ValuesXml(const std::vector<std::string>& values) {
    std::string array = "<VALUE.ARRAY>";
    for (const std::string& value : values) {
        array += value == "<null>" ? "<VALUE.NULL/>" : xml::Value(value);
    }
    return array + "</VALUE.ARRAY>";
}

std::string Attributes(const std::string& name, const std::string& type) {
    return " NAME=\"" + name + "\" TYPE=\"" + type + "\"";
}

/// The text after a mark in a request, up to a quote.
std::string Quoted(const std::string& request, const std::string& mark) {
    const auto begin = request.find(mark) + mark.size();
    return request.substr(begin, request.find('"', begin) - begin);
}

/// A whole answer to a request.
std::string HttpResponse(const std::string& request, const std::string& content) {
    const std::string body = "<?xml version=\"1.0\"?>" +
                             xml::Message(Quoted(request, "MESSAGE ID=\""), xml::Response(MethodIn(request), content));
    return "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

} // namespace

std::string PropertyXml(const std::string& name, const std::string& type, const std::string& value) {
    return xml::Property(name, type, value.empty() ? "" : xml::Value(value));
}

std::string ArrayXml(const std::string& name, const std::string& type, const std::vector<std::string>& values) {
    return "<PROPERTY.ARRAY" + Attributes(name, type) + ">" + ValuesXml(values) + "</PROPERTY.ARRAY>";
}

std::string PathXml(const std::string& cls, const std::string& name) {
    return "<INSTANCENAME CLASSNAME=\"" + cls +
           "\"><KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">" + name +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

std::string InstanceXml(const std::string& cls, const std::string& name, const std::string& properties) {
    return "<VALUE.NAMEDINSTANCE>" + PathXml(cls, name) + BareInstanceXml(cls, name, properties) +
           "</VALUE.NAMEDINSTANCE>";
}

std::string BareInstanceXml(const std::string& cls, const std::string& name, const std::string& properties) {
    return xml::Instance(cls, PropertyXml("Name", "string", name) + properties);
}

std::string DeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers) {
    return xml::Property(name, type, qualifiers);
}

std::string ArrayDeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers) {
    return "<PROPERTY.ARRAY" + Attributes(name, type) + ">" + qualifiers + "</PROPERTY.ARRAY>";
}

std::string ClassXml(const std::string& name, const std::string& superclass, const std::string& properties) {
    return xml::Class(name, superclass,
                      DeclarationXml("Name", "string", QualifierXml("Key", "boolean", "TRUE")) + properties);
}

std::string QualifierXml(const std::string& name, const std::string& type, const std::string& value) {
    return xml::Qualifier(name, type, xml::Value(value));
}

std::string QualifierXml(const std::string& name, const std::vector<std::string>& values) {
    return xml::Qualifier(name, "string", ValuesXml(values));
}

std::string QualifierDeclarationXml(const std::string& name, const std::string& type, bool isArray) {
    return "<QUALIFIER.DECLARATION" + Attributes(name, type) + (isArray ? " ISARRAY=\"true\"" : "") +
           "><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>";
}

std::string MethodIn(const std::string& request) { return Quoted(request, "IMETHODCALL NAME=\""); }

std::string ClassIn(const std::string& request) { return Quoted(request, "CLASSNAME NAME=\""); }

std::string HttpAnswer(const std::string& request, const std::string& returnValue) {
    constexpr unsigned kNotSupported = 7;
    return MethodIn(request) == "OpenEnumerateInstances" ? HttpFailure(request, kNotSupported)
                                                         : HttpResponse(request, xml::ReturnValue(returnValue));
}

std::string HttpFailure(const std::string& request, unsigned code) {
    return HttpResponse(request, "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"no luck\"/>");
}
