#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// The name of a language, such as "en" or "de-AT", or "*" for any. Compared without regard to case.
class LanguageTag {
  public:
    /// No language; toString() is empty.
    LanguageTag() noexcept = default;
    /// Throws InvalidNameException unless the text is words of 1 to 8 letters, separated by '-'; words after the first
    /// may have digits, too.
    explicit LanguageTag(const String& tag);

    const String& toString() const noexcept { return tag_; }

    friend bool operator==(const LanguageTag& a, const LanguageTag& b) noexcept {
        return String::equalNoCase(a.tag_, b.tag_);
    }
    friend bool operator!=(const LanguageTag& a, const LanguageTag& b) noexcept { return !(a == b); }

  private:
    String tag_;
};

} // namespace bundled
} // namespace Pegasus
