#pragma once

#include <boost/shared_ptr.hpp>

#include <vector>

namespace NQORVYX20 {
class ICIMInstance;
} // namespace NQORVYX20

namespace cimhttp {

/// The instances of a class, read as they are wanted. When it goes before its end, the server is told so.
class InstanceSequence {
  public:
    virtual ~InstanceSequence() = default;

    /// The next instances; none at the end. Throws as ICIMClass::EnumerateInstances, and is of no use then.
    virtual std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Next() = 0;

    /// Whether it is known that there are no more.
    virtual bool IsAtEnd() const = 0;

    /// Lets the call of Next() that another thread is in ask the server for no more, and tell it so.
    virtual void Stop() noexcept = 0;
};

} // namespace cimhttp
