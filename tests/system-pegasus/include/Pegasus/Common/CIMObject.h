#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>

namespace Pegasus {

class CIMClass;
class CIMConstProperty;
class CIMConstQualifier;
class CIMInstance;
class CIMProperty;
class CIMQualifier;

class CIMObject {
  public:
    CIMObject();
    CIMObject(const CIMObject& other);
    CIMObject(const CIMClass& cimClass);
    CIMObject(const CIMInstance& instance);
    ~CIMObject();
    CIMObject& operator=(const CIMObject& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Boolean isClass() const;
    Boolean isInstance() const;
    String toString() const;
    void setPath(const CIMObjectPath& path);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    Uint32 getPropertyCount() const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    CIMObject clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstObject {
  public:
    CIMConstObject();
    CIMConstObject(const CIMConstObject& other);
    CIMConstObject(const CIMObject& object);
    ~CIMConstObject();
    CIMConstObject& operator=(const CIMConstObject& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Boolean isClass() const;
    Boolean isInstance() const;
    String toString() const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    Uint32 getPropertyCount() const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    CIMObject clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
