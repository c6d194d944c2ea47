#include "connection/InstanceStream.h"

#include "waiting/BackgroundTask.h"
#include "waiting/Interrupt.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt

constexpr std::size_t kMostAhead = 4; // portions

} // namespace

/// The sequence, and the portions that the thread that reads has received and the other one has not taken yet.
class InstanceStream::Ahead {
  public:
    struct Portion {
        Instances instances;                       // the first ones
        std::unique_ptr<ReceivedPortion> received; // those after them
        bool isAtEnd = false;
        bool isLast = false; // before the thread ends
    };

    explicit Ahead(std::unique_ptr<InstanceSequence> sequence) : sequence_(std::move(sequence)) {}

    InstanceSequence& Sequence() { return *sequence_; }

    /// For the thread that reads: as much as may be read ahead, or one portion.
    void Read(const Session& session, const BackgroundTask::Notify& notify) {
        bool isLast = false;
        do {
            FreeUsed();
            session.LimitTime();
            Portion portion = ReadPortion();
            isLast = portion.isLast;
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                portions_.push_back(std::move(portion));
            }
            notify();
        } while (!isLast && HasRoom());
    }

    bool HasPortion() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return !portions_.empty();
    }

    Portion Take() {
        const std::lock_guard<std::mutex> lock(mutex_);
        Portion portion = std::move(portions_.front());
        portions_.pop_front();
        changed_.notify_all();
        return portion;
    }

    /// Leaves what nobody needs any more to the thread that has received it.
    void GiveBack(std::unique_ptr<ReceivedPortion> portion) {
        const std::lock_guard<std::mutex> lock(mutex_);
        used_.push_back(std::move(portion));
    }

    void Stop() noexcept {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isStopped_ = true;
            changed_.notify_all();
        }
        sequence_->Stop();
    }

    /// When the thread has ended.
    void Close() {
        portions_.clear();
        used_.clear();
        sequence_.reset();
    }

  private:
    void FreeUsed() {
        std::vector<std::unique_ptr<ReceivedPortion>> used;
        const std::lock_guard<std::mutex> lock(mutex_);
        used.swap(used_);
    }

    Portion ReadPortion() {
        Portion portion;
        if (std::exchange(hasBegun_, true)) {
            portion.received = sequence_->Receive();
        } else {
            portion.instances = sequence_->Next();
        }
        portion.isAtEnd = sequence_->IsAtEnd();
        portion.isLast = portion.isAtEnd || !sequence_->MayReadAhead();
        return portion;
    }

    /// Waits until there is room for a further portion. Returns whether one is wanted.
    bool HasRoom() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return isStopped_ || portions_.size() < kMostAhead; });
        return !isStopped_;
    }

    std::unique_ptr<InstanceSequence> sequence_;
    bool hasBegun_ = false;

    std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    std::deque<Portion> portions_;
    std::vector<std::unique_ptr<ReceivedPortion>> used_;
    bool isStopped_ = false;
};

InstanceStream::InstanceStream(Session& session, std::unique_ptr<InstanceSequence> sequence, std::string className)
    : session_(session), className_(std::move(className)), ahead_(std::make_shared<Ahead>(std::move(sequence))) {}

InstanceStream::~InstanceStream() { EndTask(); }

void InstanceStream::Begin() {
    task_ = std::make_unique<BackgroundTask>(
        [ahead = ahead_, &session = session_](const BackgroundTask::Notify& notify) { ahead->Read(session, notify); });
}

/// It uses the session, which may go afterwards.
void InstanceStream::EndTask() {
    if (task_) {
        ahead_->Stop();
        AwaitEnd();
    }
}

void InstanceStream::AwaitEnd() {
    while (!task_->Wait(kLookInterval)) {
        session_.EndIfInterrupted([] {});
    }
    task_.reset();
}

InstanceStream::Instances InstanceStream::Next() {
    if (!session_.CanReadAhead()) {
        return NextDirectly();
    }
    if (!task_) {
        Begin();
    }
    const auto isThere = [this] { return ahead_->HasPortion(); };
    if (!isThere()) {
        ServerInstances(session_).Await(
            *task_, className_, [this] { ahead_->Stop(); }, isThere);
    }
    Ahead::Portion portion = ahead_->Take();
    if (portion.isLast) {
        AwaitEnd();
    }
    isAtEnd_ = portion.isAtEnd;
    return portion.received ? Make(std::move(portion.received)) : std::move(portion.instances);
}

InstanceStream::Instances InstanceStream::NextDirectly() {
    Instances instances = ServerInstances(session_).Next(ahead_->Sequence(), className_);
    isAtEnd_ = ahead_->Sequence().IsAtEnd();
    return instances;
}

InstanceStream::Instances InstanceStream::Make(std::unique_ptr<ReceivedPortion> received) {
    Instances instances;
    try {
        instances = received->Make();
    } catch (...) {
        EndTask(); // so that the failure can be told
        Settle();
        throw;
    }
    ahead_->GiveBack(std::move(received));
    if (!task_) {
        Settle();
    }
    return instances;
}

void InstanceStream::Settle() { ServerInstances(session_).Settle(ahead_->Sequence(), className_); }

void InstanceStream::Stop() {
    ahead_->Stop();
    if (!task_ || ProgressWait::AwaitEnd(*task_)) {
        task_.reset();
        ahead_->Close();
    }
}

} // namespace cimhttp
