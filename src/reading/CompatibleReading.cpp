#include "reading/CompatibleReading.h"

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "convert/RemoteTypes.h"
#include "convert/RemoteValues.h"
#include "convert/StreamedText.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"
#include "model/DeclaredValue.h"
#include "model/Required.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPInstance.h"
#include "reading/LimitExceeded.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteFailures.h"
#include "reading/RemoteNames.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteQualifiers.h"
#include "reading/RemoteRequest.h"
#include "reading/RemoteServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <optional>
#include <typeinfo>
#include <utility>
#include <vector>

namespace NQORVYX20 {

namespace {

/// Notes that a superclass is being looked up, as long as this object exists.
class TClimbing {
  public:
    explicit TClimbing(bool& isClimbing) : isClimbing_(isClimbing) { isClimbing_ = true; }
    ~TClimbing() { isClimbing_ = false; }
    TClimbing(const TClimbing&) = delete;
    TClimbing& operator=(const TClimbing&) = delete;

  private:
    bool& isClimbing_;
};

ReadingIncident IncidentOf(const TCimHTTPClass& cls, ReadingIncident::Cause cause, const std::string& path,
                           const std::string& property, const std::string& reason) {
    return {cause, cls.GetName(TCIMContext()), path, property, reason};
}

/// An instance that gets its values: one of this very class without looking up its declarations again, another one by
/// name.
class TFilling {
  public:
    TFilling(ICIMInstance& instance, std::size_t count)
        : instance_(instance),
          own_(typeid(instance) == typeid(TCimHTTPInstance) ? static_cast<TCimHTTPInstance*>(&instance) : nullptr) {
        if (own_ != nullptr) {
            ExpectValues(*own_, count);
        }
    }

    void Set(const RemoteNames::TName& name, TCIMValue&& value) {
        if (own_ != nullptr && name.declaration) {
            StoreDeclaredValue(*own_, name.declaration, name.normalized, std::move(value));
        } else {
            instance_.SetPropertyValue(name.normalized, value, TCIMContext());
        }
    }

  private:
    ICIMInstance& instance_;
    TCimHTTPInstance* own_;
};

} // namespace

CompatibleReading::CompatibleReading(boost::shared_ptr<RemoteNamespace> nameSpace) : namespace_(nameSpace) {}

boost::shared_ptr<RemoteNamespace> CompatibleReading::LockNamespace() const {
    return boost::shared_ptr<RemoteNamespace>(namespace_);
}

// --- Classes -----------------------------------------------------------------------------------------------------

/// The way from a class that is looked up to the first superclass that the namespace holds, class by class. It keeps
/// only the names of each class, which counts as being fetched while it is on the way.
class CompatibleReading::Climb {
  public:
    struct TStep {
        TNames names;
        std::string name; ///< as the server gives it
        std::string superName;
    };

    explicit Climb(std::set<std::string>& lookups) : lookups_(lookups) {}
    ~Climb() {
        while (!steps_.empty()) {
            GoDown();
        }
    }
    Climb(const Climb&) = delete;
    Climb& operator=(const Climb&) = delete;

    void GoUp(const TNames& names) {
        steps_.push_back({names, std::string(), std::string()});
        lookups_.insert(names.key);
    }
    void GoDown() {
        lookups_.erase(steps_.back().names.key);
        steps_.pop_back();
    }

    bool IsAtEnd() const { return steps_.empty(); }
    bool IsAtBegin() const { return steps_.size() == 1; }
    const TStep& Top() const { return steps_.back(); }
    void SetNames(const std::string& name, const std::string& superName) {
        steps_.back().name = name;
        steps_.back().superName = superName;
    }

  private:
    std::set<std::string>& lookups_;
    std::vector<TStep> steps_;
};

// In a loop, and with no definition at hand while the next is fetched: neither the stack nor the memory that it takes
// depends on how long a hierarchy the server makes up. The namespace is asked for each superclass; where it would fetch
// it, the question comes back here and is the next step of the loop.
boost::shared_ptr<ICIMClass> CompatibleReading::FetchClass(const std::string& name, const std::string& key,
                                                           TCIMContext context) {
    if (isClimbing_) {
        nextStep_ = TNames{name, key};
        return {};
    }
    Climb climb(lookups_);
    boost::shared_ptr<ICIMClass> cls;
    for (auto step = std::make_optional(TNames{name, key}); step;) {
        step = FetchNames(climb, *step) ? FindSuperClass(climb, cls) : std::nullopt;
    }
    while (!climb.IsAtEnd()) {
        cls = BuildClass(climb, cls, climb.IsAtBegin() ? context : TCIMContext());
        climb.GoDown();
    }
    return cls;
}

/// The superclass of the class at the top of the climb, where the namespace holds it, or no superclass can be had;
/// else what is to be fetched.
std::optional<CompatibleReading::TNames> CompatibleReading::FindSuperClass(Climb& climb,
                                                                           boost::shared_ptr<ICIMClass>& found) {
    nextStep_.reset();
    const bool isFound = Attempt(climb.Top().names.asked, [&] {
        const TClimbing climbing(isClimbing_);
        found = LockNamespace()->GetClass(climb.Top().superName, TCIMContext());
    });
    if (!isFound) {
        climb.GoDown();
    }
    return std::exchange(nextStep_, std::nullopt);
}

/// Does a step of a look-up. When it fails, the report and usually the log say why.
template <typename Step>
bool CompatibleReading::Attempt(const std::string& name, const Step& step) {
    try {
        WithinMemory(step);
        return true;
    } catch (const Pegasus::Exception& failure) {
        LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + name + "returned exception: " + MessageOf(failure));
        LockNamespace()->Report().Fail(RemoteFailureOf(failure));
    } catch (...) {
        // A definition that cannot be built counts as none; LastFailure() says why.
        LockNamespace()->Report().Fail(LocalFailure("the class " + name + " could not be kept"));
    }
    return false;
}

/// Asks for the names of a class and its superclass, the next step of the climb.
bool CompatibleReading::FetchNames(Climb& climb, const TNames& wanted) {
    const auto nameSpace = LockNamespace();
    if (lookups_.size() >= DefinitionBudget::kLevels || lookups_.count(wanted.key) != 0) {
        const std::string text =
            "TCimHTTPNamespace::GetClass " + wanted.key + ": the server's class hierarchy has a cycle or is too deep";
        LogError(text);
        nameSpace->Report().Fail(MalformedAnswer(text));
        return false;
    }
    climb.GoUp(wanted);
    const bool isFetched = Attempt(wanted.asked, [&] {
        nameSpace->Budget().Check();
        const Pegasus::CIMClass names = nameSpace->Server().GetClassForItsNames(wanted.asked);
        const auto& superName = names.getSuperClassName();
        climb.SetNames(ToStdString(names.getClassName()), superName.isNull() ? "" : ToStdString(superName));
    });
    if (!isFetched) {
        climb.GoDown();
    }
    return isFetched;
}

/// Builds the class at the top of the climb.
boost::shared_ptr<ICIMClass>
CompatibleReading::BuildClass(const Climb& climb, const boost::shared_ptr<ICIMClass>& superClass, TCIMContext context) {
    const auto nameSpace = LockNamespace();
    const Climb::TStep& step = climb.Top();
    const bool isBuilt = Attempt(step.names.asked, [&] {
        const auto cls = nameSpace->AllocateClass(step.name, superClass, TCIMContext());
        nameSpace->AddPluginQualifiers(*cls, context);
        cls->AddToNamespace(context);
    });
    if (!isBuilt) {
        return {};
    }
    auto built = nameSpace->FindClass(step.names.key);
    if (built) {
        LogDebug("TCimHTTPNamespace::GetClass " + step.names.key + " Now it is Found in TCimHTTPNamespace");
    } else {
        LogError("TCimHTTPNamespace::GetClass " + step.names.key + " Not Found - Something Wrong");
    }
    return built;
}

boost::shared_ptr<ICIMClass> CompatibleReading::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<TCimHTTPClass> superClass) {
    const auto nameSpace = LockNamespace();
    try {
        return WithinMemory([&] { return TCimHTTPClass::Make(nameSpace, name, superClass); });
    } catch (const Pegasus::Exception& exception) {
        if (!lookups_.empty()) {
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
    nameSpace->Budget().Check();
    Pegasus::CIMClass remote = nameSpace->Server().GetClassToBuild(cls.GetName(TCIMContext()));
    nameSpace->Budget().Charge(remote);
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
        LockNamespace()->Report().BeginOperation();
        WithinMemory([&] { FileInstances(cls, deep); });
    } catch (const Pegasus::Exception& failure) {
        LogError("TCimHTTPClass::EnumerateInstances from Pegasus for: " + className +
                 "returned exception: " + MessageOf(failure));
        LockNamespace()->Report().Fail(RemoteFailureOf(failure));
    } catch (...) {
        // The instances filed until then are served; the log says nothing, LastFailure() does.
        if (const auto nameSpace = namespace_.lock()) {
            nameSpace->Report().Fail(LocalFailure("an instance of " + className + " could not be kept"));
        }
    }
}

void CompatibleReading::FileInstances(TCimHTTPClass& cls, bool deep) {
    auto remotes = LockNamespace()->Server().EnumerateLocalInstances(cls.GetName(TCIMContext()), deep);
    RemoteNames names(cls);
    StreamedText texts;
    for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
        AddInstance(cls, std::exchange(remotes[i], {}), names, texts); // gives its memory to what is made of it
    }
}

void CompatibleReading::AddInstance(TCimHTTPClass& cls, const Pegasus::CIMInstance& remote, RemoteNames& names,
                                    StreamedText& texts) {
    ReadingReport& report = LockNamespace()->Report();
    const auto instance = cls.AllocateInstance(TCIMContext());
    TFilling filling(*instance, remote.getPropertyCount());
    for (Pegasus::Uint32 i = 0; i < remote.getPropertyCount(); ++i) {
        auto property = remote.getProperty(i);
        try {
            const RemoteNames::TName& name = names.At(i, property.getName());
            TCIMValue value;
            pegValToVYX(property.getValue(), property.getType(), property.isArray(), texts, value);
            const bool isNull = value.IsNull();
            filling.Set(name, std::move(value));
            if (isNull && !property.getValue().isNull()) {
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
    return Required(cls, TVYXStatusCode::eNotFound).GetInstance(reference, context);
}

} // namespace NQORVYX20
