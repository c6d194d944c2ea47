#include "CimXml.h"

namespace {

std::string ValuesXml(const std::vector<std::string>& values) {
    std::string xml = "<VALUE.ARRAY>";
    for (const std::string& value : values) {
        xml += value == "<null>" ? "<VALUE.NULL/>" : "<VALUE>" + value + "</VALUE>";
    }
    return xml + "</VALUE.ARRAY>";
}

std::string Attributes(const std::string& name, const std::string& type) {
    return " NAME=\"" + name + "\" TYPE=\"" + type + "\"";
}

} // namespace

std::string PropertyXml(const std::string& name, const std::string& type, const std::string& value) {
    return "<PROPERTY" + Attributes(name, type) + ">" + (value.empty() ? "" : "<VALUE>" + value + "</VALUE>") +
           "</PROPERTY>";
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
    return "<INSTANCE CLASSNAME=\"" + cls + "\">" + PropertyXml("Name", "string", name) + properties + "</INSTANCE>";
}

std::string DeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers) {
    return "<PROPERTY" + Attributes(name, type) + ">" + qualifiers + "</PROPERTY>";
}

std::string ArrayDeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers) {
    return "<PROPERTY.ARRAY" + Attributes(name, type) + ">" + qualifiers + "</PROPERTY.ARRAY>";
}

std::string ClassXml(const std::string& name, const std::string& superclass, const std::string& properties) {
    return "<CLASS NAME=\"" + name + "\"" + (superclass.empty() ? "" : " SUPERCLASS=\"" + superclass + "\"") + ">" +
           DeclarationXml("Name", "string", QualifierXml("Key", "boolean", "TRUE")) + properties + "</CLASS>";
}

std::string QualifierXml(const std::string& name, const std::string& type, const std::string& value) {
    return "<QUALIFIER" + Attributes(name, type) + "><VALUE>" + value + "</VALUE></QUALIFIER>";
}

std::string QualifierXml(const std::string& name, const std::vector<std::string>& values) {
    return "<QUALIFIER" + Attributes(name, "string") + ">" + ValuesXml(values) + "</QUALIFIER>";
}

std::string QualifierDeclarationXml(const std::string& name, const std::string& type, bool is_array) {
    return "<QUALIFIER.DECLARATION" + Attributes(name, type) + (is_array ? " ISARRAY=\"true\"" : "") +
           "><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>";
}
