#include "reading/InstanceEnumeration.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMInstance.h"
#include "model/TCimHTTPClass.h"
#include "model/TFaithfulInstance.h"
#include "reading/FaithfulReading.h"
#include "reading/InstancePath.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteRequest.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace NQORVYX20 {

namespace {

constexpr Pegasus::Uint32 kTakenAtOnce = 256;

[[noreturn]] void ThrowPast(const std::string& limit) {
    throw LimitExceeded(("the enumeration has more than " + limit).c_str());
}

} // namespace

InstanceEnumeration::InstanceEnumeration(const boost::shared_ptr<RemoteNamespace>& nameSpace, FaithfulReading& reading,
                                         const TCimHTTPClass& cls, bool deep,
                                         const Pegasus::CIMPropertyList& properties, std::size_t held)
    : namespace_(nameSpace),
      reading_(reading),
      className_(cls.Name()),
      deep_(deep),
      hasAllProperties_(properties.isNull()),
      heldAtMost_(held),
      portions_(nameSpace->Server(), className_, properties, held),
      reader_(nameSpace->Report()) {}

InstanceEnumeration::~InstanceEnumeration() {
    try {
        ReportMade();
    } catch (...) {
        // there is no memory for them, of which the next operation tells
    }
    Close();
}

void InstanceEnumeration::Close() noexcept {
    if (const auto nameSpace = namespace_.lock()) {
        portions_.Close();
    }
}

/// Runs what sends requests and uses their answers.
template <typename Work>
auto InstanceEnumeration::Asking(const Work& work) {
    const boost::shared_ptr<RemoteNamespace> nameSpace(namespace_);
    nameSpace->Report().BeginOperation();
    return AskRemotely(*nameSpace, "TCimHTTPClass::EnumerateInstances " + className_, [&] {
        auto result = work();
        if (isStopped_) {
            portions_.Close();
        }
        return result;
    });
}

InstanceEnumeration::TInstances InstanceEnumeration::Next() {
    return Asking([this] { return std::exchange(hasBegun_, true) ? Following() : First(); });
}

ReceivedInstances InstanceEnumeration::Receive() {
    return Asking([this] { return ReceiveFollowing(); });
}

InstanceEnumeration::TInstances InstanceEnumeration::Make(ReceivedInstances& received) {
    try {
        const boost::shared_ptr<RemoteNamespace> nameSpace(namespace_);
        TInstances instances;
        instances.reserve(received.size());
        for (ReceivedInstance& one : received) {
            instances.push_back(MakeOne(one, maker_));
        }
        return instances;
    } catch (...) {
        makingFailure_ = std::current_exception();
        throw;
    }
}

void InstanceEnumeration::Settle() {
    if (made_.Incidents().IsEmpty() && !makingFailure_) {
        return;
    }
    Asking([this]() -> TInstances {
        ReportMade();
        if (const auto failure = std::exchange(makingFailure_, nullptr)) {
            std::rethrow_exception(failure);
        }
        return {};
    });
}

void InstanceEnumeration::ReportMade() {
    const auto nameSpace = namespace_.lock();
    if (nameSpace && !made_.Incidents().IsEmpty()) {
        nameSpace->Report().Add(made_.Incidents());
        made_.TakeIncidents();
    }
}

bool InstanceEnumeration::MayReadAhead() const {
    return std::all_of(classes_.begin(), classes_.end(), [this](const auto& named) {
        const TClassPointer& cls = named.second;
        cls->EnumeratePropertyDecls([](const auto& /*declaration*/) { return false; }, TCIMContext());
        return !reading_.classes_.IsInferred(*cls);
    });
}

/// Reads all instances that may be held, which are then in the order of their paths; those beyond come in the order of
/// the server.
InstanceEnumeration::TInstances InstanceEnumeration::First() {
    const std::string key = NormalizeName(className_, NameRule::kCim);
    remoteName_ = Pegasus::CIMName(ToRemoteText(className_));
    held_ = boost::make_shared<InstanceCache::TInstances>();
    do {
        HoldAll(ReceiveSome());
        CheckLimits();
    } while (!IsOver() && IsAllHeld());
    if (HasReadAll() && hasAllProperties_ && IsAllHeld()) {
        reading_.cache_.Keep(key, held_);
    } else {
        reading_.cache_.Drop(key); // what was not asked for must not be taken for absent or null
    }
    return TakeHeld();
}

InstanceEnumeration::TInstances InstanceEnumeration::TakeHeld() {
    TInstances arrived = std::exchange(arrived_, {});
    const auto held = std::exchange(held_, {});
    auto doubled = std::exchange(doubled_, {});
    if (arrived.size() > heldAtMost_) {
        return arrived;
    }
    for (ReadingIncident& incident : doubled) {
        reading_.LockNamespace()->Report().AddAndLog(std::move(incident));
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
    for (ReceivedInstance& received : ReceiveFollowing()) {
        ReceivedInstance one = std::exchange(received, {}); // its memory goes to what is made of it
        instances.push_back(MakeOne(one, reader_));
    }
    return instances;
}

ReceivedInstances InstanceEnumeration::ReceiveFollowing() {
    ReceivedInstances received;
    while (received.empty() && !IsOver()) {
        received = ReceiveSome();
    }
    return received;
}

/// Takes instances of a portion: a few at a time, since there may be very many in one.
ReceivedInstances InstanceEnumeration::ReceiveSome() {
    if (!HasPortion()) {
        Fetch();
    }
    ReceivedInstances received;
    received.reserve(kTakenAtOnce);
    for (Pegasus::Uint32 count = 0; count < kTakenAtOnce && HasPortion(); ++count) {
        Pegasus::CIMInstance remote = std::exchange(portion_[next_++], {});
        if (deep_ || remote.getClassName().equal(remoteName_)) {
            const TClassPointer cls = ClassOf(ToStdString(remote.getClassName()));
            reading_.classes_.Infer(*cls, remote);
            received.push_back({std::move(remote), cls});
        }
    }
    return received;
}

void InstanceEnumeration::Fetch() {
    portion_.clear();
    next_ = 0;
    portion_ = portions_.Next();
}

boost::shared_ptr<ICIMInstance> InstanceEnumeration::MakeOne(ReceivedInstance& received, InstanceReader& reader) const {
    const Pegasus::CIMNamespaceName& read = *reading_.LockNamespace()->Server().Namespace();
    return reader.Read(received.remote, received.cls, ReferenceOf(received.remote.getPath(), *received.cls, read));
}

InstanceEnumeration::TClassPointer InstanceEnumeration::ClassOf(const std::string& name) {
    constexpr bool kIsReported = true;
    TClassPointer& known = classes_[name];
    known = known ? known : reading_.classes_.ClassOf(name, kIsReported);
    return known;
}

void InstanceEnumeration::HoldAll(ReceivedInstances received) {
    const Pegasus::CIMNamespaceName& read = *reading_.LockNamespace()->Server().Namespace();
    for (ReceivedInstance& place : received) {
        ReceivedInstance one = std::exchange(place, {}); // its memory goes to what is made of it
        InstancePath path = PathOf(one.remote.getPath(), *one.cls, read);
        Hold(path.key, reader_.Read(one.remote, one.cls, std::move(path.reference)), one.cls);
    }
}

void InstanceEnumeration::Hold(const std::string& key, const boost::shared_ptr<ICIMInstance>& instance,
                               const TClassPointer& cls) {
    // Servers usually give instances in the order of their paths.
    const bool isNew = held_->emplace_hint(held_->end(), key, instance)->second == instance;
    if (heldAtMost_ != kAll) {
        arrived_.push_back(instance);
    }
    if (!isNew) {
        AddDoubled({ReadingIncident::Cause::kDoubledPath, cls->Name(), instance->GetReference(TCIMContext()).GetPath(),
                    std::string(), "an instance before has the same path"});
    }
}

/// A doubled path is an incident only where all instances are held, which is not known yet where their number is
/// limited.
void InstanceEnumeration::AddDoubled(ReadingIncident incident) {
    if (heldAtMost_ == kAll) {
        reading_.LockNamespace()->Report().AddAndLog(std::move(incident));
    } else {
        doubled_.push_back(std::move(incident));
    }
}

/// As long as all instances are held, their portions count as one answer.
void InstanceEnumeration::CheckLimits() const {
    const RemoteServer& server = reading_.LockNamespace()->Server();
    if (portions_.Bytes() > server.MaxBytes()) {
        ThrowPast(std::to_string(server.MaxBytes()) + " bytes");
    }
    if (held_->size() > server.MaxInstances()) {
        ThrowPast(std::to_string(server.MaxInstances()) + " objects");
    }
}

} // namespace NQORVYX20
