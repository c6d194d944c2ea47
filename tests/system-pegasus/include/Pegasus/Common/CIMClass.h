#pragma once

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace Pegasus {

class CIMClass {
  public:
    CIMClass();
    CIMClass(const CIMClass& other);
    explicit CIMClass(const CIMObject& object);
    explicit CIMClass(const CIMName& className, const CIMName& superClass = CIMName());
    ~CIMClass();
    CIMClass& operator=(const CIMClass& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    const CIMName& getSuperClassName() const;
    Boolean isAssociation() const;
    Boolean isAbstract() const;
    Boolean hasKeys() const;
    void getKeyNames(Array<CIMName>& names) const;
    void setPath(const CIMObjectPath& path);
    CIMClass& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMClass& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    CIMClass& addMethod(const CIMMethod& method);
    Uint32 getMethodCount() const;
    CIMMethod getMethod(Uint32 index);
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 findMethod(const CIMName& name) const;
    CIMClass clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

class CIMConstClass {
  public:
    CIMConstClass();
    CIMConstClass(const CIMConstClass& other);
    CIMConstClass(const CIMClass& cimClass);
    ~CIMConstClass();
    CIMConstClass& operator=(const CIMConstClass& other);

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    const CIMName& getSuperClassName() const;
    Boolean isAssociation() const;
    Boolean isAbstract() const;
    Boolean hasKeys() const;
    void getKeyNames(Array<CIMName>& names) const;
    Uint32 getQualifierCount() const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 findQualifier(const CIMName& name) const;
    Uint32 getPropertyCount() const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 findProperty(const CIMName& name) const;
    Uint32 getMethodCount() const;
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 findMethod(const CIMName& name) const;
    CIMClass clone() const;
    Boolean isUninitialized() const;

  private:
    void* rep_;
};

} // namespace Pegasus
