#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMKeyBinding {
  public:
    enum Type { BOOLEAN, STRING, NUMERIC, REFERENCE };

    CIMKeyBinding();
    CIMKeyBinding(const CIMKeyBinding& other);
    CIMKeyBinding(const CIMName& name, const String& value, Type type);
    ~CIMKeyBinding();
    CIMKeyBinding& operator=(const CIMKeyBinding& other);

    const CIMName& getName() const;
    const String& getValue() const;
    Type getType() const;
    Boolean equal(const CIMKeyBinding& other) const;

  private:
    void* rep_;
};

class CIMObjectPath {
  public:
    CIMObjectPath();
    CIMObjectPath(const CIMObjectPath& other);
    CIMObjectPath(const String& text);
    CIMObjectPath(const char* text);
    CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
                  const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>());
    ~CIMObjectPath();
    CIMObjectPath& operator=(const CIMObjectPath& other);

    const String& getHost() const;
    const CIMNamespaceName& getNameSpace() const;
    const CIMName& getClassName() const;
    const Array<CIMKeyBinding>& getKeyBindings() const;

    void clear();
    void set(const String& text);
    void setHost(const String& host);
    void setNameSpace(const CIMNamespaceName& nameSpace);
    void setClassName(const CIMName& className);
    void setKeyBindings(const Array<CIMKeyBinding>& keyBindings);

    Uint32 makeHashCode() const;
    String toString() const;
    Boolean identical(const CIMObjectPath& other) const;

  private:
    void* rep_;
};

Boolean operator==(const CIMObjectPath& a, const CIMObjectPath& b);

} // namespace Pegasus
