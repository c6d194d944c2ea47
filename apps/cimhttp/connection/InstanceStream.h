#pragma once

#include "connection/ServerInstances.h"

#include <memory>
#include <string>

namespace cimhttp {

class BackgroundTask;

/// The instances of a sequence, of which the next ones are received in a thread of their own while instances are made
/// of those before, and the caller works on them: no more than a few portions ahead, and only for sequences that are
/// not at their end after the first portion. The session must outlive it, and an InterruptScope too.
class InstanceStream {
  public:
    using Instances = ServerInstances::Instances;

    InstanceStream(Session& session, std::unique_ptr<InstanceSequence> sequence, std::string className);

    /// Tells the server when the sequence is not at its end, and waits for what is being read ahead.
    ~InstanceStream();
    InstanceStream(const InstanceStream&) = delete;
    InstanceStream& operator=(const InstanceStream&) = delete;

    /// The next instances. Throws as ServerInstances::Next() does, and cannot be used any further then.
    Instances Next();

    /// Whether there are no more.
    bool IsAtEnd() const { return isAtEnd_; }

    /// Ends the sequence early, if what is being read ahead ends within a few seconds. It cannot be used any further.
    void Stop();

  private:
    class Ahead;

    Instances NextDirectly();
    Instances Make(std::unique_ptr<ReceivedPortion> received);
    void Begin();
    void EndTask();
    void AwaitEnd();
    void Settle();

    Session& session_;
    const std::string className_;
    std::shared_ptr<Ahead> ahead_;         // the thread has it, too
    std::unique_ptr<BackgroundTask> task_; // none while nothing is being read
    bool isAtEnd_ = false;
};

} // namespace cimhttp
