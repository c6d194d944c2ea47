#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {

class CIMProperty {
  public:
    CIMProperty();
    CIMProperty(const CIMProperty& other);
    CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                const CIMName& referenceClass = CIMName(), const CIMName& classOrigin = CIMName(),
                Boolean propagated = false);
    ~CIMProperty();
    CIMProperty& operator=(const CIMProperty& other);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    void setValue(const CIMValue& value);
    CIMProperty& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstProperty {
  public:
    CIMConstProperty();
    CIMConstProperty(const CIMConstProperty& other);
    CIMConstProperty(const CIMProperty& property);
    ~CIMConstProperty();
    CIMConstProperty& operator=(const CIMConstProperty& other);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
