#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>

namespace Pegasus {

class CIMPropertyList {
  public:
    CIMPropertyList();
    CIMPropertyList(const CIMPropertyList& other);
    CIMPropertyList(const Array<CIMName>& names);
    ~CIMPropertyList();
    CIMPropertyList& operator=(const CIMPropertyList& other);

    Boolean isNull() const;
    Uint32 size() const;
    const CIMName& operator[](Uint32 index) const;
    void set(const Array<CIMName>& names);
    void append(const CIMName& name);
    void clear();
    Boolean contains(const CIMName& name) const;
    Array<CIMName> getPropertyNameArray() const;
    String toString() const;

  private:
    void* rep_;
};

} // namespace Pegasus
