#pragma once

#include <boost/function.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace NQORVYX20 {

/// Entries by name, for a collection that is searched and walked far more often than it changes: it is searched by
/// hash, and the order in which it is walked is worked out once after a change.
template <typename Entry>
class EntryIndex {
  public:
    using TEntry = boost::shared_ptr<Entry>;
    using TEntries = std::vector<TEntry>;

    /// Adds an entry. False, changing nothing, when the name is taken.
    bool Add(const std::string& name, const TEntry& entry) {
        const bool isNew = entries_.emplace(name, entry).second;
        if (isNew) {
            ordered_.reset();
        }
        return isNew;
    }

    /// Puts an entry in the place of the one of that name, which must be there.
    void Replace(const std::string& name, const TEntry& entry) {
        entries_.at(name) = entry;
        ordered_.reset();
    }

    /// The entry of that name, or an empty pointer.
    TEntry Find(const std::string& name) const {
        const auto found = entries_.find(name);
        return found == entries_.end() ? TEntry() : found->second;
    }

    /// The entries in the order of their names. The sequence that is handed out does not change with the collection.
    boost::shared_ptr<const TEntries> Ordered() const {
        if (!ordered_) {
            ordered_ = MakeOrdered();
        }
        return ordered_;
    }

    void Clear() {
        entries_.clear();
        ordered_.reset();
    }

  private:
    boost::shared_ptr<const TEntries> MakeOrdered() const {
        std::vector<std::pair<std::string, TEntry>> named(entries_.begin(), entries_.end());
        std::sort(named.begin(), named.end(),
                  [](const auto& left, const auto& right) { return left.first < right.first; });
        auto ordered = boost::make_shared<TEntries>();
        ordered->reserve(named.size());
        for (auto& [name, entry] : named) {
            ordered->push_back(std::move(entry));
        }
        return ordered;
    }

    std::unordered_map<std::string, TEntry> entries_;
    mutable boost::shared_ptr<const TEntries> ordered_; // empty after a change
};

} // namespace NQORVYX20
