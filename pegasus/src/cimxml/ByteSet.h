#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Pegasus::cimxml {

/// A set of bytes; asking it costs one look-up.
class ByteSet {
  public:
    explicit constexpr ByteSet(std::string_view members) {
        for (const char c : members)
            isMember_[static_cast<unsigned char>(c)] = true;
    }
    explicit constexpr ByteSet(bool (*isMember)(char)) {
        for (std::size_t byte = 0; byte != isMember_.size(); ++byte)
            isMember_[byte] = isMember(static_cast<char>(byte));
    }

    /// How many bytes there are before the first member.
    std::size_t lengthBefore(std::string_view bytes) const noexcept {
        std::size_t length = 0;
        while (length != bytes.size() && !isMember_[static_cast<unsigned char>(bytes[length])])
            ++length;
        return length;
    }

  private:
    std::array<bool, 256> isMember_{};
};

} // namespace Pegasus::cimxml
