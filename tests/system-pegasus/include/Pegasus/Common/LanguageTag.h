#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

class LanguageTag {
  public:
    LanguageTag();
    LanguageTag(const LanguageTag& other);
    explicit LanguageTag(const String& tag);
    ~LanguageTag();
    LanguageTag& operator=(const LanguageTag& other);

    String toString() const;

  private:
    void* rep_;
};

} // namespace Pegasus
