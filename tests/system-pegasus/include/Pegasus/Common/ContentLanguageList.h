#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

class ContentLanguageList {
  public:
    ContentLanguageList();
    ContentLanguageList(const ContentLanguageList& other);
    ~ContentLanguageList();
    ContentLanguageList& operator=(const ContentLanguageList& other);

  private:
    void* rep_;
};

} // namespace Pegasus
