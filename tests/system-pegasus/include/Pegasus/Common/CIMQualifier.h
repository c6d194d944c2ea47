#pragma once

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {

class CIMQualifier {
  public:
    CIMQualifier();
    CIMQualifier(const CIMQualifier& other);
    CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor = CIMFlavor::NONE,
                 Boolean propagated = false);
    ~CIMQualifier();
    CIMQualifier& operator=(const CIMQualifier& other);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    Boolean getPropagated() const;
    CIMQualifier clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstQualifier {
  public:
    CIMConstQualifier();
    CIMConstQualifier(const CIMConstQualifier& other);
    CIMConstQualifier(const CIMQualifier& qualifier);
    ~CIMConstQualifier();
    CIMConstQualifier& operator=(const CIMConstQualifier& other);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    Boolean getPropagated() const;
    CIMQualifier clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
