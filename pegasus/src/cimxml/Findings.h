#pragma once

#include <Pegasus/Client/LenientFinding.h>

#include <utility>

namespace Pegasus::cimxml {

/// Collects the findings of lenient decoding, the first ones in full.
class Findings {
  public:
    void add(const LenientFinding& finding) {
        addMore(finding.kind, 1);
        if (all_.total <= LenientFindings::kMaxKept) {
            all_.first.append(finding);
        }
    }
    /// Counts findings that are not kept in full.
    void addMore(LenientFinding::Kind kind, Uint64 count) {
        all_.total += count;
        all_.counts[kind] += count;
    }
    LenientFindings take() { return std::exchange(all_, {}); }

  private:
    LenientFindings all_;
};

} // namespace Pegasus::cimxml
