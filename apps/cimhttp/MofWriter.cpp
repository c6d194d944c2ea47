#include "MofWriter.h"

#include <fmt/format.h>

#include <sstream>
#include <vector>

#include "host/ICIMClass.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kIndent = 4;

std::string Spaces(std::size_t count) { return std::string(count, ' '); }

std::string TypeName(TCIMValue::TCIMType type) {
    const auto element = static_cast<ECIMType>(type & ~ECIMType::eCIMArrayUnknown);
    if (element == ECIMType::eCIMReference) {
        return "object REF";
    }
    if (element == ECIMType::eCIMUnknown) {
        return "string"; // MOF declares embedded objects, which have no type of their own, as strings
    }
    std::ostringstream name;
    name << TCIMValue::TCIMType(element);
    return name.str();
}

/// The text between quotes of this kind.
std::string Escaped(const std::string& text, char quote = '"') {
    std::string escaped;
    for (const char character : text) {
        if (character == quote || character == '\\') {
            escaped += '\\';
        }
        switch (character) {
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        case '\t':
            escaped += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(character) < 0x20) {
                escaped += fmt::format("\\x{:04x}", static_cast<unsigned>(character));
            } else {
                escaped += character;
            }
        }
    }
    return escaped;
}

/// A string literal; one that does not fit is folded between words into adjacent literals, which MOF joins.
std::string StringLiteral(const std::string& text, std::size_t indent) {
    const std::string escaped = Escaped(text);
    const std::size_t room = kLineWidth - indent - 2;
    std::string literal;
    std::size_t begin = 0;
    while (escaped.size() - begin > room) {
        const auto blank = escaped.rfind(' ', begin + room - 1);
        if (blank == std::string::npos || blank < begin) {
            break; // one word wider than a line
        }
        literal += '"' + escaped.substr(begin, blank + 1 - begin) + "\"\n" + Spaces(indent);
        begin = blank + 1;
    }
    return literal + '"' + escaped.substr(begin) + '"';
}

std::string ScalarText(const TCIMValue& value, std::size_t indent) {
    if (value.IsNull()) {
        return "null";
    }
    switch (value.GetType()) {
    case ECIMType::eCIMString:
        return StringLiteral(value.ToString(10), indent);
    case ECIMType::eCIMDateTime:
    case ECIMType::eCIMReference:
        return '"' + Escaped(value.ToString(10)) + '"';
    case ECIMType::eCIMChar16:
        return '\'' + Escaped(value.ToString(10), '\'') + '\'';
    default:
        return value.ToString(10);
    }
}

/// Joins with commas, beginning a new line where the next item does not fit.
std::string Listed(const std::vector<std::string>& items, std::size_t indent) {
    std::string list;
    std::size_t column = indent;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) {
            list += ',';
            const bool fits = column + items[i].size() + 3 < kLineWidth;
            list += fits ? " " : "\n" + Spaces(indent);
            column = fits ? column + 2 : indent;
        }
        list += items[i];
        column += items[i].size();
    }
    return list;
}

std::string ArrayText(const TCIMValue& value, std::size_t indent) {
    std::vector<std::string> items;
    for (const TCIMValue& element : static_cast<std::vector<TCIMValue>&>(value)) {
        items.push_back(ScalarText(element, indent));
    }
    return '{' + Listed(items, indent) + '}';
}

std::string QualifierText(const ICIMQualifier& qualifier, std::size_t indent) {
    const std::string& name = qualifier.GetName(TCIMContext());
    const TCIMValue& value = qualifier.GetValue(TCIMContext());
    if (value == TCIMValue(true)) {
        return name;
    }
    if (value.IsArray() && !value.IsNull()) {
        return name + ' ' + ArrayText(value, indent + name.size() + 2);
    }
    return name + '(' + ScalarText(value, indent + name.size() + 1) + ')';
}

/// `[Key, MaxLen(256)]` and a line end; nothing for an element without qualifiers.
std::string QualifierList(const ICIMNamedElement& element, std::size_t indent) {
    std::vector<std::string> texts;
    element.EnumerateQualifiers(
        [&](const boost::shared_ptr<ICIMQualifier>& qualifier) {
            texts.push_back(QualifierText(*qualifier, indent + 1));
            return true;
        },
        TCIMContext());
    if (texts.empty()) {
        return {};
    }
    std::string list = Spaces(indent) + '[';
    for (std::size_t i = 0; i < texts.size(); ++i) {
        list += (i == 0 ? "" : ",\n" + Spaces(indent + 1)) + texts[i];
    }
    return list + "]\n";
}

std::string ArraySuffix(bool is_array) { return is_array ? "[]" : ""; }

std::string PropertyText(const ICIMPropertyDecl& property) {
    return QualifierList(property, kIndent) + Spaces(kIndent) + TypeName(property.GetType(TCIMContext())) + ' ' +
           property.GetName(TCIMContext()) + ArraySuffix(property.IsArray(TCIMContext())) + ";\n";
}

std::string MethodText(const ICIMMethodDecl& method) {
    std::vector<std::string> parameters;
    boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)> add =
        [&](const boost::shared_ptr<ICIMParameterDecl>& parameter) {
            parameters.push_back(TypeName(parameter->GetType(TCIMContext())) + ' ' + parameter->GetName(TCIMContext()) +
                                 ArraySuffix(parameter->IsArray(TCIMContext())));
            return true;
        };
    method.EnumerateParameterDecls(add, TCIMContext());
    const std::string head =
        Spaces(kIndent) + TypeName(method.GetReturnType(TCIMContext())) + ' ' + method.GetName(TCIMContext()) + '(';
    return QualifierList(method, kIndent) + head + Listed(parameters, head.size()) + ");\n";
}

} // namespace

std::string ClassMof(const ICIMClass& cls) {
    std::vector<std::string> features;
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            features.push_back(PropertyText(*property));
            return true;
        },
        TCIMContext());
    cls.EnumerateMethodDecls(
        [&](const boost::shared_ptr<ICIMMethodDecl>& method) {
            features.push_back(MethodText(*method));
            return true;
        },
        TCIMContext());
    std::string mof = QualifierList(cls, 0) + "class " + cls.GetName(TCIMContext()) + "\n{\n";
    for (std::size_t i = 0; i < features.size(); ++i) {
        mof += (i == 0 ? "" : "\n") + features[i];
    }
    return mof + "};\n";
}

} // namespace cimhttp
