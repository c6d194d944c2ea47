#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

class AcceptLanguageList {
  public:
    AcceptLanguageList();
    AcceptLanguageList(const AcceptLanguageList& other);
    ~AcceptLanguageList();
    AcceptLanguageList& operator=(const AcceptLanguageList& other);

  private:
    void* rep_;
};

} // namespace Pegasus
