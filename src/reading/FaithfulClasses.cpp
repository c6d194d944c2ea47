#include "reading/FaithfulClasses.h"

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "reading/LimitExceeded.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteRequest.h"
#include "reading/RemoteServer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace NQORVYX20 {

namespace {

using Cause = ReadingIncident::Cause;

std::string NameText(const Pegasus::CIMName& name) { return name.isNull() ? std::string() : ToStdString(name); }

bool IsNamed(const Pegasus::CIMClass& definition, const std::string& name) {
    return definition.getClassName().equal(Pegasus::CIMName(ToRemoteText(name)));
}

std::string OtherClassText(const Pegasus::CIMClass& definition) {
    return "the server answers with the class " + NameText(definition.getClassName());
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

FaithfulClasses::FaithfulClasses(boost::shared_ptr<RemoteNamespace> nameSpace) : namespace_(nameSpace) {}

boost::shared_ptr<RemoteNamespace> FaithfulClasses::LockNamespace() const {
    return boost::shared_ptr<RemoteNamespace>(namespace_);
}

// --- Definitions -------------------------------------------------------------------------------------------------

FaithfulClasses::TClassPointer FaithfulClasses::Fetch(const std::string& name, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const std::string what = "TCimHTTPNamespace::GetClass " + name;
    try {
        return WithinMemory([&] {
            Pegasus::CIMClass definition = FetchDefinition(name);
            if (!IsNamed(definition, name)) {
                FailRemotely(nameSpace->Report(), what, MalformedAnswer(OtherClassText(definition)));
            }
            return Build(definition, context);
        });
    } catch (const Pegasus::Exception& exception) {
        const RemoteFailure failure = RemoteFailureOf(exception);
        if (!IsOperationUnsupported(failure)) {
            FailRemotely(nameSpace->Report(), what, failure);
        }
        LogDebug(what + ": " + failure.text);
        givesClasses_ = false;
        return inferredClasses_.Get(nameSpace, name);
    }
}

Pegasus::CIMClass FaithfulClasses::FetchDefinition(const std::string& name) {
    const auto nameSpace = LockNamespace();
    nameSpace->Budget().Check();
    return nameSpace->Server().GetWholeClass(name);
}

FaithfulClasses::TClassPointer FaithfulClasses::Build(Pegasus::CIMClass& definition, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    auto cls = boost::make_shared<TCimHTTPClass>(nameSpace, NameText(definition.getClassName()), TClassPointer());
    Fill(*cls, definition);
    nameSpace->AddPluginQualifiers(*cls, context);
    nameSpace->AddClass(cls);
    return cls;
}

void FaithfulClasses::Fill(TCimHTTPClass& cls, Pegasus::CIMClass& definition) {
    const auto nameSpace = LockNamespace();
    nameSpace->Budget().Charge(definition);
    definitions_.Fill(*nameSpace, cls, definition);
    const std::string superClass = NameText(definition.getSuperClassName());
    if (superClass.empty()) {
        cls.SetSuperClass(nameSpace->GetRootClass());
    } else {
        cls.SetSuperClassName(superClass);
    }
}

void FaithfulClasses::Define(TCimHTTPClass& cls) {
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    AskRemotely(*nameSpace, "TCimHTTPNamespace::AllocateClass " + cls.Name(), [&] {
        Pegasus::CIMClass definition = FetchDefinition(cls.Name());
        Fill(cls, definition);
    });
}

// --- The classes of instances ------------------------------------------------------------------------------------

FaithfulClasses::TClassPointer FaithfulClasses::ClassOf(const std::string& name, bool isReported) {
    const auto nameSpace = LockNamespace();
    std::string reason;
    if (auto cls = TryClassOf(name, reason)) {
        return cls;
    }
    if (isReported && givesClasses_) {
        nameSpace->Report().AddAndLog(
            {Cause::kNoDefinition, name, std::string(), std::string(), "its definition cannot be read: " + reason});
    }
    return inferredClasses_.Get(nameSpace, name);
}

/// A class whose definition is there, or empty, with a reason.
FaithfulClasses::TClassPointer FaithfulClasses::TryClassOf(const std::string& name, std::string& reason) {
    const auto nameSpace = LockNamespace();
    reason = "the host cannot keep a class of this name";
    try {
        auto known = nameSpace->FindClass(NormalizeName(name, NameRule::kCim));
        if (known || !givesClasses_) {
            return known;
        }
        return WithinMemory([&]() -> TClassPointer {
            Pegasus::CIMClass definition = FetchDefinition(name);
            if (IsNamed(definition, name)) {
                return Build(definition, TCIMContext());
            }
            reason = OtherClassText(definition);
            return {};
        });
    } catch (const TVYXException&) {
        // the name is not one that the host can keep
    } catch (const Pegasus::Exception& exception) {
        const RemoteFailure failure = RemoteFailureOf(exception);
        if (IsConnectionAtFault(failure)) {
            throw;
        }
        givesClasses_ = !IsOperationUnsupported(failure);
        reason = failure.text;
    }
    return {};
}

void FaithfulClasses::Infer(TCimHTTPClass& cls, Pegasus::CIMInstance& instance) {
    if (inferredClasses_.Has(cls)) {
        inferredClasses_.Declare(*LockNamespace(), cls, instance);
    }
}

// --- The hierarchy -----------------------------------------------------------------------------------------------

FaithfulClasses::TClassPointer FaithfulClasses::FetchSuperClass(TCimHTTPClass& cls) {
    auto superClass =
        boost::dynamic_pointer_cast<TCimHTTPClass>(LockNamespace()->GetClass(cls.GetSuperClassName(), TCIMContext()));
    Link(cls.shared_from_this(), superClass);
    return superClass;
}

void FaithfulClasses::Link(const TClassPointer& cls, const TClassPointer& superClass) {
    const std::size_t height = heights_[cls->Name()] + 1;
    if (IsAmongAncestors(*cls, superClass) || height + CountAncestors(*superClass) > DefinitionBudget::kLevels) {
        FailRemotely(LockNamespace()->Report(), "TCimHTTPClass::GetSuperClass " + cls->Name(),
                     MalformedAnswer("the server's class hierarchy has a cycle or is too deep"));
    }
    std::size_t& reached = heights_[superClass->Name()];
    reached = std::max(reached, height);
    cls->SetSuperClass(superClass);
    superClass->AddChildClass(cls);
}

void FaithfulClasses::CompleteSubClasses(TCimHTTPClass& cls, bool deep) {
    if (withAllSubClasses_.count(cls.Name()) != 0) {
        return;
    }
    const auto nameSpace = LockNamespace();
    nameSpace->Report().BeginOperation();
    const bool isRoot = &cls == nameSpace->GetRootClass().get();
    const auto classes = AskRemotely(*nameSpace, "TCimHTTPClass::EnumerateSubClasses " + cls.Name(), [&] {
        auto definitions = nameSpace->Server().EnumerateWholeClasses(isRoot ? std::string() : cls.Name(), deep);
        return BuildAll(definitions);
    });
    for (const auto& subClass : classes) {
        LinkToKnown(subClass);
    }
    withAllSubClasses_.insert(cls.Name());
    if (deep) {
        for (const auto& subClass : classes) {
            withAllSubClasses_.insert(subClass->Name());
        }
    }
}

/// The classes of these definitions; those that are there already as they are.
std::vector<FaithfulClasses::TClassPointer> FaithfulClasses::BuildAll(Pegasus::Array<Pegasus::CIMClass>& definitions) {
    const auto nameSpace = LockNamespace();
    std::vector<TClassPointer> classes;
    for (Pegasus::Uint32 i = 0; i < definitions.size(); ++i) {
        Pegasus::CIMClass definition = std::exchange(definitions[i], {}); // its memory goes to what is made of it
        const std::string name = NameText(definition.getClassName());
        try {
            const auto known = nameSpace->FindClass(NormalizeName(name, NameRule::kCim));
            classes.push_back(known ? known : Build(definition, TCIMContext()));
        } catch (const TVYXException&) {
            nameSpace->Report().AddAndLog(
                {Cause::kBadName, name, std::string(), std::string(), "the host cannot keep a class of this name"});
        }
    }
    return classes;
}

void FaithfulClasses::LinkToKnown(const TClassPointer& cls) {
    const auto nameSpace = LockNamespace();
    const std::string& name = cls->GetSuperClassName();
    const auto superClass =
        name.empty() ? nameSpace->GetRootClass() : nameSpace->FindClass(NormalizeName(name, NameRule::kCim));
    if (superClass) {
        Link(cls, superClass);
    }
}

} // namespace NQORVYX20
