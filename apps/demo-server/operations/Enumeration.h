#pragma once

#include "operations/InstanceSource.h"
#include "wire/XmlWriter.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace demo {

/// What a client has not pulled yet of the objects that it has asked for. For one thread at a time.
class Enumeration {
  public:
    /// Which of the pull operations is for it.
    enum class Kind { kInstances, kPaths };
    /// Writes the element of one object.
    using Write = std::function<void(XmlWriter&, const SourcedInstance&)>;

    Enumeration(Kind kind, std::unique_ptr<InstanceSource> source, Write write);

    Kind GetKind() const { return kind_; }
    bool IsAtEnd() const { return !next_; }

    /// How many objects are left, if that is known.
    std::optional<std::uint64_t> Left() const;

    /// Writes the next objects, no more than so many, and no further one once their text is longer than so many bytes.
    void WriteNext(XmlWriter& writer, std::size_t maxObjects, std::size_t maxBytes);

  private:
    Kind kind_;
    std::unique_ptr<InstanceSource> source_;
    Write write_;
    std::optional<SourcedInstance> next_; // known ahead, so that the end is
};

} // namespace demo
