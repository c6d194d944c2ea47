#pragma once

#include "cimxml/NameCache.h"
#include "cimxml/PathDecoder.h"
#include "cimxml/XmlTree.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <cstddef>
#include <string_view>

namespace Pegasus::cimxml {

/// Turns parsed elements into objects (DSP0201, 5.2.1 and 5.2.3). Attributes that it does not know are ignored,
/// elements are not. All operations throw CIMClientXmlException.
class ObjectDecoder {
  public:
    /// CLASS.
    CIMClass decodeClass(XmlElement element);
    /// INSTANCE; its path is the class name.
    CIMInstance decodeInstance(XmlElement element);
    /// VALUE.NAMEDINSTANCE or VALUE.INSTANCEWITHPATH: an instance with its path.
    CIMInstance decodeInstanceWithPath(XmlElement element);
    /// VALUE.OBJECTWITHPATH or VALUE.OBJECTWITHLOCALPATH: a class or an instance with its path. VALUE.OBJECT: one
    /// without.
    CIMObject decodeObject(XmlElement element);
    /// INSTANCENAME.
    CIMObjectPath decodeInstanceName(XmlElement element);
    /// OBJECTPATH, which holds an INSTANCEPATH or a CLASSPATH.
    CIMObjectPath decodeObjectPath(XmlElement element);
    /// CLASSNAME.
    CIMName decodeClassName(XmlElement element);
    /// QUALIFIER.DECLARATION.
    CIMQualifierDecl decodeQualifierDecl(XmlElement element);

  private:
    CIMQualifier decodeQualifier(XmlElement element);
    CIMMethod decodeMethod(XmlElement element);

    /// Add a child element to the object that it describes; false when it is of another kind.
    template <class Owner>
    bool addQualifier(Owner& owner, XmlElement child);
    template <class Owner>
    bool addProperty(Owner& owner, XmlElement child);
    bool addParameter(CIMMethod& method, XmlElement child);
    template <class Owner>
    void addQualifiers(Owner& owner, XmlElement element);

    /// The value in a VALUE element of some form; the null of the type where there is none.
    CIMValue decodeValue(CIMType type, bool isArray, XmlElement value);
    template <class T>
    CIMValue decodeScalarValue(XmlElement value);
    template <class T>
    CIMValue decodeArrayValue(XmlElement value);
    template <class T>
    T decodeItem(XmlElement value);
    CIMObject decodeEmbedded(std::string_view text);

    CIMName optionalName(const Attributes& attributes, std::string_view attributeName);

    NameCache names_;
    PathDecoder paths_{names_};
    std::size_t embedding_ = 0; // how deep this is in embedded objects
};

} // namespace Pegasus::cimxml
