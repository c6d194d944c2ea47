#include "model/PathXml.h"

namespace Pegasus {
inline namespace bundled {
namespace detail {

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

void appendTextValue(std::string& out, std::string_view text) {
    out += "<VALUE>";
    appendEscaped(out, text);
    out += "</VALUE>";
}

void appendNamespacePath(std::string& out, const CIMNamespaceName& nameSpace) {
    std::string_view rest = nameSpace.getString().view();
    out += "<LOCALNAMESPACEPATH>";
    while (!rest.empty()) {
        const auto slash = rest.find('/');
        appendNamed(out, "NAMESPACE", rest.substr(0, slash), "/>");
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
    }
    out += "</LOCALNAMESPACEPATH>";
}

void appendClassName(std::string& out, const CIMName& name) {
    appendNamed(out, "CLASSNAME", name.getString().view(), "/>");
}

static const char* valueTypeOf(const CIMKeyBinding& key) {
    switch (key.getType()) {
    case CIMKeyBinding::BOOLEAN:
        return "boolean";
    case CIMKeyBinding::NUMERIC:
        return "numeric";
    case CIMKeyBinding::STRING:
    case CIMKeyBinding::REFERENCE:
        break;
    }
    return "string";
}

static void appendKeyValue(std::string& out, const CIMKeyBinding& key) {
    if (key.getType() == CIMKeyBinding::REFERENCE) {
        appendReference(out, CIMObjectPath(key.getValue()));
        return;
    }
    out.append("<KEYVALUE VALUETYPE=\"").append(valueTypeOf(key)).append("\">");
    appendEscaped(out, key.getValue().view());
    out += "</KEYVALUE>";
}

static void appendKey(std::string& out, const CIMKeyBinding& key) {
    if (key.getName().isNull()) {
        appendKeyValue(out, key);
        return;
    }
    appendNamed(out, "KEYBINDING", key.getName().getString().view(), ">");
    appendKeyValue(out, key);
    out += "</KEYBINDING>";
}

void appendInstanceName(std::string& out, const CIMObjectPath& path) {
    out += "<INSTANCENAME CLASSNAME=\"";
    appendEscaped(out, path.getClassName().getString().view());
    out += "\">";
    for (const CIMKeyBinding& key : path.getKeyBindings()) {
        appendKey(out, key);
    }
    out += "</INSTANCENAME>";
}

static bool isClassPath(const CIMObjectPath& path) { return path.getKeyBindings().size() == 0; }

void appendObjectName(std::string& out, const CIMObjectPath& path) {
    if (isClassPath(path)) {
        appendClassName(out, path.getClassName());
    } else {
        appendInstanceName(out, path);
    }
}

/// A path to a class or an instance in the form that says as much as the path does. A host counts only together with a
/// namespace: CIM-XML has no form for a host alone.
static void appendPath(std::string& out, const CIMObjectPath& path) {
    if (path.getNameSpace().isNull()) {
        appendObjectName(out, path);
        return;
    }
    const bool local = path.getHost().empty();
    const std::string element = std::string(local ? "LOCAL" : "") + (isClassPath(path) ? "CLASSPATH" : "INSTANCEPATH");
    out.append("<").append(element).append(">");
    if (!local) {
        out += "<NAMESPACEPATH><HOST>";
        appendEscaped(out, path.getHost().view());
        out += "</HOST>";
    }
    appendNamespacePath(out, path.getNameSpace());
    if (!local) {
        out += "</NAMESPACEPATH>";
    }
    appendObjectName(out, path);
    out.append("</").append(element).append(">");
}

/// References within references end soon: each level doubles the escapes in the text of the outermost one.
void appendReference(std::string& out, const CIMObjectPath& path) {
    out += "<VALUE.REFERENCE>";
    appendPath(out, path);
    out += "</VALUE.REFERENCE>";
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
