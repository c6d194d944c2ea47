#pragma once

#include <Pegasus/Common/LanguageTag.h>

namespace Pegasus {

class AcceptLanguageList {
  public:
    AcceptLanguageList();
    AcceptLanguageList(const AcceptLanguageList& other);
    ~AcceptLanguageList();
    AcceptLanguageList& operator=(const AcceptLanguageList& other);

    Uint32 size() const;
    LanguageTag getLanguageTag(Uint32 index) const;
    void clear();

  private:
    void* rep_;
};

} // namespace Pegasus
