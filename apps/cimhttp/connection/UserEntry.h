#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

namespace cimhttp {

/// One entry of a UserDocument, an object of settings. All complaints are Failure(kUsage) and begin with its place.
class UserEntry {
  public:
    /// `place` names the entry in complaints. The object must live as long.
    UserEntry(const nlohmann::json& entry, std::string place);

    /// Complains of a setting with another name.
    void CheckNames(std::initializer_list<const char*> names) const;

    // Nothing for a setting that is not there; complains of one of another type.

    std::optional<std::string> Text(const char* name) const;

    /// Complains of a text that is not there, or empty.
    std::string NeededText(const char* name) const;

    std::optional<bool> Flag(const char* name) const;

    /// `what` stands for a number in complaints, as in `number of seconds`.
    std::optional<unsigned> Number(const char* name, const std::string& what, unsigned least, unsigned most) const;

  private:
    [[noreturn]] void Refuse(const std::string& what) const;

    const nlohmann::json& entry_;
    std::string place_;
};

} // namespace cimhttp
