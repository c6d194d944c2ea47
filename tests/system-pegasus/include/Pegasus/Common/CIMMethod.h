#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {

class CIMMethod {
  public:
    CIMMethod();
    CIMMethod(const CIMMethod& other);
    CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(), Boolean propagated = false);
    ~CIMMethod();
    CIMMethod& operator=(const CIMMethod& other);

    const CIMName& getName() const;
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    CIMMethod& addParameter(const CIMParameter& parameter);
    Uint32 getParameterCount() const;
    CIMParameter getParameter(Uint32 index);
    CIMConstParameter getParameter(Uint32 index) const;
    CIMMethod& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMMethod clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstMethod {
  public:
    CIMConstMethod();
    CIMConstMethod(const CIMConstMethod& other);
    CIMConstMethod(const CIMMethod& method);
    ~CIMConstMethod();
    CIMConstMethod& operator=(const CIMConstMethod& other);

    const CIMName& getName() const;
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    Uint32 getParameterCount() const;
    CIMConstParameter getParameter(Uint32 index) const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMMethod clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
