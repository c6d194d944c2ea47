#pragma once

#include <Pegasus/Client/ArrivingInstances.h>

#include <exception>
#include <memory>
#include <utility>

namespace NQORVYX20 {

/// The instances of one answer while it arrives: of these, no more than a few hundred are in memory, unless ReadAll()
/// is called.
class InstanceArrival {
  public:
    explicit InstanceArrival(std::unique_ptr<Pegasus::ArrivingInstances> arriving) : arriving_(std::move(arriving)) {}

    /// The next ones, at least one before the end. What fails is thrown when those before have been returned, as the
    /// client library throws it.
    Pegasus::Array<Pegasus::CIMInstance> Next();

    bool IsAtEnd() const { return readAhead_.size() == 0 && !failure_ && arriving_->isAtEnd(); }

    /// Reads a few hundred ahead, unless they are there already, and returns whether the client is free for other
    /// requests: all was received, or the rest never will be.
    bool EndsSoon();

    /// Reads all that is left; afterwards the client is free.
    void ReadAll();

  private:
    void ReadAhead(Pegasus::Uint32 count);
    void ReadSomeAhead();

    std::unique_ptr<Pegasus::ArrivingInstances> arriving_;
    Pegasus::Array<Pegasus::CIMInstance> readAhead_;
    std::exception_ptr failure_; // of what comes after these
};

} // namespace NQORVYX20
