#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/LanguageTag.h>

namespace Pegasus {
inline namespace bundled {

/// The languages that a text is in.
class ContentLanguageList {
  public:
    Uint32 size() const noexcept { return tags_.size(); }
    /// Throws IndexOutOfBoundsException.
    const LanguageTag& getLanguageTag(Uint32 index) const { return tags_[index]; }
    void append(const LanguageTag& tag) { tags_.append(tag); }
    void clear() { tags_.clear(); }

    friend bool operator==(const ContentLanguageList& a, const ContentLanguageList& b) { return a.tags_ == b.tags_; }
    friend bool operator!=(const ContentLanguageList& a, const ContentLanguageList& b) { return !(a == b); }

  private:
    Array<LanguageTag> tags_;
};

} // namespace bundled
} // namespace Pegasus
