#include "reading/InstanceEnumeration.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMInstance.h"
#include "model/TCimHTTPClass.h"
#include "model/TFaithfulInstance.h"
#include "provider/TCimHTTPNamespace.h"
#include "reading/FaithfulReading.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteRequest.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace NQORVYX20 {

namespace {

std::string NameOf(const TCimHTTPClass& cls) { return cls.GetName(TCIMContext()); }

[[noreturn]] void ThrowPast(const std::string& limit) {
    throw LimitExceeded(("the enumeration has more than " + limit).c_str());
}

} // namespace

InstanceEnumeration::InstanceEnumeration(const boost::shared_ptr<TCimHTTPNamespace>& nameSpace,
                                         FaithfulReading& reading, const TCimHTTPClass& cls, bool deep,
                                         const Pegasus::CIMPropertyList& properties, std::size_t held)
    : fNamespace(nameSpace),
      fReading(reading),
      fClassName(NameOf(cls)),
      fDeep(deep),
      fHasAllProperties(properties.isNull()),
      fHeldAtMost(held),
      fPortions(nameSpace->Server(), fClassName, properties),
      fReader(nameSpace->Report()) {}

InstanceEnumeration::~InstanceEnumeration() { Close(); }

void InstanceEnumeration::Close() noexcept {
    if (const auto nameSpace = fNamespace.lock()) {
        fPortions.Close();
    }
}

InstanceEnumeration::TInstances InstanceEnumeration::Next() {
    const boost::shared_ptr<TCimHTTPNamespace> nameSpace(fNamespace);
    nameSpace->Report().BeginOperation();
    return AskRemotely(*nameSpace, "TCimHTTPClass::EnumerateInstances " + fClassName, [this] {
        auto instances = std::exchange(fHasBegun, true) ? Following() : First();
        if (fIsStopped) {
            fPortions.Close();
        }
        return instances;
    });
}

/// All that may be held. Only what is beyond that can be in any order but that of the paths.
InstanceEnumeration::TInstances InstanceEnumeration::First() {
    const std::string key = NormalizeName(fClassName, NameRule::kCim);
    fRemoteName = Pegasus::CIMName(ToRemoteText(fClassName));
    fHeld = boost::make_shared<LastReadings::TInstances>();
    do {
        ReadPortion([this](const std::string& path, const auto& instance, const TClassPointer& cls) {
            Hold(path, instance, cls);
        });
        CheckLimits();
    } while (!IsOver() && IsAllHeld());
    if (fPortions.IsAtEnd() && fHasAllProperties && IsAllHeld()) {
        fReading.fReadings.Keep(key, fHeld);
    } else {
        fReading.fReadings.Drop(key); // nobody is to take for absent, or for null, what was not asked for
    }
    return TakeHeld();
}

InstanceEnumeration::TInstances InstanceEnumeration::TakeHeld() {
    TInstances arrived = std::exchange(fArrived, {});
    const auto held = std::exchange(fHeld, {});
    auto doubled = std::exchange(fDoubled, {});
    if (arrived.size() > fHeldAtMost) {
        return arrived;
    }
    for (ReadingIncident& incident : doubled) {
        fReading.LockNamespace()->Report().AddAndLog(std::move(incident));
    }
    TInstances instances;
    instances.reserve(held->size());
    for (const auto& [path, instance] : *held) {
        instances.push_back(instance);
    }
    return instances;
}

InstanceEnumeration::TInstances InstanceEnumeration::Following() {
    TInstances instances;
    while (instances.empty() && !IsOver()) {
        ReadPortion([&](const std::string& /*path*/, const auto& instance, const TClassPointer& /*cls*/) {
            instances.push_back(instance);
        });
    }
    return instances;
}

template <typename Take>
void InstanceEnumeration::ReadPortion(const Take& take) {
    auto remotes = fPortions.Next();
    for (Pegasus::Uint32 i = 0; i < remotes.size(); ++i) {
        Pegasus::CIMInstance remote = std::exchange(remotes[i], {}); // its memory goes to what is made of it
        if (fDeep || remote.getClassName().equal(fRemoteName)) {
            const TClassPointer cls = ClassOf(ToStdString(remote.getClassName()));
            std::string path;
            const auto instance = fReading.MakeInstance(remote, remote.getPath(), cls, fReader, path);
            take(path, instance, cls);
        }
    }
}

InstanceEnumeration::TClassPointer InstanceEnumeration::ClassOf(const std::string& name) {
    constexpr bool kIsReported = true;
    TClassPointer& known = fClasses[name];
    known = known ? known : fReading.fClasses.ClassOf(name, kIsReported);
    return known;
}

void InstanceEnumeration::Hold(const std::string& key, const boost::shared_ptr<ICIMInstance>& instance,
                               const TClassPointer& cls) {
    // Servers mostly give instances in the order of their paths.
    const bool isNew = fHeld->emplace_hint(fHeld->end(), key, instance)->second == instance;
    if (fHeldAtMost != kAll) {
        fArrived.push_back(instance);
    }
    if (!isNew) {
        AddDoubled({ReadingIncident::Cause::kDoubledPath, NameOf(*cls), instance->GetReference(TCIMContext()).GetPath(),
                    std::string(), "an instance before has the same path"});
    }
}

/// An incident where each path comes once, which is not known yet where not all may be held.
void InstanceEnumeration::AddDoubled(ReadingIncident incident) {
    if (fHeldAtMost == kAll) {
        fReading.LockNamespace()->Report().AddAndLog(std::move(incident));
    } else {
        fDoubled.push_back(std::move(incident));
    }
}

/// As long as all that comes is held, it counts as one answer.
void InstanceEnumeration::CheckLimits() const {
    const RemoteServer& server = fReading.LockNamespace()->Server();
    if (fPortions.Bytes() > server.MaxBytes()) {
        ThrowPast(std::to_string(server.MaxBytes()) + " bytes");
    }
    if (fHeld->size() > server.MaxInstances()) {
        ThrowPast(std::to_string(server.MaxInstances()) + " objects");
    }
}

} // namespace NQORVYX20
