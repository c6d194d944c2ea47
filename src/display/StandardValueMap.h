#pragma once

#include "display/ValueMapTable.h"
#include "host/TCIMValue.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// A value map as DSP0004 has it: entries are numbers (decimal, `0x` hexadecimal, octal after `0`, binary before `b`),
/// ranges `a..b`, `a..` and `..b` of them, `..` for all that no other entry claims, and texts. Of entries that overlap,
/// the first one counts. Without entries, the texts count from 0.
class StandardValueMap {
  public:
    /// Of a property of this type, not that of an array. `entries` is empty where there is no ValueMap at all.
    StandardValueMap(TCIMValue::TCIMType type, const std::optional<std::vector<std::string>>& entries,
                     const std::vector<std::string>& texts);

    /// The text of a value, neither null nor an array; null where it has none, or an empty one.
    const std::string* Find(const TCIMValue& value) const;

  private:
    bool AddRange(const std::string& entry, const std::string& text, std::vector<ValueMapRow>& rows) const;
    std::optional<std::uint64_t> KeyOf(const std::string& number) const;
    std::optional<std::uint64_t> KeyOf(const TCIMValue& value) const;
    const std::string* FindText(const TCIMValue& value) const;

    bool isSigned_;
    bool isText_;
    std::optional<ValueMapTable> numbers_;
    std::map<std::string, std::string> texts_;
    std::string others_; ///< for what no other entry claims
};

} // namespace NQORVYX20
