#pragma once

#include <Pegasus/Common/CIMQualifier.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Pegasus::cimxml {

/// Keeps qualifiers by the text of their elements. Most of what a class says it says again in its other properties
/// and in its subclasses; all these share the qualifiers, which nobody can change.
class QualifierCache {
  public:
    struct Entry {
        std::string text;
        CIMQualifier qualifier;
        std::size_t nodes; ///< below the QUALIFIER element
    };

    /// Null when there is none. Valid up to the next change.
    const Entry* find(std::string_view text) const;
    /// Keeps one that was not found, if there is room for it.
    void add(Entry entry);
    /// Whether one found no room.
    bool isFull() const noexcept { return full_; }
    void clear() noexcept;

  private:
    std::unordered_map<std::size_t, Entry> all_; // by the hash of their text
    std::size_t bytes_ = 0;                      // of all texts
    bool full_ = false;
};

} // namespace Pegasus::cimxml
