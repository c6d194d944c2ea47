#pragma once

#include "display/Scale.h"

#include <string>

namespace NQORVYX20 {

/// A unit of measurement as texts for people have it.
struct Unit {
    /// The larger and smaller units in which numbers are shown, too.
    enum class Steps {
        kNone,
        kDecimal, ///< k, M, G ... and m, µ, n ...: powers of 1000
        kBinary,  ///< Ki, Mi, Gi ...: powers of 1024
        kTime     ///< the base is the second
    };

    std::string symbol;   ///< of the base, `Hz`; empty for a mere number
    std::string singular; ///< the symbol for exactly one, where it differs: `packet` beside `packets`
    Scale scale;
    Steps steps = Steps::kNone;
};

} // namespace NQORVYX20
