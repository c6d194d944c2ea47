#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace NQORVYX20 {

/// The options of a connection: values for some of the keys that OptionRules.h lists. Plain data; each value is valid
/// for its key.
class ConnectionOptions {
  public:
    using Value = std::variant<bool, std::uint64_t, std::string>;
    using Values = std::map<std::string, Value, std::less<>>;

    void Set(const std::string& key, Value value);
    void Remove(const std::string& key) { values_.erase(key); }

    // Looking takes no memory.

    bool Has(std::string_view key) const { return values_.count(key) != 0; }
    const Values& All() const { return values_; }

    /// The value under a key of that kind; empty when nothing is said.
    std::optional<bool> Flag(std::string_view key) const { return Find<bool>(key); }
    std::optional<std::uint64_t> Number(std::string_view key) const { return Find<std::uint64_t>(key); }
    std::optional<std::string> Text(std::string_view key) const { return Find<std::string>(key); }

    friend bool operator==(const ConnectionOptions& one, const ConnectionOptions& other) {
        return one.values_ == other.values_;
    }

  private:
    template <typename Type>
    std::optional<Type> Find(std::string_view key) const {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional<Type>(std::get<Type>(found->second));
    }

    Values values_;
};

/// A value as messages show it.
std::string TextOf(const ConnectionOptions::Value& value);

} // namespace NQORVYX20
