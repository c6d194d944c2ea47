#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {

class CIMParameter {
  public:
    CIMParameter();
    CIMParameter(const CIMParameter& other);
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClass = CIMName());
    ~CIMParameter();
    CIMParameter& operator=(const CIMParameter& other);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMParameter& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMParameter clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstParameter {
  public:
    CIMConstParameter();
    CIMConstParameter(const CIMConstParameter& other);
    CIMConstParameter(const CIMParameter& parameter);
    ~CIMConstParameter();
    CIMConstParameter& operator=(const CIMConstParameter& other);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMParameter clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
