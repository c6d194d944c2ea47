#include "connection/UserEntry.h"

#include "Failure.h"

#include <algorithm>
#include <utility>

namespace cimhttp {

UserEntry::UserEntry(const nlohmann::json& entry, std::string place) : entry_(entry), place_(std::move(place)) {
    if (!entry_.is_object()) {
        Refuse(" is not an object");
    }
}

void UserEntry::CheckNames(std::initializer_list<const char*> names) const {
    for (const auto& [name, value] : entry_.items()) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            Refuse(" has an unknown setting '" + name + "'");
        }
    }
}

std::optional<std::string> UserEntry::Text(const char* name) const {
    const auto found = entry_.find(name);
    if (found == entry_.end()) {
        return std::nullopt;
    }
    if (!found->is_string()) {
        Refuse(std::string(": ") + name + " is not a text");
    }
    return found->get<std::string>();
}

std::string UserEntry::NeededText(const char* name) const {
    std::string text = Text(name).value_or("");
    if (text.empty()) {
        Refuse(std::string(" names no ") + name);
    }
    return text;
}

std::optional<bool> UserEntry::Flag(const char* name) const {
    const auto found = entry_.find(name);
    if (found == entry_.end()) {
        return std::nullopt;
    }
    if (!found->is_boolean()) {
        Refuse(std::string(": ") + name + " is neither true nor false");
    }
    return found->get<bool>();
}

std::optional<unsigned> UserEntry::Number(const char* name, const std::string& what, unsigned least,
                                          unsigned most) const {
    const auto found = entry_.find(name);
    if (found == entry_.end()) {
        return std::nullopt;
    }
    const bool isInRange =
        found->is_number_unsigned() && found->get<std::uint64_t>() >= least && found->get<std::uint64_t>() <= most;
    if (!isInRange) {
        Refuse(std::string(": ") + name + " is no " + what + " from " + std::to_string(least) + " to " +
               std::to_string(most));
    }
    return found->get<unsigned>();
}

void UserEntry::Refuse(const std::string& what) const { throw Failure(Failure::kUsage, place_ + what); }

} // namespace cimhttp
