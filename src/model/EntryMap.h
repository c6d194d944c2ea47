#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// Calls back once per entry, in key order, until the callback returns false; false when it did. Visits the entries
/// that are there when it starts, so the callback may change the map.
template <typename Interface, typename Entry>
bool VisitEntries(const std::map<std::string, boost::shared_ptr<Entry>>& entries,
                  const boost::function<bool(boost::shared_ptr<Interface>)>& callback) {
    std::vector<boost::shared_ptr<Entry>> visited;
    visited.reserve(entries.size());
    for (const auto& [key, entry] : entries) {
        visited.push_back(entry);
    }
    for (const auto& entry : visited) {
        if (!callback(entry)) {
            return false;
        }
    }
    return true;
}

/// The entry under a key, or an empty pointer.
template <typename Entry>
boost::shared_ptr<Entry> FindEntry(const std::map<std::string, boost::shared_ptr<Entry>>& entries,
                                   const std::string& key) {
    const auto found = entries.find(key);
    return found == entries.end() ? boost::shared_ptr<Entry>() : found->second;
}

} // namespace NQORVYX20
