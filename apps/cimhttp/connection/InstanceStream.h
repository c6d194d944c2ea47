#pragma once

#include "connection/ServerInstances.h"

#include <memory>
#include <string>

namespace cimhttp {

class BackgroundTask;

/// The instances of a sequence, of which the next ones are read in a thread of their own while the caller works on
/// those before: no more than one portion ahead, and only for sequences that are not at their end after the first
/// portion. The session must outlive it, and an InterruptScope too.
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
    struct Ahead;

    void Begin();

    Session& session_;
    const std::string className_;
    std::shared_ptr<Ahead> ahead_;         // the thread has it, too
    std::unique_ptr<BackgroundTask> task_; // none while nothing is being read
    bool isAtEnd_ = false;
};

} // namespace cimhttp
