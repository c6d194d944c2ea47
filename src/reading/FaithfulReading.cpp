#include "reading/FaithfulReading.h"

#include <boost/make_shared.hpp>

#include <map>
#include <utility>
#include <vector>

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "convert/StatusCodes.h"
#include "host/ICIMInstance.h"
#include "host/TVYXException.h"
#include "model/EntryMap.h"
#include "model/TCimHTTPClass.h"
#include "model/TFaithfulInstance.h"
#include "provider/TCimHTTPNamespace.h"
#include "reading/InstancePath.h"
#include "reading/InstanceReader.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteRequest.h"
#include "reading/RemoteServer.h"

namespace NQORVYX20 {

namespace {

constexpr bool kIsReported = true;

std::string NameOf(const TCimHTTPClass& cls) { return cls.GetName(TCIMContext()); }

/// The property list that a context asks for. Throws TVYXException 14, after a line in the log, for another value than
/// an array of texts, 25 for a text that is no name.
Pegasus::CIMPropertyList PropertiesIn(const TCIMContext& context) {
    const auto wanted = context.find(kPropertiesKey);
    if (wanted == context.end()) {
        return {};
    }
    if (wanted->second.IsNull() || wanted->second.GetType() != TCIMValue::TCIMType::eCIMStringArray) {
        LogError(std::string("TCimHTTPClass::EnumerateInstances: the context value '") + kPropertiesKey +
                 "' is not an array of texts");
        throw TVYXException(kTypeMismatch);
    }
    Pegasus::Array<Pegasus::CIMName> names;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(wanted->second)) {
        const auto name = static_cast<std::string>(element);
        NormalizeName(name, NameRule::kCim); // throws
        names.append(Pegasus::CIMName(ToRemoteText(name)));
    }
    return {names};
}

} // namespace

FaithfulReading::FaithfulReading(boost::shared_ptr<TCimHTTPNamespace> nameSpace)
    : fNamespace(nameSpace), fClasses(nameSpace) {}

boost::shared_ptr<TCimHTTPNamespace> FaithfulReading::LockNamespace() const {
    return boost::shared_ptr<TCimHTTPNamespace>(fNamespace);
}

void FaithfulReading::End() {
    fReadings.Clear();
    fClasses.Clear();
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
    return fClasses.Fetch(name, context);
}

boost::shared_ptr<ICIMClass> FaithfulReading::AllocateClass(const std::string& name, TClassPointer superClass) {
    return LockNamespace()->MakeClass(name, superClass);
}

void FaithfulReading::Define(TCimHTTPClass& cls) { fClasses.Define(cls); }

boost::shared_ptr<ICIMClass> FaithfulReading::FetchSuperClass(TCimHTTPClass& cls) {
    return fClasses.FetchSuperClass(cls);
}

void FaithfulReading::CompleteSubClasses(TCimHTTPClass& cls, bool deep) { fClasses.CompleteSubClasses(cls, deep); }

// --- Instances ---------------------------------------------------------------------------------------------------

void FaithfulReading::EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                                         TCIMContext context) {
    const std::string key = NormalizeName(NameOf(cls), NameRule::kCim);
    const Pegasus::CIMPropertyList properties = PropertiesIn(context);
    const auto instances = boost::make_shared<const TInstances>(ReadInstances(cls, deep, properties));
    if (properties.isNull()) {
        fReadings.Keep(key, instances);
    } else {
        fReadings.Drop(key); // nobody is to take for null what was not asked for
    }
    VisitEntries(*instances, callback);
}

FaithfulReading::TInstances FaithfulReading::ReadInstances(TCimHTTPClass& cls, bool deep,
                                                           const Pegasus::CIMPropertyList& properties) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    return AskRemotely(nameSpace->Report(), "TCimHTTPClass::EnumerateInstances " + NameOf(cls), [&] {
        const Pegasus::CIMName className(ToRemoteText(NameOf(cls)));
        auto remotes = nameSpace->Server().EnumerateWholeInstances(NameOf(cls), properties);
        TInstances instances;
        std::map<std::string, TClassPointer> classes; // of this answer
        InstanceReader reader(nameSpace->Report());
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            Pegasus::CIMInstance remote = std::exchange(remotes[i], {}); // its memory goes to what is made of it
            if (deep || remote.getClassName().equal(className)) {
                const std::string name = ToStdString(remote.getClassName());
                TClassPointer& itsClass = classes[name];
                itsClass = itsClass ? itsClass : fClasses.ClassOf(name, kIsReported);
                Keep(remote, itsClass, reader, instances);
            }
        }
        return instances;
    });
}

/// Files one instance of an answer.
void FaithfulReading::Keep(Pegasus::CIMInstance& remote, const TClassPointer& cls, InstanceReader& reader,
                           TInstances& instances) {
    std::string key;
    const auto instance = MakeInstance(remote, remote.getPath(), cls, reader, key);
    // Servers mostly give instances in the order of their paths.
    if (instances.emplace_hint(instances.end(), key, instance)->second != instance) {
        LockNamespace()->Report().AddAndLog({ReadingIncident::Cause::kDoubledPath, NameOf(*cls),
                                             instance->GetReference(TCIMContext()).GetPath(), std::string(),
                                             "an instance before has the same path"});
    }
}

boost::shared_ptr<TFaithfulInstance> FaithfulReading::MakeInstance(Pegasus::CIMInstance& remote,
                                                                   const Pegasus::CIMObjectPath& path,
                                                                   const TClassPointer& cls, InstanceReader& reader,
                                                                   std::string& key) {
    fClasses.DeclareWhatIsSent(*cls, remote);
    InstancePath itsPath = PathOf(path, *cls, *LockNamespace()->Server().Namespace());
    key = itsPath.key;
    return reader.Read(remote, cls, std::move(itsPath));
}

boost::shared_ptr<ICIMInstance> FaithfulReading::GetInstance(const TCIMReference& reference, TCIMContext /*context*/) {
    const auto nameSpace = LockNamespace();
    const auto cls = ClassOfPath(reference);
    const Pegasus::CIMNamespaceName& read = *nameSpace->Server().Namespace();
    const Pegasus::CIMObjectPath path = RemotePathOf(reference, *cls, read);
    if (auto known = fReadings.Find(NormalizeName(NameOf(*cls), NameRule::kCim), PathOf(path, *cls, read).key)) {
        return known;
    }
    return AskRemotely(nameSpace->Report(), "TCimHTTPNamespace::GetInstance " + reference.GetPath(), [&] {
        Pegasus::CIMInstance remote = nameSpace->Server().GetWholeInstance(path);
        const auto itsClass = fClasses.ClassOf(ToStdString(remote.getClassName()), kIsReported);
        const Pegasus::CIMObjectPath itsPath(Pegasus::String(), Pegasus::CIMNamespaceName(), remote.getClassName(),
                                             path.getKeyBindings());
        InstanceReader reader(nameSpace->Report());
        std::string key;
        return boost::shared_ptr<ICIMInstance>(MakeInstance(remote, itsPath, itsClass, reader, key));
    });
}

std::vector<boost::shared_ptr<ICIMInstance>> FaithfulReading::TakeOver(Pegasus::Array<Pegasus::CIMInstance>& remotes) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    return AskRemotely(nameSpace->Report(), "TCimHTTPNamespace::GetClass", [&] {
        const Pegasus::CIMNamespaceName& read = *nameSpace->Server().Namespace();
        std::vector<boost::shared_ptr<ICIMInstance>> instances;
        std::map<std::string, TClassPointer> classes; // of these instances
        InstanceReader reader(nameSpace->Report());
        for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
            Pegasus::CIMInstance remote = std::exchange(remotes[i], {}); // its memory goes to what is made of it
            const std::string name = ToStdString(remote.getClassName());
            TClassPointer& itsClass = classes[name];
            itsClass = itsClass ? itsClass : fClasses.ClassOf(name, kIsReported);
            fClasses.DeclareWhatIsSent(*itsClass, remote);
            InstancePath path = PathOf(remote.getPath(), *itsClass, read);
            path.reference.SetHost(ToStdString(remote.getPath().getHost()));
            path.reference.SetNamespaceName(ToStdString(read.getString()));
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
        throw TVYXException(kTypeMismatch);
    }
    return AskRemotely(nameSpace->Report(), "TCimHTTPNamespace::GetInstance " + reference.GetPath(),
                       [&] { return fClasses.ClassOf(name, !kIsReported); });
}

} // namespace NQORVYX20
