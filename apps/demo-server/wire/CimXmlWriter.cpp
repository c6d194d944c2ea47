#include "wire/CimXmlWriter.h"

#include <algorithm>
#include <array>

namespace demo {

namespace {

void WriteFlag(XmlWriter& writer, std::string_view attribute, bool flag, bool usual) {
    if (flag != usual) {
        writer.Attribute(attribute, flag ? "true" : "false");
    }
}

void WriteLocalNamespacePath(XmlWriter& writer, std::string_view nameSpace) {
    writer.Start("LOCALNAMESPACEPATH");
    for (std::string_view rest = nameSpace; !rest.empty();) {
        const auto end = std::min(rest.find('/'), rest.size());
        writer.Start("NAMESPACE").Attribute("NAME", rest.substr(0, end)).End();
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    writer.End();
}

void WriteNamespacePath(XmlWriter& writer, const NamespacePath& location) {
    writer.Start("NAMESPACEPATH");
    writer.Start("HOST").Text(location.host).End();
    WriteLocalNamespacePath(writer, location.nameSpace);
    writer.End();
}

/// The element that says where an instance is as far as its path does.
void WriteAnyInstancePath(XmlWriter& writer, const ObjectPath& path) {
    if (path.IsLocal()) {
        return WriteInstanceName(writer, path);
    }
    if (!path.host.empty()) {
        return WriteInstancePath(writer, {path.host, path.nameSpace}, path);
    }
    writer.Start("LOCALINSTANCEPATH");
    WriteLocalNamespacePath(writer, path.nameSpace);
    WriteInstanceName(writer, path);
    writer.End();
}

/// The flavors of a qualifier or its declaration; what differs from the defaults of DSP0201.
void WriteFlavors(XmlWriter& writer, const QualifierDeclaration& declaration) {
    WriteFlag(writer, "OVERRIDABLE", declaration.overridable, true);
    WriteFlag(writer, "TOSUBCLASS", declaration.toSubclass, true);
    WriteFlag(writer, "TOINSTANCE", declaration.toInstance, false);
    WriteFlag(writer, "TRANSLATABLE", declaration.translatable, false);
}

void WriteQualifiers(XmlWriter& writer, const Element& element, const Selection& selection) {
    if (!selection.includeQualifiers) {
        return;
    }
    for (const auto& qualifier : element.qualifiers) {
        if (selection.localOnly && qualifier.propagated) {
            continue;
        }
        writer.Start("QUALIFIER").Attribute("NAME", qualifier.declaration->name);
        writer.Attribute("TYPE", TypeName(qualifier.declaration->type));
        WriteFlag(writer, "PROPAGATED", qualifier.propagated, false);
        WriteFlavors(writer, *qualifier.declaration);
        WriteValue(writer, qualifier.value);
        writer.End();
    }
}

/// Opens the element of a property or parameter, whose name begins with the prefix and ends with its kind.
void StartHolder(XmlWriter& writer, const std::string& prefix, const Holder& holder) {
    if (holder.type == CimType::kReference) {
        writer.Start(prefix + (holder.isArray ? ".REFARRAY" : ".REFERENCE")).Attribute("NAME", holder.name);
        if (!holder.referenceClass.empty()) {
            writer.Attribute("REFERENCECLASS", holder.referenceClass);
        }
    } else {
        writer.Start(holder.isArray ? prefix + ".ARRAY" : prefix).Attribute("NAME", holder.name);
        writer.Attribute("TYPE", TypeName(holder.type));
    }
    if (holder.arraySize) {
        writer.Attribute("ARRAYSIZE", std::to_string(*holder.arraySize));
    }
}

template <typename Inheritable>
void WriteOrigin(XmlWriter& writer, const Inheritable& element, const Selection& selection) {
    if (selection.includeClassOrigin) {
        writer.Attribute("CLASSORIGIN", element.classOrigin);
    }
    WriteFlag(writer, "PROPAGATED", element.propagated, false);
}

void WriteProperty(XmlWriter& writer, const Property& property, const Value& value, const Selection& selection) {
    StartHolder(writer, "PROPERTY", property);
    WriteOrigin(writer, property, selection);
    if (property.FindQualifier("EmbeddedInstance")) {
        writer.Attribute("EmbeddedObject", "instance");
    } else if (property.Is("EmbeddedObject")) {
        writer.Attribute("EmbeddedObject", "object");
    }
    WriteQualifiers(writer, property, selection);
    WriteValue(writer, value);
    writer.End();
}

void WriteMethod(XmlWriter& writer, const Method& method, const Selection& selection) {
    writer.Start("METHOD").Attribute("NAME", method.name).Attribute("TYPE", TypeName(method.type));
    WriteOrigin(writer, method, selection);
    WriteQualifiers(writer, method, selection);
    for (const auto& parameter : method.parameters) {
        StartHolder(writer, "PARAMETER", parameter);
        WriteQualifiers(writer, parameter, selection);
        writer.End();
    }
    writer.End();
}

std::string_view KeyValueType(CimType type) {
    return type == CimType::kBoolean ? "boolean" : IsNumeric(type) ? "numeric" : "string";
}

struct NamedScope {
    Scope scope;
    std::string_view attribute;
};

constexpr std::array kScopes{
    NamedScope{Scope::kClass, "CLASS"},           NamedScope{Scope::kAssociation, "ASSOCIATION"},
    NamedScope{Scope::kReference, "REFERENCE"},   NamedScope{Scope::kProperty, "PROPERTY"},
    NamedScope{Scope::kMethod, "METHOD"},         NamedScope{Scope::kParameter, "PARAMETER"},
    NamedScope{Scope::kIndication, "INDICATION"},
};

} // namespace

void WriteClass(XmlWriter& writer, const Class& declaration, const Selection& selection) {
    writer.Start("CLASS").Attribute("NAME", declaration.name);
    if (!declaration.superclass.empty()) {
        writer.Attribute("SUPERCLASS", declaration.superclass);
    }
    WriteQualifiers(writer, declaration, selection);
    for (const auto& property : declaration.properties) {
        if (selection.Wants(property) && !(selection.localOnly && property.propagated)) {
            WriteProperty(writer, property, property.defaultValue, selection);
        }
    }
    for (const auto& method : declaration.methods) {
        if (!(selection.localOnly && method.propagated)) {
            WriteMethod(writer, method, selection);
        }
    }
    writer.End();
}

void WriteQualifierDeclaration(XmlWriter& writer, const QualifierDeclaration& declaration) {
    writer.Start("QUALIFIER.DECLARATION").Attribute("NAME", declaration.name);
    writer.Attribute("TYPE", TypeName(declaration.type));
    WriteFlag(writer, "ISARRAY", declaration.isArray, false);
    WriteFlavors(writer, declaration);
    writer.Start("SCOPE");
    for (const auto& [scope, attribute] : kScopes) {
        WriteFlag(writer, attribute, declaration.scopes.count(scope) != 0, false);
    }
    writer.End();
    WriteValue(writer, declaration.defaultValue);
    writer.End();
}

void WriteClassName(XmlWriter& writer, const std::string& name) {
    writer.Start("CLASSNAME").Attribute("NAME", name).End();
}

void WriteInstanceName(XmlWriter& writer, const ObjectPath& path) {
    writer.Start("INSTANCENAME").Attribute("CLASSNAME", path.className);
    for (const auto& key : path.keys) {
        writer.Start("KEYBINDING").Attribute("NAME", key.name);
        if (const auto* const text = key.value.AsText()) {
            writer.Start("KEYVALUE").Attribute("VALUETYPE", KeyValueType(key.type)).Text(*text).End();
        } else {
            WriteValue(writer, key.value);
        }
        writer.End();
    }
    writer.End();
}

void WriteClassPath(XmlWriter& writer, const NamespacePath& location, const std::string& className) {
    writer.Start("CLASSPATH");
    WriteNamespacePath(writer, location);
    WriteClassName(writer, className);
    writer.End();
}

void WriteInstancePath(XmlWriter& writer, const NamespacePath& location, const ObjectPath& path) {
    writer.Start("INSTANCEPATH");
    WriteNamespacePath(writer, location);
    WriteInstanceName(writer, path);
    writer.End();
}

void WriteOutputParameter(XmlWriter& writer, std::string_view name, std::string_view type, std::string_view text) {
    writer.Start("PARAMVALUE").Attribute("NAME", name).Attribute("PARAMTYPE", type);
    writer.Start("VALUE").Text(text).End();
    writer.End();
}

void WriteValue(XmlWriter& writer, const Value& value) {
    if (const auto* const text = value.AsText()) {
        writer.Start("VALUE").Text(*text).End();
    } else if (const auto* const items = value.AsArray()) {
        writer.Start("VALUE.ARRAY");
        for (const auto& item : *items) {
            if (item) {
                writer.Start("VALUE").Text(*item).End();
            } else {
                writer.Start("VALUE.NULL").End();
            }
        }
        writer.End();
    } else if (const auto* const reference = value.AsReference()) {
        writer.Start("VALUE.REFERENCE");
        WriteAnyInstancePath(writer, *reference);
        writer.End();
    }
}

void WriteInstance(XmlWriter& writer, const Class& declaration, const Class& shape, const Instance& instance,
                   const Selection& selection) {
    writer.Start("INSTANCE").Attribute("CLASSNAME", declaration.name);
    WriteQualifiers(writer, declaration, selection);
    for (const auto& property : declaration.properties) {
        if (selection.Wants(property) && (&shape == &declaration || shape.FindProperty(property.name))) {
            WriteProperty(writer, property, instance.ValueOf(property), selection);
        }
    }
    writer.End();
}

std::string EmbeddedInstanceText(const Class& declaration, const Instance& instance) {
    std::string text;
    XmlWriter writer([&](std::string_view portion) { text += portion; });
    WriteInstance(writer, declaration, declaration, instance, Selection());
    writer.Flush();
    return text;
}

} // namespace demo
