#pragma once

#include "cimxml/NameCache.h"
#include "cimxml/XmlTree.h"

#include <Pegasus/Common/CIMObjectPath.h>

namespace Pegasus::cimxml {

/// Decodes the elements that say where an object is (DSP0201, 5.2.2 and 5.2.3). All operations throw
/// CIMClientXmlException.
class PathDecoder {
  public:
    explicit PathDecoder(NameCache& names) : names_(names) {}

    /// INSTANCENAME, INSTANCEPATH, LOCALINSTANCEPATH, CLASSNAME, CLASSPATH or LOCALCLASSPATH.
    CIMObjectPath decodePath(XmlElement element);
    /// VALUE.REFERENCE or OBJECTPATH, which hold one of these.
    CIMObjectPath decodeReference(XmlElement element);

  private:
    struct Place {
        String host;
        CIMNamespaceName nameSpace;
    };

    CIMObjectPath decodeQualified(XmlElement element);
    CIMObjectPath decodeLocal(XmlElement element, const Place& place);
    Place decodePlace(XmlElement element);
    CIMNamespaceName decodeNamespace(XmlElement element);
    Array<CIMKeyBinding> decodeKeys(XmlElement instanceName);
    CIMKeyBinding decodeKey(const CIMName& name, XmlElement value);
    CIMKeyBinding decodeKeyValue(const CIMName& name, XmlElement element);

    NameCache& names_;
};

} // namespace Pegasus::cimxml
