#include "reading/CompatibleReading.h"

#include <Pegasus/Client/CIMClient.h>

#include <utility>

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "convert/RemoteTypes.h"
#include "convert/RemoteValues.h"
#include "convert/StatusCodes.h"
#include "convert/StreamedText.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"
#include "model/Required.h"
#include "model/TCimHTTPClass.h"
#include "provider/TCimHTTPNamespace.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteFailures.h"
#include "reading/RemoteNames.h"
#include "reading/RemoteQualifiers.h"
#include "reading/RemoteRequest.h"
#include "reading/RemoteServer.h"

namespace NQORVYX20 {

namespace {

// A hierarchy deeper than this is a server's mistake or malice; fetching it must not exhaust the stack.
constexpr std::size_t kMaxHierarchyDepth = 256;

/// Notes a class as being fetched for the time of its life.
class TLookup {
  public:
    TLookup(std::set<std::string>& lookups, const std::string& key)
        : fLookups(lookups), fEntry(lookups.insert(key).first) {}
    ~TLookup() { fLookups.erase(fEntry); }
    TLookup(const TLookup&) = delete;
    TLookup& operator=(const TLookup&) = delete;

  private:
    std::set<std::string>& fLookups;
    std::set<std::string>::iterator fEntry;
};

ReadingIncident IncidentOf(const TCimHTTPClass& cls, ReadingIncident::Cause cause, const std::string& path,
                           const std::string& property, const std::string& reason) {
    return {cause, cls.GetName(TCIMContext()), path, property, reason};
}

} // namespace

CompatibleReading::CompatibleReading(boost::shared_ptr<TCimHTTPNamespace> nameSpace) : fNamespace(nameSpace) {}

boost::shared_ptr<TCimHTTPNamespace> CompatibleReading::LockNamespace() const {
    return boost::shared_ptr<TCimHTTPNamespace>(fNamespace);
}

// --- Classes -----------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMClass> CompatibleReading::FetchClass(const std::string& name, const std::string& key,
                                                           TCIMContext context) {
    const auto nameSpace = LockNamespace();
    if (fLookups.size() >= kMaxHierarchyDepth || fLookups.count(key) != 0) {
        const std::string text =
            "TCimHTTPNamespace::GetClass " + key + ": the server's class hierarchy has a cycle or is too deep";
        LogError(text);
        nameSpace->Report().Fail(MalformedAnswer(text));
        return {};
    }
    const TLookup lookup(fLookups, key);
    try {
        BuildClass(nameSpace->Server().GetClassForItsNames(name), context);
    } catch (const Pegasus::Exception& failure) {
        LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + name +
                 "returned exception: " + ToStdString(failure.getMessage()));
        nameSpace->Report().Fail(RemoteFailureOf(failure));
        return {};
    } catch (...) {
        return {}; // a definition that cannot be built is as good as none
    }
    auto built = nameSpace->FindClass(key);
    if (built) {
        LogDebug("TCimHTTPNamespace::GetClass " + key + " Now it is Found in TCimHTTPNamespace");
    } else {
        LogError("TCimHTTPNamespace::GetClass " + key + " Not Found - Something Wrong");
    }
    return built;
}

void CompatibleReading::BuildClass(const Pegasus::CIMClass& names, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const std::string name = ToStdString(names.getClassName());
    const auto& superClassName = names.getSuperClassName();
    const auto superClass =
        nameSpace->GetClass(superClassName.isNull() ? "" : ToStdString(superClassName), TCIMContext());
    const auto cls = nameSpace->AllocateClass(name, superClass, TCIMContext());
    nameSpace->StampClass(*cls, context);
    cls->AddToNamespace(context);
}

boost::shared_ptr<ICIMClass> CompatibleReading::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<TCimHTTPClass> superClass) {
    const auto nameSpace = LockNamespace();
    try {
        return nameSpace->MakeClass(name, superClass);
    } catch (const Pegasus::Exception& exception) {
        if (!fLookups.empty()) {
            throw;
        }
        const RemoteFailure failure = RemoteFailureOf(exception);
        LogError("TCimHTTPNamespace::AllocateClass " + name + ": " + failure.text);
        nameSpace->Report().Fail(failure);
        throw TVYXException(StatusCodeOf(failure));
    }
}

void CompatibleReading::Define(TCimHTTPClass& cls) {
    const auto nameSpace = LockNamespace();
    cls.SetSuperClass(nameSpace->GetRootClass());
    Pegasus::CIMClass remote = nameSpace->Server().GetClassToBuild(cls.GetName(TCIMContext()));
    CopyQualifiers(*nameSpace, remote, cls);
    for (Pegasus::Uint32 i = 0; i < remote.getPropertyCount(); ++i) {
        Pegasus::CIMProperty property = remote.getProperty(i);
        AddProperty(cls, property);
    }
    for (Pegasus::Uint32 i = 0; i < remote.getMethodCount(); ++i) {
        Pegasus::CIMMethod method = remote.getMethod(i);
        AddMethod(cls, method);
    }
}

void CompatibleReading::AddProperty(TCimHTTPClass& cls, Pegasus::CIMProperty& remote) const {
    const std::string name = ToStdString(remote.getName());
    const std::string key = NormalizeName(name);
    const auto declaration = cls.AllocatePropertyDecl(name, TCIMValue(), TCIMContext());
    declaration->SetDefaultValue(TCIMValue(pegTypeToVYXType(remote.getType(), remote.isArray()), 0), TCIMContext());
    CopyQualifiers(*LockNamespace(), remote, *declaration);
    cls.KeepPropertyDecl(key, declaration);
}

void CompatibleReading::AddMethod(TCimHTTPClass& cls, Pegasus::CIMMethod& remote) const {
    const std::string name = ToStdString(remote.getName());
    const std::string key = NormalizeName(name);
    const auto declaration = cls.AllocateMethodDecl(name, pegTypeToVYXType(remote.getType(), false), TCIMContext());
    for (Pegasus::Uint32 i = 0; i < remote.getParameterCount(); ++i) {
        auto parameter = remote.getParameter(i);
        // An array parameter is declared with the type of its elements.
        const auto type = pegTypeToVYXType(parameter.getType(), false);
        declaration->AllocateParameterDecl(ToStdString(parameter.getName()), type, TCIMContext())
            ->AddToMethod(TCIMContext());
    }
    cls.KeepMethodDecl(key, declaration);
}

boost::shared_ptr<ICIMClass> CompatibleReading::FetchSuperClass(TCimHTTPClass& /*cls*/) {
    return LockNamespace()->GetRootClass();
}

void CompatibleReading::CompleteSubClasses(TCimHTTPClass& /*cls*/, bool /*deep*/) {}

// --- Instances ---------------------------------------------------------------------------------------------------

void CompatibleReading::EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                                           TCIMContext /*context*/) {
    if (cls.CountInstances() == 0) {
        FetchInstances(cls, deep);
    }
    cls.VisitInstances(callback, deep);
}

void CompatibleReading::FetchInstances(TCimHTTPClass& cls, bool deep) {
    const std::string& className = cls.GetName(TCIMContext());
    try {
        const auto nameSpace = LockNamespace();
        nameSpace->Report().BeginOperation();
        auto remotes = nameSpace->Server().EnumerateLocalInstances(className, deep);
        RemoteNames names;
        StreamedText texts;
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            AddInstance(cls, std::exchange(remotes[i], {}), names, texts); // gives its memory to what is made of it
        }
    } catch (const Pegasus::Exception& failure) {
        LogError("TCimHTTPClass::EnumerateInstances from Pegasus for: " + className +
                 "returned exception: " + ToStdString(failure.getMessage()));
        LockNamespace()->Report().Fail(RemoteFailureOf(failure));
    } catch (...) {
        // What was filed until then is served.
    }
}

void CompatibleReading::AddInstance(TCimHTTPClass& cls, const Pegasus::CIMInstance& remote, RemoteNames& names,
                                    StreamedText& texts) {
    ReadingReport& report = LockNamespace()->Report();
    const auto instance = cls.AllocateInstance(TCIMContext());
    for (Pegasus::Uint32 i = 0; i < remote.getPropertyCount(); ++i) {
        auto property = remote.getProperty(i);
        try {
            const std::string& name = names.Normalized(i, property.getName());
            TCIMValue value;
            pegValToVYX(property.getValue(), property.getType(), property.isArray(), texts, value);
            instance->SetPropertyValue(name, value, TCIMContext());
            if (value.IsNull() && !property.getValue().isNull()) {
                report.Add(IncidentOf(cls, ReadingIncident::Cause::kBadValue, ToStdString(remote.getPath().toString()),
                                      ToStdString(property.getName()),
                                      "a compatible namespace has no embedded objects and no arrays of references"));
            }
        } catch (...) {
            const std::string name = ToStdString(property.getName());
            LogError("TCimHTTPClass::EnumerateInstances - Unable to retrieve property: " + name);
            report.Add(IncidentOf(cls, ReadingIncident::Cause::kBadValue, ToStdString(remote.getPath().toString()),
                                  name, "the class has no such property, or one of another type"));
        }
    }
    const std::size_t count = cls.CountInstances();
    cls.AddInstance(instance);
    if (cls.CountInstances() == count) {
        report.Add(IncidentOf(cls, ReadingIncident::Cause::kDoubledPath, instance->BuildPath(TCIMContext()).GetPath(),
                              "", "an instance before has the same path"));
    }
    LogDebug("TCimHTTPClass::EnumerateInstances created instance: " +
             instance->GetClass(TCIMContext())->GetName(TCIMContext()));
}

boost::shared_ptr<ICIMInstance> CompatibleReading::GetInstance(const TCIMReference& reference, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const auto cls =
        boost::dynamic_pointer_cast<TCimHTTPClass>(nameSpace->GetClass(reference.GetClassName(), TCIMContext()));
    return Required(cls, kNotFound).GetInstance(reference, context);
}

} // namespace NQORVYX20
