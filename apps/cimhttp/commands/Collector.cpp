#include "commands/Collector.h"

#include "Failure.h"
#include "commands/CollectedClass.h"
#include "commands/HeldInstances.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "fleet/ServerLog.h"
#include "host/ICIMClass.h"
#include "host/ICIMPropertyDecl.h"
#include "interop/InteropNamespace.h"
#include "output/InstanceProperties.h"
#include "output/TypeText.h"

#include <mutex>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// A server that lets nobody in, or does not answer a short question, is asked nothing more. Many instances may take
/// longer than the user wants to wait. What fails on this machine, such as writing a temporary file, fails for the next
/// class, too.
bool EndsReading(const Failure& failure, bool isAboutInstances) {
    return dynamic_cast<const LoginFailure*>(&failure) != nullptr || failure.Status() == Failure::kOther ||
           (failure.Status() == Failure::kConnection && !isAboutInstances);
}

/// A class as its instances, which have been read, show it.
RemoteClass InferredDefinition(const ICIMClass& cls) {
    RemoteClass definition;
    definition.name = cls.GetName(TCIMContext());
    for (const auto& property : PropertiesOf(cls)) {
        RemoteProperty shown;
        shown.name = property->GetName(TCIMContext());
        shown.type.name = ElementTypeText(property->GetType(TCIMContext()));
        shown.type.isArray = property->IsArray(TCIMContext());
        if (IsKey(*property)) {
            shown.qualifiers.push_back({"Key", TCIMValue(true), {}});
        }
        definition.properties.push_back(std::move(shown));
    }
    return definition;
}

/// What the server says of a class; nothing where it does not have the operation.
std::optional<RemoteClass> DefinitionOf(const ICIMClass& cls, Session& session) {
    try {
        return ServerSchema(session).Definition(cls.GetName(TCIMContext()));
    } catch (const ServerFailure& failure) {
        if (!IsUnsupported(failure.Reason())) {
            throw;
        }
        return {};
    }
}

} // namespace

struct Collector::State {
    State(Session used, std::vector<std::string> wanted, Settings how)
        : session(std::move(used)),
          names(std::move(wanted)),
          settings(std::move(how)),
          collected{session.Place(), true, {}} {}

    void Add(const std::shared_ptr<const CollectedClass>& cls) {
        const std::lock_guard<std::mutex> lock(mutex);
        collected.classes.push_back(cls);
        progress.instances += cls->InstanceCount();
        ++progress.classesDone;
    }

    void Add(const IncidentTally& lost) {
        const std::lock_guard<std::mutex> lock(mutex);
        collected.complete = collected.complete && lost.IsEmpty(); // whatever the next line throws
        incidents.Add(lost);
    }

    void AddFailure(const std::string& failure) {
        const std::lock_guard<std::mutex> lock(mutex);
        collected.complete = false;
        ++progress.classesDone;
        failures.push_back(failure);
    }

    void End(const Failure& failure) {
        const std::lock_guard<std::mutex> lock(mutex);
        earlyEnd = failure;
    }

    /// Something that is not known has not been read.
    void EndForLackOfMemory() {
        const std::lock_guard<std::mutex> lock(mutex);
        collected.complete = false;
        lacksMemory = true;
    }

    bool IsStopping() {
        const std::lock_guard<std::mutex> lock(mutex);
        return isStopping;
    }

    Session session; // used by the thread alone
    const std::vector<std::string> names;
    const Settings settings;
    const std::shared_ptr<Spool> spool = std::make_shared<Spool>();

    std::mutex mutex; // guards all below
    Progress progress;
    Collection collected;
    IncidentTally incidents;
    std::vector<std::string> failures;
    std::optional<Failure> earlyEnd;
    bool lacksMemory = false;
    bool isStopping = false;
};

Collector::Collector(Session session, std::vector<std::string> names, Settings settings)
    : state_(std::make_shared<State>(session.WithoutProgress(), std::move(names), std::move(settings))),
      task_([state = state_](const BackgroundTask::Notify& notify) {
          const auto& server = state->settings.server;
          const auto scope = server ? std::make_unique<ServerLog::Scope>(*server) : nullptr;
          Run(*state, notify);
      }) {}

void Collector::Run(State& state, const BackgroundTask::Notify& notify) {
    try {
        ReadAll(state, notify);
    } catch (const std::bad_alloc&) {
        state.EndForLackOfMemory();
    } catch (const std::length_error&) {
        state.EndForLackOfMemory();
    }
}

void Collector::ReadAll(State& state, const BackgroundTask::Notify& notify) {
    for (auto name = state.names.begin(); name != state.names.end() && !state.IsStopping(); ++name) {
        const auto collected =
            std::make_shared<CollectedClass>(ValueTexts(state.session.Access(), state.settings.form), state.spool);
        bool isReadingInstances = false;
        try {
            const auto cls = ServerSchema(state.session).Class(*name);
            state.Add(state.session.TakeIncidents());
            auto definition = DefinitionOf(*cls, state.session); // first: nothing fails after the instances
            state.session.TakeIncidents(); // the class has been read before: what it lacks is counted
            isReadingInstances = true;
            ReadInstances(state, *cls, *collected);
            collected->SetDefinition(definition ? *definition : InferredDefinition(*cls));
            state.Add(collected);
        } catch (const Failure& failure) {
            if (EndsReading(failure, isReadingInstances)) {
                state.End(failure);
                return;
            }
            state.AddFailure(failure.what());
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::length_error&) {
            throw;
        } catch (const std::exception& exception) {
            state.AddFailure(exception.what());
        }
        state.Add(state.session.TakeIncidents());
        notify();
    }
}

void Collector::ReadInstances(State& state, ICIMClass& cls, CollectedClass& collected) {
    const HeldInstances& held = state.settings.server ? kHeldOfEachServer : kHeldOfTheOnlyServer;
    const ServerInstances instances(state.session);
    const auto sequence = instances.Open(cls, true, {}, held.Count(PropertiesOf(cls).size()));
    do {
        for (const auto& instance : instances.Next(*sequence, cls.GetName(TCIMContext()))) {
            collected.Add(*instance, state.settings.wantsHealth);
        }
    } while (!sequence->IsAtEnd());
}

Collector::Progress Collector::Wait(std::chrono::milliseconds time) {
    const bool hasEnded = task_.Wait(time);
    const std::lock_guard<std::mutex> lock(state_->mutex);
    Progress progress = state_->progress;
    progress.hasEnded = hasEnded;
    return progress;
}

std::vector<std::string> Collector::TakeFailures() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return std::exchange(state_->failures, {});
}

std::optional<Failure> Collector::EarlyEnd() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return state_->lacksMemory ? Failure(Failure::kOther, kTooLittleMemory) : state_->earlyEnd;
}

void Collector::Stop() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->isStopping = true;
}

IncidentTally Collector::Incidents() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return state_->incidents;
}

Collection Collector::Collected() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    Collection collected = state_->collected;
    collected.complete = collected.complete && state_->progress.classesDone == state_->names.size();
    return collected;
}

} // namespace cimhttp
