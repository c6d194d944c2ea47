#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMName {
  public:
    CIMName();
    CIMName(const String& name);
    CIMName(const char* name);

    const String& getString() const;
    Boolean isNull() const;
    Boolean equal(const CIMName& other) const;

    static Boolean legal(const String& name);

  private:
    String name_;
};

Boolean operator==(const CIMName& a, const CIMName& b);

class CIMNamespaceName {
  public:
    CIMNamespaceName();
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name);

    const String& getString() const;
    Boolean isNull() const;
    Boolean equal(const CIMNamespaceName& other) const;

    static Boolean legal(const String& name);

  private:
    String name_;
};

Boolean operator==(const CIMNamespaceName& a, const CIMNamespaceName& b);

} // namespace Pegasus
