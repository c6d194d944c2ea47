#include "access/RemoteReader.h"

#include "access/RemotePaths.h"
#include "access/Remotely.h"
#include "convert/HostValues.h"
#include "convert/RemoteText.h"
#include "host/ICIMInstance.h"
#include "host/TVYXException.h"
#include "provider/TCimHTTPNamespace.h"
#include "reading/FaithfulReading.h"
#include "reading/InstanceEnumeration.h"
#include "reading/RemoteServer.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

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
            {NameText(qualifier.getName()), HostValue(qualifier.getValue()), FlavorOf(qualifier.getFlavor())});
    }
    return qualifiers;
}

std::vector<RemoteClassName::Reference> ReferencesOf(const Pegasus::CIMClass& cls) {
    std::vector<RemoteClassName::Reference> references;
    for (Pegasus::Uint32 i = 0; i < cls.getPropertyCount(); ++i) {
        const auto property = cls.getProperty(i);
        if (property.getType() == Pegasus::CIMTYPE_REFERENCE) {
            references.push_back({NameText(property.getName()), NameText(property.getReferenceClassName())});
        }
    }
    return references;
}

std::string TypeName(Pegasus::CIMType type) {
    const bool isEmbedded = type == Pegasus::CIMTYPE_OBJECT || type == Pegasus::CIMTYPE_INSTANCE;
    return Pegasus::cimTypeToString(isEmbedded ? Pegasus::CIMTYPE_STRING : type);
}

/// Of a property or parameter.
template <typename Element>
RemoteType TypeOf(Element& element) {
    return {TypeName(element.getType()), element.isArray(), element.getArraySize(),
            NameText(element.getReferenceClassName())};
}

RemoteProperty PropertyOf(Pegasus::CIMProperty property) {
    return {NameText(property.getName()),        TypeOf(property),         HostValue(property.getValue()),
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
            HostValue(declaration.getValue()),
            ScopesOf(declaration.getScope()),
            FlavorOf(declaration.getFlavor())};
}

class EnumeratedPortion : public ReceivedPortion {
  public:
    EnumeratedPortion(InstanceEnumeration& enumeration, ReceivedInstances received)
        : enumeration_(enumeration), received_(std::move(received)) {}

    std::vector<boost::shared_ptr<ICIMInstance>> Make() override { return enumeration_.Make(received_); }

  private:
    InstanceEnumeration& enumeration_;
    ReceivedInstances received_;
};

class EnumeratedInstances : public InstanceSequence {
  public:
    explicit EnumeratedInstances(std::unique_ptr<InstanceEnumeration> enumeration)
        : enumeration_(std::move(enumeration)) {}

    std::vector<boost::shared_ptr<ICIMInstance>> Next() override { return enumeration_->Next(); }
    std::unique_ptr<ReceivedPortion> Receive() override {
        return std::make_unique<EnumeratedPortion>(*enumeration_, enumeration_->Receive());
    }
    void Settle() override { enumeration_->Settle(); }
    bool IsAtEnd() const override { return enumeration_->IsAtEnd(); }
    bool HasMoreAtHand() const override { return enumeration_->HasMoreAtHand(); }
    bool MayReadAhead() const override { return enumeration_->MayReadAhead(); }
    void Stop() noexcept override { enumeration_->Stop(); }

  private:
    std::unique_ptr<InstanceEnumeration> enumeration_;
};

} // namespace

std::vector<std::string> ReadRemoteClassNames(TCimHTTPNamespace& nameSpace) {
    return Remotely([&] {
        const auto names = nameSpace.Server().EnumerateClassNames(*nameSpace.getPegNSP(), Pegasus::CIMName());
        std::vector<std::string> texts;
        texts.reserve(names.size());
        for (Pegasus::Uint32 i = 0; i < names.size(); ++i) {
            texts.push_back(NameText(names[i]));
        }
        return texts;
    });
}

std::vector<TCIMReference> ReadRemotePaths(TCimHTTPNamespace& nameSpace, const std::string& className) {
    return Remotely([&] {
        CheckName(className);
        return HostReferences(nameSpace.Server().EnumerateInstanceNames(className));
    });
}

std::vector<TCIMReference> ReadRemotePathsIn(TCimHTTPNamespace& nameSpace, const std::string& name,
                                             const std::string& className) {
    return Remotely([&] {
        CheckName(className);
        return HostReferences(
            nameSpace.Server().EnumerateInstanceNames(Pegasus::CIMNamespaceName(name.c_str()), className));
    });
}

RemoteClass ReadRemoteClass(TCimHTTPNamespace& nameSpace, const std::string& name) {
    return Remotely([&] {
        CheckName(name);
        return ClassOf(nameSpace.Server().GetWholeClass(name));
    });
}

std::vector<RemoteClassName> ReadRemoteHierarchy(TCimHTTPNamespace& nameSpace) {
    return Remotely([&] {
        auto classes = nameSpace.Server().EnumerateClassHeads();
        std::vector<RemoteClassName> names;
        for (Pegasus::Uint32 i = 0; i < classes.size(); ++i) {
            names.push_back({NameText(classes[i].getClassName()), NameText(classes[i].getSuperClassName()),
                             ReferencesOf(classes[i])});
        }
        return names;
    });
}

std::vector<RemoteQualifierDeclaration> ReadRemoteQualifiers(TCimHTTPNamespace& nameSpace) {
    return Remotely([&] {
        auto remotes = nameSpace.Server().EnumerateQualifiers();
        std::vector<RemoteQualifierDeclaration> declarations;
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            declarations.push_back(DeclarationOf(remotes[i]));
        }
        return declarations;
    });
}

std::unique_ptr<InstanceSequence> OpenRemoteInstances(TCimHTTPNamespace& nameSpace, TCimHTTPClass& cls, bool deep,
                                                      const TCIMContext& context) {
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace.GetReading());
    return std::make_unique<EnumeratedInstances>(reading.OpenInstances(cls, deep, context));
}

bool HasRemotePulls(TCimHTTPNamespace& nameSpace) {
    return Remotely([&] { return nameSpace.Server().HasPulledEnumerations(); });
}

boost::shared_ptr<ICIMInstance> ReadRemoteInstance(TCimHTTPNamespace& nameSpace, const std::string& path) {
    TCIMReference reference = ToHostReference(ParsedPath(path));
    reference.SetHost(std::string());
    reference.SetNamespaceName(std::string());
    try {
        return nameSpace.GetInstance(reference, TCIMContext());
    } catch (const TVYXException&) {
        if (const auto& failure = nameSpace.LastFailure()) {
            throw RemoteError(*failure);
        }
        throw;
    }
}

TCIMReference ParsedReference(const std::string& path) { return ToHostReference(ParsedPath(path)); }

std::string NamespaceOfPath(const std::string& path) { return NameText(ParsedPath(path).getNameSpace()); }

} // namespace cimhttp
