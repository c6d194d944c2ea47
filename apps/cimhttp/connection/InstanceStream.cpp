#include "connection/InstanceStream.h"

#include "waiting/BackgroundTask.h"
#include "waiting/Interrupt.h"

#include <chrono>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt

} // namespace

/// What the thread that reads has, and leaves to the other one when it has ended.
struct InstanceStream::Ahead {
    explicit Ahead(std::unique_ptr<InstanceSequence> read) : sequence(std::move(read)) {}

    void Read() {
        instances = sequence->Next();
        isAtEnd = sequence->IsAtEnd();
        mayReadAhead = !isAtEnd && sequence->MayReadAhead();
    }

    std::unique_ptr<InstanceSequence> sequence;
    Instances instances;
    bool isAtEnd = false;
    bool mayReadAhead = false;
};

InstanceStream::InstanceStream(Session& session, std::unique_ptr<InstanceSequence> sequence, std::string className)
    : session_(session), className_(std::move(className)), ahead_(std::make_shared<Ahead>(std::move(sequence))) {}

InstanceStream::~InstanceStream() {
    if (!task_) {
        return;
    }
    ahead_->sequence->Stop();
    while (!task_->Wait(kLookInterval)) { // it uses the session, which may go afterwards
        session_.EndIfInterrupted([] {});
    }
}

void InstanceStream::Begin() {
    task_ = session_.Begin([ahead = ahead_] { ahead->Read(); });
}

InstanceStream::Instances InstanceStream::Next() {
    if (!session_.CanReadAhead()) {
        Instances instances = ServerInstances(session_).Next(*ahead_->sequence, className_);
        isAtEnd_ = ahead_->sequence->IsAtEnd();
        return instances;
    }
    if (!task_) {
        Begin();
    }
    ServerInstances(session_).Await(*task_, *ahead_->sequence, className_);
    task_.reset();
    Instances instances = std::exchange(ahead_->instances, {});
    isAtEnd_ = ahead_->isAtEnd;
    if (ahead_->mayReadAhead) {
        Begin();
    }
    return instances;
}

void InstanceStream::Stop() {
    ahead_->sequence->Stop();
    if (!task_ || ProgressWait::AwaitEnd(*task_)) {
        task_.reset();
        ahead_->sequence.reset();
    }
}

} // namespace cimhttp
