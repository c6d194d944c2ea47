#pragma once

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMScope.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {

class CIMQualifierDecl {
  public:
    CIMQualifierDecl();
    CIMQualifierDecl(const CIMQualifierDecl& other);
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor::DEFAULTS, Uint32 arraySize = 0);
    ~CIMQualifierDecl();
    CIMQualifierDecl& operator=(const CIMQualifierDecl& other);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    CIMQualifierDecl clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
