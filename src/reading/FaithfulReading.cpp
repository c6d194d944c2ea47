#include "reading/FaithfulReading.h"

#include <boost/make_shared.hpp>

#include <algorithm>
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
#include "reading/RemoteFailures.h"
#include "reading/RemoteServer.h"

namespace NQORVYX20 {

namespace {

using Cause = ReadingIncident::Cause;

// A hierarchy with more levels is a server's mistake or malice; walking through it must come to an end.
constexpr std::size_t kMaxHierarchyDepth = 256;

std::string NameOf(const TCimHTTPClass& cls) { return cls.GetName(TCIMContext()); }

std::string NameText(const Pegasus::CIMName& name) { return name.isNull() ? std::string() : ToStdString(name); }

RemoteFailure Malformed(const std::string& text) {
    RemoteFailure failure;
    failure.kind = RemoteFailure::Kind::kMalformed;
    failure.text = text;
    return failure;
}

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
        NormalizeName(name); // throws
        names.append(Pegasus::CIMName(name.c_str()));
    }
    return {names};
}

std::size_t CountAncestors(const TCimHTTPClass& cls) {
    std::size_t count = 0;
    for (auto ancestor = cls.KnownSuperClass(); ancestor; ancestor = ancestor->KnownSuperClass()) {
        ++count;
    }
    return count;
}

bool IsAmongAncestors(const TCimHTTPClass& cls, boost::shared_ptr<TCimHTTPClass> descendant) {
    while (descendant && descendant.get() != &cls) {
        descendant = descendant->KnownSuperClass();
    }
    return descendant != nullptr;
}

} // namespace

FaithfulReading::FaithfulReading(boost::shared_ptr<TCimHTTPNamespace> nameSpace) : fNamespace(nameSpace) {}

boost::shared_ptr<TCimHTTPNamespace> FaithfulReading::LockNamespace() const {
    return boost::shared_ptr<TCimHTTPNamespace>(fNamespace);
}

void FaithfulReading::End() {
    fReadings.Clear();
    fSentClasses.Clear();
}

// --- Failures ----------------------------------------------------------------------------------------------------

template <typename Request>
auto FaithfulReading::Ask(const std::string& what, const Request& request) {
    try {
        return request();
    } catch (const Pegasus::Exception& exception) {
        Fail(what, RemoteFailureOf(exception));
    }
}

void FaithfulReading::Fail(const std::string& what, const RemoteFailure& failure) {
    LogError(what + ": " + failure.text);
    LockNamespace()->Report().Fail(failure);
    throw TVYXException(StatusCodeOf(failure));
}

boost::shared_ptr<ICIMClass> FaithfulReading::WithoutConnection() {
    RemoteFailure failure;
    failure.kind = RemoteFailure::Kind::kNotConnected;
    failure.text = "the namespace is not connected";
    Fail("TCimHTTPNamespace::GetClass", failure);
}

// --- Classes -----------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMClass> FaithfulReading::FetchClass(const std::string& name, const std::string& /*key*/,
                                                         TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const std::string what = "TCimHTTPNamespace::GetClass " + name;
    try {
        Pegasus::CIMClass definition = nameSpace->Server().GetWholeClass(name);
        if (!definition.getClassName().equal(Pegasus::CIMName(name.c_str()))) {
            Fail(what, Malformed("the server answers with the class " + NameText(definition.getClassName())));
        }
        return Build(definition, context);
    } catch (const Pegasus::Exception& exception) {
        const RemoteFailure failure = RemoteFailureOf(exception);
        if (!IsOperationUnsupported(failure)) {
            Fail(what, failure);
        }
        LogDebug(what + ": " + failure.text);
        fGivesClasses = false;
        return fSentClasses.Get(*nameSpace, name);
    }
}

FaithfulReading::TClassPointer FaithfulReading::Build(Pegasus::CIMClass& definition, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const auto cls = boost::make_shared<TCimHTTPClass>(nameSpace, NameText(definition.getClassName()), TClassPointer());
    Fill(*cls, definition);
    nameSpace->StampClass(*cls, context);
    nameSpace->AddClass(cls);
    return cls;
}

void FaithfulReading::Fill(TCimHTTPClass& cls, Pegasus::CIMClass& definition) {
    const auto nameSpace = LockNamespace();
    fDefinitions.Fill(*nameSpace, cls, definition);
    const std::string superClass = NameText(definition.getSuperClassName());
    if (superClass.empty()) {
        cls.SetSuperClass(nameSpace->GetRootClass());
    } else {
        cls.SetSuperClassName(superClass);
    }
}

boost::shared_ptr<ICIMClass> FaithfulReading::AllocateClass(const std::string& name, TClassPointer superClass) {
    return LockNamespace()->MakeClass(name, superClass);
}

void FaithfulReading::Define(TCimHTTPClass& cls) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    Ask("TCimHTTPNamespace::AllocateClass " + NameOf(cls), [&] {
        Pegasus::CIMClass definition = nameSpace->Server().GetWholeClass(NameOf(cls));
        Fill(cls, definition);
    });
}

// --- The hierarchy -----------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMClass> FaithfulReading::FetchSuperClass(TCimHTTPClass& cls) {
    const auto superClass =
        boost::dynamic_pointer_cast<TCimHTTPClass>(LockNamespace()->GetClass(cls.GetSuperClassName(), TCIMContext()));
    Link(cls.shared_from_this(), superClass);
    return superClass;
}

void FaithfulReading::Link(const TClassPointer& cls, const TClassPointer& superClass) {
    const std::size_t height = fHeights[NameOf(*cls)] + 1;
    if (IsAmongAncestors(*cls, superClass) || height + CountAncestors(*superClass) > kMaxHierarchyDepth) {
        Fail("TCimHTTPClass::GetSuperClass " + NameOf(*cls),
             Malformed("the server's class hierarchy has a cycle or is too deep"));
    }
    std::size_t& reached = fHeights[NameOf(*superClass)];
    reached = std::max(reached, height);
    cls->SetSuperClass(superClass);
    superClass->AddChildClass(cls);
}

void FaithfulReading::CompleteSubClasses(TCimHTTPClass& cls, bool deep) {
    if (fWithAllSubClasses.count(NameOf(cls)) != 0) {
        return;
    }
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    const bool isRoot = &cls == nameSpace->GetRootClass().get();
    const auto classes = Ask("TCimHTTPClass::EnumerateSubClasses " + NameOf(cls), [&] {
        auto definitions = nameSpace->Server().EnumerateWholeClasses(isRoot ? std::string() : NameOf(cls), deep);
        return BuildAll(definitions);
    });
    for (const auto& subClass : classes) {
        LinkToKnown(subClass);
    }
    fWithAllSubClasses.insert(NameOf(cls));
    if (deep) {
        for (const auto& subClass : classes) {
            fWithAllSubClasses.insert(NameOf(*subClass));
        }
    }
}

/// The classes of these definitions; those that are there already as they are.
std::vector<FaithfulReading::TClassPointer> FaithfulReading::BuildAll(Pegasus::Array<Pegasus::CIMClass>& definitions) {
    const auto nameSpace = LockNamespace();
    std::vector<TClassPointer> classes;
    for (Pegasus::Uint32 i = 0; i < definitions.size(); ++i) {
        const std::string name = NameText(definitions[i].getClassName());
        try {
            const auto known = nameSpace->FindClass(NormalizeName(name));
            classes.push_back(known ? known : Build(definitions[i], TCIMContext()));
        } catch (const TVYXException&) {
            nameSpace->Report().AddAndLog(
                {Cause::kBadName, name, std::string(), std::string(), "the host cannot keep a class of this name"});
        }
    }
    return classes;
}

void FaithfulReading::LinkToKnown(const TClassPointer& cls) {
    const auto nameSpace = LockNamespace();
    const std::string& name = cls->GetSuperClassName();
    const auto superClass = name.empty() ? nameSpace->GetRootClass() : nameSpace->FindClass(NormalizeName(name));
    if (superClass) {
        Link(cls, superClass);
    }
}

// --- Instances ---------------------------------------------------------------------------------------------------

void FaithfulReading::EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                                         TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const std::string key = NormalizeName(NameOf(cls));
    const Pegasus::CIMPropertyList properties = PropertiesIn(context);
    nameSpace->Report().BeginOperation();
    TInstances instances = ReadInstances(cls, deep, properties);
    if (!properties.isNull()) {
        fReadings.Drop(key); // nobody is to take what was not asked for as null
        VisitEntries(instances, callback);
        return;
    }
    fReadings.Keep(key, instances);
    VisitEntries(instances, callback);
}

FaithfulReading::TInstances FaithfulReading::ReadInstances(TCimHTTPClass& cls, bool deep,
                                                           const Pegasus::CIMPropertyList& properties) {
    const auto nameSpace = LockNamespace();
    const std::string what = "TCimHTTPClass::EnumerateInstances " + NameOf(cls);
    const Pegasus::CIMName className(NameOf(cls).c_str());
    auto remotes = Ask(what, [&] { return nameSpace->Server().EnumerateWholeInstances(NameOf(cls), properties); });
    TInstances instances;
    std::map<std::string, TClassPointer> met;
    InstanceReader reader(nameSpace->Report());
    for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
        Pegasus::CIMInstance remote = std::exchange(remotes[i], {}); // its memory goes to what is made of it
        if (!deep && !remote.getClassName().equal(className)) {
            continue;
        }
        const auto itsClass = Ask(what, [&] { return ClassOf(NameText(remote.getClassName()), met); });
        std::string key;
        auto instance = MakeInstance(remote, remote.getPath(), itsClass, reader, key);
        const auto place = instances.emplace_hint(instances.end(), key, instance);
        if (place->second != instance) {
            nameSpace->Report().AddAndLog({Cause::kDoubledPath, NameOf(*itsClass),
                                           instance->GetReference(TCIMContext()).GetPath(), std::string(),
                                           "an instance before has the same path"});
        }
    }
    return instances;
}

/// The class of an instance that the server has sent. `met` has those of the same answer.
FaithfulReading::TClassPointer FaithfulReading::ClassOf(const std::string& name,
                                                        std::map<std::string, TClassPointer>& met) {
    auto& cls = met[name];
    if (!cls) {
        cls = FetchClassOf(name);
    }
    return cls;
}

FaithfulReading::TClassPointer FaithfulReading::FetchClassOf(const std::string& name) {
    const auto nameSpace = LockNamespace();
    std::string reason;
    if (auto cls = TryClassOf(name, reason)) {
        return cls;
    }
    if (fGivesClasses) {
        nameSpace->Report().AddAndLog(
            {Cause::kNoDefinition, name, std::string(), std::string(), "its definition cannot be read: " + reason});
    }
    return fSentClasses.Get(*nameSpace, name);
}

/// A class whose definition is there, or empty, with a reason. Throws what the client library throws when the server
/// cannot be asked at all.
FaithfulReading::TClassPointer FaithfulReading::TryClassOf(const std::string& name, std::string& reason) {
    const auto nameSpace = LockNamespace();
    reason = "the host cannot keep a class of this name";
    try {
        const auto known = nameSpace->FindClass(NormalizeName(name));
        if (known || !fGivesClasses) {
            return known;
        }
        Pegasus::CIMClass definition = nameSpace->Server().GetWholeClass(name);
        if (definition.getClassName().equal(Pegasus::CIMName(name.c_str()))) {
            return Build(definition, TCIMContext());
        }
        reason = "the server answers with the class " + NameText(definition.getClassName());
    } catch (const TVYXException&) {
        // which the name or the class as a whole gives rise to
    } catch (const Pegasus::Exception& exception) {
        const RemoteFailure failure = RemoteFailureOf(exception);
        if (IsConnectionAtFault(failure)) {
            throw;
        }
        fGivesClasses = !IsOperationUnsupported(failure);
        reason = failure.text;
    }
    return {};
}

boost::shared_ptr<TFaithfulInstance> FaithfulReading::MakeInstance(Pegasus::CIMInstance& remote,
                                                                   const Pegasus::CIMObjectPath& path,
                                                                   const TClassPointer& cls, InstanceReader& reader,
                                                                   std::string& key) {
    const auto nameSpace = LockNamespace();
    if (fSentClasses.Has(*cls)) {
        fSentClasses.Declare(*nameSpace, *cls, remote);
    }
    InstancePath itsPath = PathOf(path, *cls, *nameSpace->Server().Namespace());
    key = itsPath.key;
    return reader.Read(remote, cls, std::move(itsPath));
}

boost::shared_ptr<ICIMInstance> FaithfulReading::GetInstance(const TCIMReference& reference, TCIMContext /*context*/) {
    const auto nameSpace = LockNamespace();
    const auto cls = ClassOfPath(reference);
    const Pegasus::CIMNamespaceName& read = *nameSpace->Server().Namespace();
    const Pegasus::CIMObjectPath path = RemotePathOf(reference, *cls, read);
    const std::string key = PathOf(path, *cls, read).key;
    if (auto known = fReadings.Find(NormalizeName(NameOf(*cls)), key)) {
        return known;
    }
    return Ask("TCimHTTPNamespace::GetInstance " + reference.GetPath(), [&] {
        Pegasus::CIMInstance remote = nameSpace->Server().GetWholeInstance(path);
        const auto itsClass = FetchClassOf(NameText(remote.getClassName()));
        const Pegasus::CIMObjectPath itsPath(Pegasus::String(), Pegasus::CIMNamespaceName(), remote.getClassName(),
                                             path.getKeyBindings());
        InstanceReader reader(nameSpace->Report());
        std::string itsKey;
        return boost::shared_ptr<ICIMInstance>(MakeInstance(remote, itsPath, itsClass, reader, itsKey));
    });
}

/// The class that a path names. One that the server does not give is no obstacle: the instance is asked for.
FaithfulReading::TClassPointer FaithfulReading::ClassOfPath(const TCIMReference& reference) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    const std::string& name = reference.GetClassName();
    NormalizeName(name); // throws for what is no name
    if (name.empty()) {
        LogError("TCimHTTPNamespace::GetInstance: the path names no class");
        throw TVYXException(kTypeMismatch);
    }
    return Ask("TCimHTTPNamespace::GetInstance " + reference.GetPath(), [&] {
        std::string reason;
        const auto cls = TryClassOf(name, reason);
        return cls ? cls : fSentClasses.Get(*nameSpace, name);
    });
}

} // namespace NQORVYX20
