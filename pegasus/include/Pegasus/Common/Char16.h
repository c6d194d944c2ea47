#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {
inline namespace bundled {

/// One UTF-16 unit, the value of a CIM char16.
class Char16 {
  public:
    constexpr Char16() noexcept = default;
    constexpr Char16(Uint16 unit) noexcept : unit_(unit) {}
    constexpr operator Uint16() const noexcept { return unit_; }

  private:
    Uint16 unit_ = 0;
};

} // namespace bundled
} // namespace Pegasus
