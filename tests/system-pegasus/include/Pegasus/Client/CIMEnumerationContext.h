#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

class CIMEnumerationContext {
  public:
    CIMEnumerationContext();
    CIMEnumerationContext(const CIMEnumerationContext& other);
    ~CIMEnumerationContext();
    CIMEnumerationContext& operator=(const CIMEnumerationContext& other);

    void clear();

  private:
    void* rep_;
};

} // namespace Pegasus
