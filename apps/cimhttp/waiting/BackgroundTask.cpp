#include "waiting/BackgroundTask.h"

#include "Failure.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <utility>

namespace cimhttp {

struct BackgroundTask::State {
    std::mutex mutex; // guards all below
    std::condition_variable changed;
    bool hasNews = false;
    bool hasEnded = false;
    std::exception_ptr error;
};

BackgroundTask::BackgroundTask(std::function<void(const Notify&)> work)
    : state_(std::make_shared<State>()),
      thread_(Start([state = state_, task = std::move(work)] { BackgroundTask::Run(state, task); })) {}

std::thread BackgroundTask::Start(std::function<void()> work) {
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error& error) {
        throw Failure(Failure::kOther, "no further thread can be started: " + error.code().message());
    }
}

BackgroundTask::~BackgroundTask() {
    if (Wait(std::chrono::milliseconds(0))) {
        thread_.join();
    } else {
        thread_.detach(); // nobody can wait for a thread that waits for a server
    }
}

void BackgroundTask::Run(const std::shared_ptr<State>& state, const std::function<void(const Notify&)>& work) {
    const auto notify = [&state] {
        const std::lock_guard<std::mutex> lock(state->mutex);
        state->hasNews = true;
        state->changed.notify_all();
    };
    std::exception_ptr error;
    try {
        work(notify);
    } catch (...) {
        error = std::current_exception(); // for Rethrow()
    }
    const std::lock_guard<std::mutex> lock(state->mutex);
    state->error = error;
    state->hasEnded = true;
    state->changed.notify_all();
}

bool BackgroundTask::Wait(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(state_->mutex);
    state_->changed.wait_for(lock, time, [this] { return state_->hasEnded || state_->hasNews; });
    state_->hasNews = false;
    return state_->hasEnded;
}

void BackgroundTask::Rethrow() const {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    if (state_->error) {
        std::rethrow_exception(state_->error);
    }
}

} // namespace cimhttp
