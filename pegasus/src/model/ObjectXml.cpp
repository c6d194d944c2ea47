#include "model/ObjectXml.h"

#include "model/PathXml.h"
#include "model/VisitType.h"

#include <string_view>

namespace Pegasus {
inline namespace bundled {
namespace detail {

namespace {

void appendAttribute(std::string& out, std::string_view name, std::string_view value) {
    out.append(" ").append(name).append("=\"");
    appendEscaped(out, value);
    out += '"';
}

/// Left out where there is no name.
void appendName(std::string& out, std::string_view name, const CIMName& value) {
    if (!value.isNull()) {
        appendAttribute(out, name, value.getString().view());
    }
}

void appendFlag(std::string& out, std::string_view name, bool value, bool usual) {
    if (value != usual) {
        appendAttribute(out, name, value ? "true" : "false");
    }
}

void appendSize(std::string& out, Uint32 arraySize) {
    if (arraySize != 0) {
        appendAttribute(out, "ARRAYSIZE", std::to_string(arraySize));
    }
}

/// Objects are texts that say of themselves what they are.
void appendType(std::string& out, CIMType type) {
    const bool isEmbedded = type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE;
    appendAttribute(out, "TYPE", cimTypeToString(isEmbedded ? CIMTYPE_STRING : type));
    if (isEmbedded) {
        appendAttribute(out, "EmbeddedObject", cimTypeToString(type));
    }
}

void appendScalar(std::string& out, const CIMObjectPath& path) { appendReference(out, path); }
template <class T>
void appendScalar(std::string& out, const T& item) {
    appendTextValue(out, CIMValue(item).toString().view());
}

template <class T>
void appendItems(std::string& out, const CIMValue& value) {
    constexpr bool kReferences = std::is_same_v<T, CIMObjectPath>;
    Array<T> items;
    value.get(items);
    out += kReferences ? "<VALUE.REFARRAY>" : "<VALUE.ARRAY>";
    for (Uint32 i = 0; i < items.size(); ++i) {
        if (value.isNullElement(i)) {
            out += "<VALUE.NULL/>";
        } else {
            appendScalar(out, items[i]);
        }
    }
    out += kReferences ? "</VALUE.REFARRAY>" : "</VALUE.ARRAY>";
}

/// Nothing for a null.
void appendValue(std::string& out, const CIMValue& value) {
    if (value.isNull()) {
        return;
    }
    visitType(value.getType(), [&](auto tag) {
        using T = typename decltype(tag)::Type;
        if (value.isArray()) {
            appendItems<T>(out, value);
        } else {
            T scalar{};
            value.get(scalar);
            appendScalar(out, scalar);
        }
    });
}

void appendQualifier(std::string& out, const CIMConstQualifier& qualifier) {
    const CIMFlavor& flavor = qualifier.getFlavor();
    out += "<QUALIFIER";
    appendName(out, "NAME", qualifier.getName());
    appendType(out, qualifier.getType());
    appendFlag(out, "PROPAGATED", qualifier.getPropagated(), false);
    appendFlag(out, "OVERRIDABLE", !flavor.hasFlavor(CIMFlavor::DISABLEOVERRIDE), true);
    appendFlag(out, "TOSUBCLASS", !flavor.hasFlavor(CIMFlavor::RESTRICTED), true);
    appendFlag(out, "TOINSTANCE", flavor.hasFlavor(CIMFlavor::TOINSTANCE), false);
    appendFlag(out, "TRANSLATABLE", flavor.hasFlavor(CIMFlavor::TRANSLATABLE), false);
    out += '>';
    appendValue(out, qualifier.getValue());
    out += "</QUALIFIER>";
}

template <class Owner>
void appendQualifiers(std::string& out, const Owner& owner) {
    for (Uint32 i = 0; i < owner.getQualifierCount(); ++i) {
        appendQualifier(out, owner.getQualifier(i));
    }
}

/// The name of an element for a property or a parameter, of which there are four forms.
std::string formOf(const char* element, CIMType type, bool isArray) {
    const bool isReference = type == CIMTYPE_REFERENCE;
    return std::string(element) + (isReference ? (isArray ? ".REFARRAY" : ".REFERENCE") : isArray ? ".ARRAY" : "");
}

/// What the start tags of properties and parameters have in common.
template <class Declaration>
std::string appendStart(std::string& out, const char* element, const Declaration& declaration) {
    std::string form = formOf(element, declaration.getType(), declaration.isArray());
    out.append("<").append(form);
    appendName(out, "NAME", declaration.getName());
    if (declaration.getType() == CIMTYPE_REFERENCE) {
        appendName(out, "REFERENCECLASS", declaration.getReferenceClassName());
    } else {
        appendType(out, declaration.getType());
    }
    appendSize(out, declaration.getArraySize());
    return form;
}

void appendEnd(std::string& out, const std::string& element) { out.append("</").append(element).append(">"); }

void appendProperty(std::string& out, const CIMConstProperty& property) {
    const std::string form = appendStart(out, "PROPERTY", property);
    appendName(out, "CLASSORIGIN", property.getClassOrigin());
    appendFlag(out, "PROPAGATED", property.getPropagated(), false);
    out += '>';
    appendQualifiers(out, property);
    appendValue(out, property.getValue());
    appendEnd(out, form);
}

template <class Owner>
void appendProperties(std::string& out, const Owner& owner) {
    for (Uint32 i = 0; i < owner.getPropertyCount(); ++i) {
        appendProperty(out, owner.getProperty(i));
    }
}

void appendParameter(std::string& out, const CIMConstParameter& parameter) {
    const std::string form = appendStart(out, "PARAMETER", parameter);
    out += '>';
    appendQualifiers(out, parameter);
    appendEnd(out, form);
}

void appendMethod(std::string& out, const CIMConstMethod& method) {
    out += "<METHOD";
    appendName(out, "NAME", method.getName());
    appendType(out, method.getType());
    appendName(out, "CLASSORIGIN", method.getClassOrigin());
    appendFlag(out, "PROPAGATED", method.getPropagated(), false);
    out += '>';
    appendQualifiers(out, method);
    for (Uint32 i = 0; i < method.getParameterCount(); ++i) {
        appendParameter(out, method.getParameter(i));
    }
    out += "</METHOD>";
}

} // namespace

void appendXml(std::string& out, const CIMClass& cimClass) {
    out += "<CLASS";
    appendName(out, "NAME", cimClass.getClassName());
    appendName(out, "SUPERCLASS", cimClass.getSuperClassName());
    out += '>';
    appendQualifiers(out, cimClass);
    appendProperties(out, cimClass);
    for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i) {
        appendMethod(out, cimClass.getMethod(i));
    }
    out += "</CLASS>";
}

void appendXml(std::string& out, const CIMInstance& instance) {
    out += "<INSTANCE";
    appendName(out, "CLASSNAME", instance.getClassName());
    out += '>';
    appendQualifiers(out, instance);
    appendProperties(out, instance);
    out += "</INSTANCE>";
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
