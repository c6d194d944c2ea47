#include "access/RemoteReader.h"

#include "convert/RemoteText.h"
#include "convert/RemoteTypes.h"
#include "convert/RemoteValues.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ILogger.h"
#include "host/TRootObject.h"
#include "host/TVYXException.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr bool kDeep = true;
constexpr bool kWithQualifiers = true;
constexpr bool kWithOrigin = true;
constexpr bool kLocalOnly = true;

/// Runs one operation of the client. Its exceptions must not leave this library, whose users do not know their types.
template <typename Operation>
auto Remotely(const Operation& operation) {
    try {
        return operation();
    } catch (const Pegasus::Exception& failure) {
        throw RemoteFailure(ToStdString(failure.getMessage()));
    }
}

/// Names that are null have an empty text.
std::string NameText(const Pegasus::CIMName& name) { return name.isNull() ? std::string() : ToStdString(name); }

TCIMValue ValueOf(const Pegasus::CIMValue& value) {
    TCIMValue converted(pegTypeToVYXType(value.getType(), value.isArray()), 0);
    if (!value.isNull()) {
        pegValToVYX(value, value.getType(), value.isArray(), converted);
    }
    return converted;
}

RemoteFlavor FlavorOf(const Pegasus::CIMFlavor& flavor) {
    return {!flavor.hasFlavor(Pegasus::CIMFlavor::DISABLEOVERRIDE), !flavor.hasFlavor(Pegasus::CIMFlavor::RESTRICTED),
            flavor.hasFlavor(Pegasus::CIMFlavor::TRANSLATABLE)};
}

template <typename Element>
std::vector<RemoteQualifier> QualifiersOf(Element& element) {
    std::vector<RemoteQualifier> qualifiers;
    for (Pegasus::Uint32 i = 0; i < element.getQualifierCount(); ++i) {
        const auto qualifier = element.getQualifier(i);
        qualifiers.push_back(
            {NameText(qualifier.getName()), ValueOf(qualifier.getValue()), FlavorOf(qualifier.getFlavor())});
    }
    return qualifiers;
}

std::string TypeName(Pegasus::CIMType type) {
    const bool is_embedded = type == Pegasus::CIMTYPE_OBJECT || type == Pegasus::CIMTYPE_INSTANCE;
    return Pegasus::cimTypeToString(is_embedded ? Pegasus::CIMTYPE_STRING : type);
}

/// Of a property or parameter.
template <typename Element>
RemoteType TypeOf(Element& element) {
    return {TypeName(element.getType()), element.isArray(), element.getArraySize(),
            NameText(element.getReferenceClassName())};
}

RemoteProperty PropertyOf(Pegasus::CIMProperty property) {
    return {NameText(property.getName()),        TypeOf(property),         ValueOf(property.getValue()),
            NameText(property.getClassOrigin()), property.getPropagated(), QualifiersOf(property)};
}

RemoteMethod MethodOf(Pegasus::CIMMethod method) {
    RemoteMethod result{NameText(method.getName()),
                        {TypeName(method.getType()), false, 0, {}},
                        NameText(method.getClassOrigin()),
                        method.getPropagated(),
                        {},
                        QualifiersOf(method)};
    for (Pegasus::Uint32 i = 0; i < method.getParameterCount(); ++i) {
        auto parameter = method.getParameter(i);
        result.parameters.push_back({NameText(parameter.getName()), TypeOf(parameter), QualifiersOf(parameter)});
    }
    return result;
}

RemoteClass ClassOf(Pegasus::CIMClass cls) {
    RemoteClass result{NameText(cls.getClassName()), NameText(cls.getSuperClassName()), QualifiersOf(cls), {}, {}};
    for (Pegasus::Uint32 i = 0; i < cls.getPropertyCount(); ++i) {
        result.properties.push_back(PropertyOf(cls.getProperty(i)));
    }
    for (Pegasus::Uint32 i = 0; i < cls.getMethodCount(); ++i) {
        result.methods.push_back(MethodOf(cls.getMethod(i)));
    }
    return result;
}

std::vector<std::string> ScopesOf(const Pegasus::CIMScope& scope) {
    if (scope.hasScope(Pegasus::CIMScope::ANY)) {
        return {"any"};
    }
    const std::pair<const Pegasus::CIMScope&, const char*> all[] = {
        {Pegasus::CIMScope::CLASS, "class"},           {Pegasus::CIMScope::ASSOCIATION, "association"},
        {Pegasus::CIMScope::INDICATION, "indication"}, {Pegasus::CIMScope::PROPERTY, "property"},
        {Pegasus::CIMScope::REFERENCE, "reference"},   {Pegasus::CIMScope::METHOD, "method"},
        {Pegasus::CIMScope::PARAMETER, "parameter"}};
    std::vector<std::string> scopes;
    for (const auto& [one, name] : all) {
        if (scope.hasScope(one)) {
            scopes.emplace_back(name);
        }
    }
    return scopes;
}

RemoteQualifierDeclaration DeclarationOf(Pegasus::CIMQualifierDecl declaration) {
    return {NameText(declaration.getName()),
            {TypeName(declaration.getType()), declaration.isArray(), declaration.getArraySize(), {}},
            ValueOf(declaration.getValue()),
            ScopesOf(declaration.getScope()),
            FlavorOf(declaration.getFlavor())};
}

/// The path of the same keys among the instances of its class and the subclasses; the path itself when there is none.
Pegasus::CIMObjectPath PathInSubclasses(TCimHTTPNamespace& name_space, const Pegasus::CIMObjectPath& path) {
    const auto names = name_space.getPegClient()->enumerateInstanceNames(*name_space.getPegNSP(), path.getClassName());
    const Pegasus::CIMObjectPath keys({}, {}, {}, path.getKeyBindings());
    for (Pegasus::Uint32 i = 0; i < names.size(); ++i) {
        if (Pegasus::CIMObjectPath({}, {}, {}, names[i].getKeyBindings()) == keys) {
            return names[i];
        }
    }
    return path;
}

Pegasus::CIMInstance GetRemoteInstance(TCimHTTPNamespace& name_space, const Pegasus::CIMObjectPath& path) {
    return name_space.getPegClient()->getInstance(*name_space.getPegNSP(), path, !kLocalOnly);
}

Pegasus::CIMInstance FindRemoteInstance(TCimHTTPNamespace& name_space, const Pegasus::CIMObjectPath& path) {
    try {
        return GetRemoteInstance(name_space, path);
    } catch (const Pegasus::CIMException& failure) {
        if (failure.getCode() != Pegasus::CIM_ERR_NOT_FOUND) {
            throw;
        }
        // The plug-in names instances of subclasses by the class that was asked for them.
        const Pegasus::CIMObjectPath other = PathInSubclasses(name_space, path);
        if (other.getClassName() == path.getClassName()) {
            throw;
        }
        return GetRemoteInstance(name_space, other);
    }
}

Pegasus::CIMName NameOf(const std::string& text) {
    if (!Pegasus::CIMName::legal(Pegasus::String(text.c_str()))) {
        throw std::invalid_argument(text);
    }
    return {text.c_str()};
}

Pegasus::CIMObjectPath ParsedPath(const std::string& text) {
    try {
        return {text.c_str()};
    } catch (const Pegasus::Exception& failure) {
        throw std::invalid_argument(ToStdString(failure.getMessage()));
    }
}

/// The path of an instance in the namespace that is read, which it need not name.
Pegasus::CIMObjectPath PathIn(TCimHTTPNamespace& name_space, const std::string& text) {
    auto path = ParsedPath(text);
    const Pegasus::CIMNamespaceName& read = *name_space.getPegNSP();
    if (!path.getNameSpace().isNull() && !path.getNameSpace().equal(read)) {
        throw std::invalid_argument("it is in the namespace " + ToStdString(path.getNameSpace().getString()) +
                                    ", and only " + ToStdString(read.getString()) + " is read");
    }
    return path;
}

void SetValue(ICIMInstance& instance, const Pegasus::CIMProperty& property) {
    if (property.getValue().isNull()) {
        return; // what a new instance's property is already
    }
    const std::string name = NameText(property.getName());
    try {
        TCIMValue value;
        pegValToVYX(property.getValue(), property.getType(), property.isArray(), value);
        instance.SetPropertyValue(name, value, TCIMContext());
    } catch (const TVYXException&) {
        TRootObject::GetCoreLogger()->Log(ILogger::eLogError, "the value of property " + name + " cannot be kept");
    }
}

} // namespace

RemoteClass ReadRemoteClass(TCimHTTPNamespace& name_space, const std::string& name) {
    return Remotely([&] {
        return ClassOf(name_space.getPegClient()->getClass(*name_space.getPegNSP(), NameOf(name), !kLocalOnly,
                                                           kWithQualifiers, kWithOrigin));
    });
}

std::vector<RemoteClassName> ReadRemoteHierarchy(TCimHTTPNamespace& name_space) {
    return Remotely([&] {
        auto classes = name_space.getPegClient()->enumerateClasses(*name_space.getPegNSP(), Pegasus::CIMName(), kDeep,
                                                                   kLocalOnly, !kWithQualifiers);
        std::vector<RemoteClassName> names;
        for (Pegasus::Uint32 i = 0; i < classes.size(); ++i) {
            names.push_back({NameText(classes[i].getClassName()), NameText(classes[i].getSuperClassName())});
        }
        return names;
    });
}

std::vector<RemoteQualifierDeclaration> ReadRemoteQualifiers(TCimHTTPNamespace& name_space) {
    return Remotely([&] {
        auto remotes = name_space.getPegClient()->enumerateQualifiers(*name_space.getPegNSP());
        std::vector<RemoteQualifierDeclaration> declarations;
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            declarations.push_back(DeclarationOf(remotes[i]));
        }
        return declarations;
    });
}

boost::shared_ptr<ICIMInstance> ReadRemoteInstance(TCimHTTPNamespace& name_space, const std::string& path) {
    return Remotely([&]() -> boost::shared_ptr<ICIMInstance> {
        auto remote = FindRemoteInstance(name_space, PathIn(name_space, path));
        const auto cls = name_space.GetClass(NameText(remote.getClassName()), TCIMContext());
        if (!cls) {
            return {};
        }
        auto instance = cls->AllocateInstance(TCIMContext());
        for (Pegasus::Uint32 i = 0; i < remote.getPropertyCount(); ++i) {
            SetValue(*instance, remote.getProperty(i));
        }
        return instance;
    });
}

} // namespace cimhttp
