#pragma once

#include <stdexcept>

namespace NQORVYX20 {

/// A policy that cannot be followed; the text says why, for whoever has written it.
class [[gnu::visibility("default")]] PolicyFault : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace NQORVYX20
