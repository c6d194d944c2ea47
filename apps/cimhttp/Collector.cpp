#include "Collector.h"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "Failure.h"

namespace cimhttp {

struct Collector::State {
    State(Session used, std::vector<std::string> wanted)
        : session(std::move(used)), names(std::move(wanted)), collected{session.Server(), true, {}} {}

    Session session; // used by the thread alone
    const std::vector<std::string> names;

    std::mutex mutex; // guards all below
    std::condition_variable changed;
    Progress progress;
    Collection collected;
    std::vector<std::string> failures;
    bool is_stopping = false;
};

Collector::Collector(Session session, std::vector<std::string> names)
    : state_(std::make_shared<State>(std::move(session), std::move(names))), thread_(&Collector::Run, state_) {}

Collector::~Collector() {
    if (Wait(std::chrono::milliseconds(0)).has_ended) {
        thread_.join();
    } else {
        thread_.detach(); // nobody can wait for a thread that waits for a server
    }
}

void Collector::Run(const std::shared_ptr<State>& state) {
    for (const std::string& name : state->names) {
        Collection::Class cls;
        std::string failure;
        try {
            cls.definition = state->session.Class(name);
            cls.instances = state->session.Instances(*cls.definition, false);
        } catch (const std::exception& exception) {
            failure = exception.what();
        }
        const std::lock_guard<std::mutex> lock(state->mutex);
        if (failure.empty()) {
            state->progress.instances += cls.instances.size();
            state->collected.classes.push_back(std::move(cls));
        } else {
            state->failures.push_back(std::move(failure));
            state->collected.complete = false;
        }
        ++state->progress.classes_done;
        state->changed.notify_all();
        if (state->is_stopping) {
            break;
        }
    }
    const std::lock_guard<std::mutex> lock(state->mutex);
    state->progress.has_ended = true;
    state->changed.notify_all();
}

Collector::Progress Collector::Wait(std::chrono::milliseconds time) const {
    std::unique_lock<std::mutex> lock(state_->mutex);
    const std::size_t known = state_->progress.classes_done;
    state_->changed.wait_for(lock, time,
                             [&] { return state_->progress.has_ended || state_->progress.classes_done != known; });
    return state_->progress;
}

std::vector<std::string> Collector::TakeFailures() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    return std::exchange(state_->failures, {});
}

void Collector::Stop() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->is_stopping = true;
}

Collection Collector::Collected() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    Collection collected = state_->collected;
    collected.complete = collected.complete && state_->progress.classes_done == state_->names.size();
    return collected;
}

} // namespace cimhttp
