#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

class Char16 {
  public:
    Char16();
    Char16(Uint16 unit);
    Char16(const Char16& other);
    Char16& operator=(const Char16& other);
    operator Uint16() const;

  private:
    Uint16 unit_;
};

} // namespace Pegasus
