#pragma once

#include "HostTypes.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <vector>

namespace cimhttp {

/// Instances that have been received and are made later. It is destroyed before its sequence, fastest by the thread
/// that received it.
class ReceivedPortion {
  public:
    virtual ~ReceivedPortion() = default;

    /// Makes the instances. After an exception, InstanceSequence::Settle() throws what tells more.
    virtual std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Make() = 0;
};

/// The instances of a class, read on demand. When it is destroyed before its end, the server is told.
class InstanceSequence {
  public:
    virtual ~InstanceSequence() = default;

    /// The next instances; none at the end. Throws like ICIMClass::EnumerateInstances, and cannot be used any further
    /// then.
    virtual std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Next() = 0;

    // Next() in two halves, after the first call of it, for two threads: where MayReadAhead() says so when a portion
    // has been received, another one may be received while instances are made of that.

    /// Receives the next instances; none at the end. Throws like Next().
    virtual std::unique_ptr<ReceivedPortion> Receive() = 0;

    /// To be called when nothing is under way and instances have been made since: takes down what could not be read of
    /// them, and throws what Next() would have thrown for them.
    virtual void Settle() = 0;

    /// Whether it is known that there are no more.
    virtual bool IsAtEnd() const = 0;

    /// Whether the next call of Next() has instances that have been received already, and asks for nothing.
    virtual bool HasMoreAtHand() const = 0;

    /// Whether another thread may use the instances that have been handed out, and their classes, while this one reads
    /// on. Not where the instances that are still to come may add declarations to these classes.
    virtual bool MayReadAhead() const = 0;

    /// Makes a call of Next() or Receive() that another thread is in ask for no more, and close the enumeration at the
    /// server.
    virtual void Stop() noexcept = 0;
};

} // namespace cimhttp
