#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>

namespace Pegasus {

class CIMClass;
class CIMConstProperty;
class CIMConstQualifier;
class CIMProperty;
class CIMQualifier;

class CIMInstance {
  public:
    CIMInstance();
    CIMInstance(const CIMInstance& other);
    explicit CIMInstance(const CIMObject& object);
    explicit CIMInstance(const CIMName& className);
    ~CIMInstance();
    CIMInstance& operator=(const CIMInstance& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    CIMObjectPath buildPath(const CIMClass& cimClass) const;
    void setPath(const CIMObjectPath& path);
    CIMInstance& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMInstance& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    CIMInstance clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstInstance {
  public:
    CIMConstInstance();
    CIMConstInstance(const CIMConstInstance& other);
    CIMConstInstance(const CIMInstance& instance);
    ~CIMConstInstance();
    CIMConstInstance& operator=(const CIMConstInstance& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    CIMObjectPath buildPath(const CIMClass& cimClass) const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    Uint32 getPropertyCount() const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    CIMInstance clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
