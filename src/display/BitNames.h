#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// The names of the bits of a number, by the qualifiers BitMap and BitValues.
class BitNames {
  public:
    /// Bits are numbered from the lowest, 0. Without numbers, the names count from 0.
    BitNames(const std::optional<std::vector<std::string>>& numbers, const std::vector<std::string>& names);

    /// The names of the bits that are set, `Read, Write`, from the lowest; a bit without a name is `bit 5`. Empty when
    /// none is set.
    std::string TextOf(std::uint64_t number) const;

  private:
    std::map<unsigned, std::string> names_;
};

} // namespace NQORVYX20
