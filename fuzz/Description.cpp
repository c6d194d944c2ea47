#include "Description.h"

#include "Require.h"
#include "model/VisitType.h"

#include <type_traits>

using namespace Pegasus;

namespace {

template <class T>
constexpr bool kIsEmbedded = std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>;

/// Asks for a value as an array when it is a scalar and the other way round.
template <class T>
void AskForOtherShape(const CIMValue& value) {
    using Other = std::conditional_t<detail::ValueType<T>::kIsArray, Boolean, Array<T>>;
    try {
        Other other{};
        value.get(other);
    } catch (const TypeMismatchException&) {
        return;
    }
    Require(false, "a value asked for as another type throws TypeMismatchException");
}

/// There may be another of the name before it.
void RequireFoundByName(Uint32 found, Uint32 index) {
    Require(found <= index, "what an object holds is found by its name");
}

} // namespace

/// The length keeps neighbouring words apart.
void Description::Word(std::string_view word) { text_.append(std::to_string(word.size())).append(":").append(word); }

void Description::Add(const CIMName& name) {
    Require(name.isNull() || CIMName::legal(name.getString()), "a name is legal");
    Word(name.getString().view());
}

void Description::Add(const CIMObjectPath& path) {
    Word("path");
    Word(path.toString().view());
    Word(path.getHost().view());
    Word(path.getNameSpace().getString().view());
    Add(path.getClassName());
    for (const CIMKeyBinding& key : path.getKeyBindings()) {
        Add(key.getName());
        Number(key.getType());
        Word(key.getValue().view());
    }
}

void Description::Add(const CIMQualifierDecl& declaration) {
    Word("qualifier declaration");
    Add(declaration.getName());
    Add(declaration.getValue());
    Require(declaration.getType() == declaration.getValue().getType(), "a declaration has its value's type");
    Flag(declaration.isArray());
    Number(declaration.getArraySize());
    Word(declaration.getScope().toString().view());
    Word(declaration.getFlavor().toString().view());
}

void Description::Add(const CIMClass& cimClass) {
    Word("class");
    Add(cimClass.getClassName());
    Add(cimClass.getSuperClassName());
    Add(cimClass.getPath());
    Flag(cimClass.isAssociation());
    Flag(cimClass.isAbstract());
    AddQualifiers(cimClass);
    AddProperties(cimClass);
    for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i) {
        RequireFoundByName(cimClass.findMethod(cimClass.getMethod(i).getName()), i);
        Add(cimClass.getMethod(i));
    }
}

void Description::Add(const CIMInstance& instance) {
    Word("instance");
    Add(instance.getClassName());
    Add(instance.getPath());
    AddProperties(instance);
}

void Description::Add(const CIMObject& object) {
    Add(object.getClassName());
    Add(object.getPath());
    if (object.isClass()) {
        Add(CIMClass(object));
    } else {
        Add(CIMInstance(object));
    }
}

void Description::Add(const CIMConstMethod& method) {
    Word("method");
    Add(method.getName());
    Number(method.getType());
    Add(method.getClassOrigin());
    Flag(method.getPropagated());
    AddQualifiers(method);
    for (Uint32 i = 0; i < method.getParameterCount(); ++i) {
        RequireFoundByName(method.findParameter(method.getParameter(i).getName()), i);
        Add(method.getParameter(i));
    }
}

void Description::Add(const CIMConstParameter& parameter) {
    Word("parameter");
    Add(parameter.getName());
    Number(parameter.getType());
    Flag(parameter.isArray());
    Number(parameter.getArraySize());
    Add(parameter.getReferenceClassName());
    AddQualifiers(parameter);
}

void Description::Add(const CIMConstProperty& property) {
    Word("property");
    Add(property.getName());
    Add(property.getValue());
    Require(property.getType() == property.getValue().getType(), "a property has its value's type");
    Flag(property.isArray());
    Number(property.getArraySize());
    Add(property.getReferenceClassName());
    Add(property.getClassOrigin());
    Flag(property.getPropagated());
    AddQualifiers(property);
}

void Description::Add(const CIMConstQualifier& qualifier) {
    Word("qualifier");
    Add(qualifier.getName());
    Add(qualifier.getValue());
    Word(qualifier.getFlavor().toString().view());
    Flag(qualifier.getPropagated());
}

void Description::Add(const CIMValue& value) {
    Word(cimTypeToString(value.getType()));
    Flag(value.isArray());
    Flag(value.isNull());
    Word(value.toString().view());
    detail::visitType(value.getType(), [&](auto tag) {
        using T = typename decltype(tag)::Type;
        if (value.isArray()) {
            AddContent<Array<T>>(value);
        } else {
            AddContent<T>(value);
        }
    });
}

template <class T>
void Description::AddContent(const CIMValue& value) {
    AskForOtherShape<T>(value);
    T content{};
    value.get(content);
    if (value.isNull()) {
        return;
    }
    if constexpr (detail::ValueType<T>::kIsArray) {
        Require(value.getArraySize() == content.size(), "an array value has as many elements as its array");
        for (const auto& item : content) {
            AddItem(item);
        }
    } else {
        AddItem(content);
    }
}

template <class T>
void Description::AddItem(const T& item) {
    if constexpr (kIsEmbedded<T>) {
        Flag(item.isUninitialized());
        if (!item.isUninitialized()) {
            Add(item);
        }
    } else if constexpr (std::is_same_v<T, CIMObjectPath>) {
        Add(item);
    } else {
        Word(CIMValue(item).toString().view());
    }
}

template <class Owner>
void Description::AddQualifiers(const Owner& owner) {
    for (Uint32 i = 0; i < owner.getQualifierCount(); ++i) {
        RequireFoundByName(owner.findQualifier(owner.getQualifier(i).getName()), i);
        Add(owner.getQualifier(i));
    }
}

template <class Owner>
void Description::AddProperties(const Owner& owner) {
    for (Uint32 i = 0; i < owner.getPropertyCount(); ++i) {
        RequireFoundByName(owner.findProperty(owner.getProperty(i).getName()), i);
        Add(owner.getProperty(i));
    }
}
