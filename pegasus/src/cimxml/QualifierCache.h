#pragma once

#include <Pegasus/Common/CIMQualifier.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Pegasus::cimxml {

/// Keeps qualifiers by the text of their elements. Most qualifiers of a class come again on its other properties and in
/// its subclasses; all of them share one CIMQualifier, which cannot be changed.
class QualifierCache {
  public:
    using Hash = std::size_t (*)(std::string_view text);

    struct Entry {
        std::string text;
        CIMQualifier qualifier;
        std::size_t nodes; ///< below the QUALIFIER element
    };

    /// An entry is found by its hash and compared as a whole, so that collisions cost entries, never a wrong one.
    explicit QualifierCache(Hash hash = defaultHash) noexcept : hash_(hash) {}

    /// The entry of that text; null when there is none. Valid up to the next change.
    const Entry* find(std::string_view text) const;
    /// Keeps an entry that was not found, if there is room for it.
    void add(Entry entry);
    /// Whether there was no room for an entry.
    bool isFull() const noexcept { return full_; }
    void clear() noexcept;

  private:
    static std::size_t defaultHash(std::string_view text) noexcept;

    Hash hash_;
    std::unordered_map<std::size_t, Entry> all_; // by the hash of their text
    std::size_t bytes_ = 0;                      // of all texts
    bool full_ = false;
};

} // namespace Pegasus::cimxml
