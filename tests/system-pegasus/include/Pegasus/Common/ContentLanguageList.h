#pragma once

#include <Pegasus/Common/LanguageTag.h>

namespace Pegasus {

class ContentLanguageList {
  public:
    ContentLanguageList();
    ContentLanguageList(const ContentLanguageList& other);
    ~ContentLanguageList();
    ContentLanguageList& operator=(const ContentLanguageList& other);

    Uint32 size() const;
    LanguageTag getLanguageTag(Uint32 index) const;
    void clear();

  private:
    void* rep_;
};

} // namespace Pegasus
