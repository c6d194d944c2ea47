#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Pegasus::xml {

/// A set of bytes; whether it contains one costs one look-up.
class ByteSet {
  public:
    explicit constexpr ByteSet(std::string_view members) {
        for (const char c : members) {
            isMember_[static_cast<unsigned char>(c)] = true;
        }
    }
    explicit constexpr ByteSet(bool (*isMember)(char)) {
        for (std::size_t byte = 0; byte != isMember_.size(); ++byte) {
            isMember_[byte] = isMember(static_cast<char>(byte));
        }
    }

    constexpr bool contains(char c) const noexcept { return isMember_[static_cast<unsigned char>(c)]; }

    /// The first member from `at` on; `end` when there is none.
    const char* findFirst(const char* at, const char* end) const noexcept {
        while (at != end && !contains(*at)) {
            ++at;
        }
        return at;
    }

  private:
    std::array<bool, 256> isMember_{};
};

} // namespace Pegasus::xml
