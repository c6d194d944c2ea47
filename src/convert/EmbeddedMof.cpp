#include "convert/EmbeddedMof.h"

#include "convert/HostValues.h"
#include "convert/RemoteText.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;
constexpr const char* kIndent = "    ";

std::string Escaped(char letter, char quote) {
    switch (letter) {
    case '\b':
        return "\\b";
    case '\t':
        return "\\t";
    case '\n':
        return "\\n";
    case '\f':
        return "\\f";
    case '\r':
        return "\\r";
    default:
        break;
    }
    if (static_cast<unsigned char>(letter) < ' ') {
        char escape[sizeof "\\x0000"];
        std::snprintf(escape, sizeof escape, "\\x%04X", static_cast<unsigned>(letter));
        return escape;
    }
    return letter == quote || letter == '\\' ? std::string("\\") + letter : std::string(1, letter);
}

std::string Quoted(const std::string& text, char quote) {
    std::string literal(1, quote);
    for (const char letter : text) {
        literal += Escaped(letter, quote);
    }
    return literal + quote;
}

/// MOF demands a point and a digit after it, and has no word for what is no number.
std::string RealText(std::string text) {
    if (text.find_first_of("in") != std::string::npos) {
        return "NULL";
    }
    if (text.find('.') == std::string::npos) {
        text.insert(std::min(text.find('e'), text.size()), ".0");
    }
    return text;
}

std::string ScalarText(const TCIMValue& value) {
    const std::string text = value.ToString(kDecimal);
    switch (value.GetType()) {
    case ECIMType::eCIMString:
    case ECIMType::eCIMDateTime:
    case ECIMType::eCIMReference:
        return Quoted(text, '"');
    case ECIMType::eCIMChar16:
        return Quoted(text, '\'');
    case ECIMType::eCIMReal32:
    case ECIMType::eCIMReal64:
        return RealText(text);
    default:
        return text;
    }
}

std::string ValueText(const TCIMValue& value) {
    if (value.IsNull()) {
        return "NULL";
    }
    if (!value.IsArray()) {
        return ScalarText(value);
    }
    std::string list = "{";
    const char* separator = "";
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        list += separator + ValueText(element);
        separator = ", ";
    }
    return list + '}';
}

std::string TypeText(Pegasus::CIMType type) {
    const bool isEmbedded = type == Pegasus::CIMTYPE_OBJECT || type == Pegasus::CIMTYPE_INSTANCE;
    return Pegasus::cimTypeToString(isEmbedded ? Pegasus::CIMTYPE_STRING : type);
}

/// `uint32 Sizes[]`, of a property or parameter.
template <typename Element>
std::string DeclaredText(Element& element) {
    const auto& referenced = element.getReferenceClassName();
    const std::string type = referenced.isNull() ? TypeText(element.getType()) : ToStdString(referenced) + " REF";
    const std::string size = element.getArraySize() == 0 ? std::string() : std::to_string(element.getArraySize());
    return type + ' ' + ToStdString(element.getName()) + (element.isArray() ? '[' + size + ']' : std::string());
}

/// `[Key, MaxLen (256)]` and a line end; nothing for an element without qualifiers.
template <typename Element>
std::string QualifierList(Element& element, const std::string& indent) {
    std::string list;
    for (Pegasus::Uint32 i = 0; i < element.getQualifierCount(); ++i) {
        const auto qualifier = element.getQualifier(i);
        const TCIMValue value = HostValue(qualifier.getValue());
        list += (list.empty() ? indent + '[' : ", ") + ToStdString(qualifier.getName());
        if (value.IsArray() && !value.IsNull()) {
            list += ' ' + ValueText(value);
        } else if (!(value == TCIMValue(true))) {
            list += " (" + ValueText(value) + ')';
        }
    }
    return list.empty() ? list : list + "]\n";
}

std::string PropertyText(Pegasus::CIMProperty property) {
    const TCIMValue value = HostValue(property.getValue());
    return QualifierList(property, kIndent) + kIndent + DeclaredText(property) +
           (value.IsNull() ? std::string() : " = " + ValueText(value)) + ";\n";
}

std::string MethodText(Pegasus::CIMMethod method) {
    std::string text = QualifierList(method, kIndent) + kIndent + TypeText(method.getType()) + ' ' +
                       ToStdString(method.getName()) + '(';
    const std::string indent = std::string(kIndent) + kIndent;
    const char* separator = "\n";
    for (Pegasus::Uint32 i = 0; i < method.getParameterCount(); ++i) {
        auto parameter = method.getParameter(i);
        text += separator + QualifierList(parameter, indent) + indent + DeclaredText(parameter);
        separator = ",\n";
    }
    return text + ");\n";
}

} // namespace

std::string InstanceMof(const EmbeddedObject& instance) {
    std::string text = "instance of " + instance.className + " {\n";
    for (const EmbeddedObject::Property& property : instance.properties) {
        text += kIndent + property.name + " = " + ValueText(property.value) + ";\n";
    }
    return text + "};\n";
}

std::string ClassMof(Pegasus::CIMClass& cls) {
    std::string text = QualifierList(cls, "") + "class " + ToStdString(cls.getClassName());
    if (!cls.getSuperClassName().isNull()) {
        text += " : " + ToStdString(cls.getSuperClassName());
    }
    text += " {\n";
    for (Pegasus::Uint32 i = 0; i < cls.getPropertyCount(); ++i) {
        text += PropertyText(cls.getProperty(i));
    }
    for (Pegasus::Uint32 i = 0; i < cls.getMethodCount(); ++i) {
        text += MethodText(cls.getMethod(i));
    }
    return text + "};\n";
}

} // namespace NQORVYX20
