#include "reading/FaithfulReading.h"

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "convert/UnsignedNumber.h"
#include "host/ICIMInstance.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "model/TFaithfulInstance.h"
#include "reading/InstanceEnumeration.h"
#include "reading/InstancePath.h"
#include "reading/InstanceReader.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteRequest.h"
#include "reading/RemoteServer.h"

#include <boost/make_shared.hpp>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace NQORVYX20 {

namespace {

constexpr bool kIsReported = true;

/// The property list that a context asks for. Throws TVYXException eTypeMismatch, after a line in the log, for another
/// value than an array of texts, eInvalidName for a text that is no name.
Pegasus::CIMPropertyList PropertiesIn(const TCIMContext& context) {
    const auto wanted = context.find(kPropertiesKey);
    if (wanted == context.end()) {
        return {};
    }
    if (wanted->second.IsNull() || wanted->second.GetType() != TCIMValue::TCIMType::eCIMStringArray) {
        LogError(std::string("TCimHTTPClass::EnumerateInstances: the context value '") + kPropertiesKey +
                 "' is not an array of texts");
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    Pegasus::Array<Pegasus::CIMName> names;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(wanted->second)) {
        const auto name = static_cast<std::string>(element);
        NormalizeName(name, NameRule::kCim); // throws
        names.append(Pegasus::CIMName(ToRemoteText(name)));
    }
    return {names};
}

/// How many instances may be held at once. Throws TVYXException eTypeMismatch, after a line in the log, for what is no
/// such number.
std::size_t HeldIn(const TCIMContext& context) {
    const auto held = context.find(kHeldKey);
    if (held == context.end()) {
        return InstanceEnumeration::kAll;
    }
    const auto number = UnsignedNumber(held->second);
    if (!number || *number == 0) {
        LogError(std::string("TCimHTTPClass::EnumerateInstances: the context value '") + kHeldKey +
                 "' is not a whole number above 0");
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    return *number;
}

} // namespace

FaithfulReading::FaithfulReading(boost::shared_ptr<RemoteNamespace> nameSpace)
    : namespace_(nameSpace), classes_(nameSpace) {}

boost::shared_ptr<RemoteNamespace> FaithfulReading::LockNamespace() const {
    return boost::shared_ptr<RemoteNamespace>(namespace_);
}

void FaithfulReading::End() {
    cache_.Clear();
    classes_.Clear();
}

// --- Classes -----------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMClass> FaithfulReading::WithoutConnection() {
    RemoteFailure failure;
    failure.kind = RemoteFailure::Kind::kNotConnected;
    failure.text = "the namespace is not connected";
    FailRemotely(LockNamespace()->Report(), "TCimHTTPNamespace::GetClass", failure);
}

boost::shared_ptr<ICIMClass> FaithfulReading::FetchClass(const std::string& name, const std::string& /*key*/,
                                                         TCIMContext context) {
    return classes_.Fetch(name, context);
}

boost::shared_ptr<ICIMClass> FaithfulReading::AllocateClass(const std::string& name, TClassPointer superClass) {
    return TCimHTTPClass::Make(LockNamespace(), name, superClass);
}

void FaithfulReading::Define(TCimHTTPClass& cls) { classes_.Define(cls); }

boost::shared_ptr<ICIMClass> FaithfulReading::FetchSuperClass(TCimHTTPClass& cls) {
    return classes_.FetchSuperClass(cls);
}

void FaithfulReading::CompleteSubClasses(TCimHTTPClass& cls, bool deep) { classes_.CompleteSubClasses(cls, deep); }

// --- Instances ---------------------------------------------------------------------------------------------------

void FaithfulReading::EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                                         TCIMContext context) {
    const auto enumeration = OpenInstances(cls, deep, context);
    do {
        for (const auto& instance : enumeration->Next()) {
            if (!callback(instance)) {
                return;
            }
        }
    } while (!enumeration->IsAtEnd());
}

std::unique_ptr<InstanceEnumeration> FaithfulReading::OpenInstances(TCimHTTPClass& cls, bool deep,
                                                                    const TCIMContext& context) {
    return std::make_unique<InstanceEnumeration>(LockNamespace(), *this, cls, deep, PropertiesIn(context),
                                                 HeldIn(context));
}

boost::shared_ptr<ICIMInstance> FaithfulReading::GetInstance(const TCIMReference& reference, TCIMContext /*context*/) {
    const auto nameSpace = LockNamespace();
    const auto cls = ClassOfPath(reference);
    const Pegasus::CIMNamespaceName& read = *nameSpace->Server().Namespace();
    const Pegasus::CIMObjectPath path = RemotePathOf(reference, *cls, read);
    if (auto known = cache_.Find(NormalizeName(cls->Name(), NameRule::kCim), PathOf(path, *cls, read).key)) {
        return known;
    }
    return AskRemotely(*nameSpace, "TCimHTTPNamespace::GetInstance " + reference.GetPath(), [&] {
        Pegasus::CIMInstance remote = nameSpace->Server().GetWholeInstance(path);
        const auto itsClass = classes_.ClassOf(ToStdString(remote.getClassName()), kIsReported);
        const Pegasus::CIMObjectPath itsPath(Pegasus::String(), Pegasus::CIMNamespaceName(), remote.getClassName(),
                                             path.getKeyBindings());
        classes_.Infer(*itsClass, remote);
        InstanceReader reader(nameSpace->Report());
        return boost::shared_ptr<ICIMInstance>(reader.Read(remote, itsClass, ReferenceOf(itsPath, *itsClass, read)));
    });
}

std::vector<boost::shared_ptr<ICIMInstance>> FaithfulReading::TakeOver(Pegasus::Array<Pegasus::CIMInstance>& remotes) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    return AskRemotely(*nameSpace, "TCimHTTPNamespace::GetClass", [&] {
        const Pegasus::CIMNamespaceName& read = *nameSpace->Server().Namespace();
        std::vector<boost::shared_ptr<ICIMInstance>> instances;
        std::map<std::string, TClassPointer> classes; // of these instances
        InstanceReader reader(nameSpace->Report());
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            Pegasus::CIMInstance remote = std::exchange(remotes[i], {}); // its memory goes to what is made of it
            const std::string name = ToStdString(remote.getClassName());
            TClassPointer& itsClass = classes[name];
            itsClass = itsClass ? itsClass : classes_.ClassOf(name, kIsReported);
            classes_.Infer(*itsClass, remote);
            TCIMReference path = ReferenceOf(remote.getPath(), *itsClass, read);
            path.SetHost(ToStdString(remote.getPath().getHost()));
            path.SetNamespaceName(ToStdString(read.getString()));
            instances.push_back(reader.Read(remote, itsClass, std::move(path)));
        }
        return instances;
    });
}

/// The class that a path names. One that the server does not give is no obstacle: the instance is asked for.
FaithfulReading::TClassPointer FaithfulReading::ClassOfPath(const TCIMReference& reference) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    const std::string& name = reference.GetClassName();
    NormalizeName(name, NameRule::kCim); // throws for what is no name
    if (name.empty()) {
        LogError("TCimHTTPNamespace::GetInstance: the path names no class");
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    return AskRemotely(*nameSpace, "TCimHTTPNamespace::GetInstance " + reference.GetPath(),
                       [&] { return classes_.ClassOf(name, !kIsReported); });
}

} // namespace NQORVYX20
