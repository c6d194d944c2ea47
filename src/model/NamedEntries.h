#pragma once

#include "convert/LetterCase.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace NQORVYX20 {

/// Entries by name, walked in the order of their names. A walk goes through the entries that are there when it begins,
/// so that whoever is called back may change the collection. The Map is where an entry is looked up.
template <typename Entry, typename Map = std::map<std::string, boost::shared_ptr<Entry>>>
class NamedEntries {
  public:
    using TEntry = boost::shared_ptr<Entry>;
    using TEntries = std::vector<TEntry>;

    /// Adds an entry; fastest when the names come in their order, as servers mostly send them. False, changing nothing,
    /// when the name is taken.
    bool Add(const std::string& name, const TEntry& entry) {
        const std::size_t before = entries_.size();
        entries_.emplace_hint(entries_.end(), name, entry);
        return NoteChange(entries_.size() != before);
    }

    /// Adds an entry, or puts it in the place of the one of that name.
    void Set(const std::string& name, const TEntry& entry) {
        entries_[name] = entry;
        NoteChange(true);
    }

    /// Removes the entry of that name. False when there is none.
    bool Remove(const std::string& name) { return NoteChange(entries_.erase(name) != 0); }

    /// The entry of that name, or an empty pointer.
    TEntry Find(const std::string& name) const {
        const auto found = entries_.find(name);
        return found == entries_.end() ? TEntry() : found->second;
    }

    /// The entries in the order of their names, for a collection that is walked often. The sequence that is handed out
    /// does not change with the collection; it is made once after a change, and kept.
    boost::shared_ptr<const TEntries> Ordered() const {
        if (!ordered_) {
            ordered_ = boost::make_shared<TEntries>(InOrder());
        }
        return ordered_;
    }

    /// Calls back once per entry until the callback returns false; false when it did.
    template <typename Callback>
    bool Visit(const Callback& callback) const {
        if (const auto kept = ordered_) {
            return VisitAll(*kept, callback);
        }
        return VisitAll(InOrder(), callback);
    }

    std::size_t Size() const { return entries_.size(); }

    /// Another number after each change.
    std::uint64_t Revision() const { return revision_; }

    void Clear() {
        entries_.clear();
        NoteChange(true);
    }

    // Pairs of names and entries in the order of the Map, for loops that change nothing.
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

  private:
    bool NoteChange(bool isChanged) {
        if (isChanged) {
            ordered_.reset();
            ++revision_;
        }
        return isChanged;
    }

    template <typename Callback>
    static bool VisitAll(const TEntries& entries, const Callback& callback) {
        return std::all_of(entries.begin(), entries.end(), [&](const TEntry& entry) { return callback(entry); });
    }

    TEntries InOrder() const {
        TEntries ordered;
        ordered.reserve(entries_.size());
        if constexpr (kIsSorted) {
            for (const auto& [name, entry] : entries_) {
                ordered.push_back(entry);
            }
        } else {
            for (const auto* const named : Sorted()) {
                ordered.push_back(named->second);
            }
        }
        return ordered;
    }

    auto Sorted() const {
        std::vector<const typename Map::value_type*> sorted;
        sorted.reserve(entries_.size());
        for (const auto& named : entries_) {
            sorted.push_back(&named);
        }
        std::sort(sorted.begin(), sorted.end(),
                  [](const auto* left, const auto* right) { return left->first < right->first; });
        return sorted;
    }

    static constexpr bool kIsSorted = std::is_same_v<Map, std::map<std::string, TEntry>>;

    Map entries_;
    std::uint64_t revision_ = 0;
    mutable boost::shared_ptr<const TEntries> ordered_; // empty after a change
};

/// Named entries that are looked up far more often than they change: by hash, in any letter case.
template <typename Entry>
using HashedEntries =
    NamedEntries<Entry, std::unordered_map<std::string, boost::shared_ptr<Entry>, HashInAnyCase, EqualInAnyCase>>;

} // namespace NQORVYX20
