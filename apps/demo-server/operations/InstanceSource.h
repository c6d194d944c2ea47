#pragma once

#include "operations/Repository.h"
#include "operations/Traversal.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace demo {

/// An instance that a source has come to, valid until it goes on.
struct SourcedInstance {
    const Repository* repository = nullptr;
    const Class* declaration = nullptr;
    /// Within the namespace.
    ObjectPath path;
    /// Null in a source of paths alone.
    const Instance* instance = nullptr;
};

/// Instances one after the other, at whatever times they are asked for. It keeps no more than it needs to go on. For
/// one thread at a time; what it is made of must outlive it.
class InstanceSource {
  public:
    InstanceSource() = default;
    InstanceSource(const InstanceSource&) = delete;
    InstanceSource& operator=(const InstanceSource&) = delete;
    virtual ~InstanceSource() = default;

    /// The next one; nothing at the end.
    virtual std::optional<SourcedInstance> Next() = 0;

    /// How many are left, if that is known.
    virtual std::optional<std::uint64_t> Left() const { return std::nullopt; }
};

/// The instances of a class and its subclasses.
std::unique_ptr<InstanceSource> InstancesOf(const Repository& repository, const Class& top);

/// The associations that refer to an instance of a class.
std::unique_ptr<InstanceSource> ReferencesTo(const Repository& repository, const Traversal& traversal,
                                             const ObjectPath& source);

/// What is associated with it: the objects that are still there when their turn comes; the paths of all that there
/// were.
std::unique_ptr<InstanceSource> AssociatedWith(const Traversal& traversal, const ObjectPath& source);
std::unique_ptr<InstanceSource> PathsAssociatedWith(const Traversal& traversal, const ObjectPath& source);

} // namespace demo
