#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/LanguageTag.h>

#include <utility>

namespace Pegasus {
inline namespace bundled {

/// The languages in which a client wants to have texts, the best first.
class AcceptLanguageList {
  public:
    Uint32 size() const noexcept { return items_.size(); }
    /// Throw IndexOutOfBoundsException.
    const LanguageTag& getLanguageTag(Uint32 index) const { return items_[index].first; }
    Real32 getQualityValue(Uint32 index) const { return items_[index].second; }
    /// Adds a language with a quality from 0 to 1, after those of equal or better quality.
    void insert(const LanguageTag& tag, Real32 qualityValue);
    void clear() { items_.clear(); }

  private:
    Array<std::pair<LanguageTag, Real32>> items_;
};

} // namespace bundled
} // namespace Pegasus
