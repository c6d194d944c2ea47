#pragma once

#include "schema/Instance.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace demo {

/// The instances of one provider, one after the other, at whatever times they are asked for.
class InstanceCursor {
  public:
    InstanceCursor() = default;
    InstanceCursor(const InstanceCursor&) = delete;
    InstanceCursor& operator=(const InstanceCursor&) = delete;
    virtual ~InstanceCursor() = default;

    /// The next instance, valid until the next call; null when there is none.
    virtual const Instance* Next() = 0;
};

/// Supplies the instances of one class as they are at the time of the call.
class InstanceProvider {
  public:
    /// Takes one instance. What it throws ends the enumeration.
    using Visitor = std::function<void(const Instance&)>;

    InstanceProvider() = default;
    InstanceProvider(const InstanceProvider&) = delete;
    InstanceProvider& operator=(const InstanceProvider&) = delete;
    virtual ~InstanceProvider() = default;

    /// The class of all instances.
    virtual std::string_view ClassName() const = 0;

    /// Hands every instance to the visitor, one at a time. Safe to call from several threads.
    virtual void Enumerate(const Visitor& visit) const = 0;

    /// Every instance, for a caller that does not take them all at once. By default, all of them are made now and kept.
    /// The provider must outlive the cursor. Safe to call from several threads.
    virtual std::unique_ptr<InstanceCursor> Open() const;

    /// Hands at least the instance with a path of the class to the visitor, if there is one; perhaps others as well.
    /// For a provider that need not make all its instances to find one. Safe to call from several threads.
    virtual void EnumerateCandidates(const ObjectPath& /*path*/, const Visitor& visit) const { Enumerate(visit); }

    /// Hands at least the instances with a reference to an object to the visitor; perhaps others as well. For a
    /// provider of an association that need not make all of them to find those of one object. Safe to call from several
    /// threads.
    virtual void EnumerateReferring(const ObjectPath& /*object*/, const Visitor& visit) const { Enumerate(visit); }
};

using InstanceProviders = std::vector<std::unique_ptr<InstanceProvider>>;

} // namespace demo
