#pragma once

#include "cimxml/NameCache.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <pugixml.hpp>

namespace Pegasus::cimxml {

/// Decodes the elements that say where an object is (DSP0201, 5.2.2 and 5.2.3). All operations throw
/// CIMClientXmlException.
class PathDecoder {
  public:
    explicit PathDecoder(NameCache& names) : names_(names) {}

    /// INSTANCENAME, INSTANCEPATH, LOCALINSTANCEPATH, CLASSNAME, CLASSPATH or LOCALCLASSPATH.
    CIMObjectPath decodePath(pugi::xml_node element);
    /// VALUE.REFERENCE, which holds one of these.
    CIMObjectPath decodeReference(pugi::xml_node element);

  private:
    struct Place {
        String host;
        CIMNamespaceName nameSpace;
    };

    CIMObjectPath decodeQualified(pugi::xml_node element);
    CIMObjectPath decodeLocal(pugi::xml_node element, const Place& place);
    Place decodePlace(pugi::xml_node element);
    CIMNamespaceName decodeNamespace(pugi::xml_node element);
    Array<CIMKeyBinding> decodeKeys(pugi::xml_node instanceName);
    CIMKeyBinding decodeKey(const CIMName& name, pugi::xml_node value);
    CIMKeyBinding decodeKeyValue(const CIMName& name, pugi::xml_node element);

    NameCache& names_;
};

} // namespace Pegasus::cimxml
