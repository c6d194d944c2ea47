#pragma once

#include <Pegasus/Client/LenientFinding.h>

#include <utility>

namespace Pegasus::cimxml {

/// Collects the findings of lenient decoding, the first ones in full.
class Findings {
  public:
    void add(const LenientFinding& finding) {
        if (all_.total++ < LenientFindings::kMaxKept) {
            all_.first.append(finding);
        }
    }
    LenientFindings take() { return std::exchange(all_, {}); }

  private:
    LenientFindings all_;
};

} // namespace Pegasus::cimxml
