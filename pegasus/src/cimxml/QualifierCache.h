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
        std::size_t nodes;     ///< below the QUALIFIER element
        Entry* next = nullptr; ///< which came after it the last time; the cache's own
    };

    /// An entry is found by its hash and compared as a whole, so that collisions cost entries, never a wrong one.
    explicit QualifierCache(Hash hash = defaultHash) noexcept : hash_(hash) {}

    /// The entry with whose text `text` begins, if that is the one that came after the one before the last time, which
    /// is likely and quickly found. Null otherwise. Valid up to clear().
    const Entry* findExpected(std::string_view text) noexcept {
        Entry* const next = last_ ? last_->next : nullptr;
        if (!next || text.substr(0, next->text.size()) != next->text) {
            return nullptr;
        }
        last_ = next;
        return next;
    }
    /// The entry of that text; null when there is none. Valid up to clear().
    const Entry* find(std::string_view text);
    /// Keeps an entry that was not found, if there is room for it.
    void add(Entry entry);
    /// Whether there was no room for an entry.
    bool isFull() const noexcept { return full_; }
    void clear() noexcept;

  private:
    static std::size_t defaultHash(std::string_view text) noexcept;

    void expectFromNowOn(Entry& entry) noexcept;

    Hash hash_;
    std::unordered_map<std::size_t, Entry> all_; // by the hash of their text
    Entry* last_ = nullptr;                      // what was found or added last
    std::size_t bytes_ = 0;                      // of all texts
    bool full_ = false;
};

} // namespace Pegasus::cimxml
