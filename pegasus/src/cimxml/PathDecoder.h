#pragma once

#include "cimxml/NameCache.h"
#include "model/Chunks.h"
#include "xml/XmlReader.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <cstddef>

namespace Pegasus::cimxml {

using xml::XmlReader;

/// Decodes the elements for object paths (DSP0201, 5.2.2 and 5.2.3). Each operation decodes the element that the reader
/// has entered, and leaves it. They throw DecodingError, and EndOfText.
class PathDecoder {
  public:
    explicit PathDecoder(NameCache& names) : names_(names) {}

    /// INSTANCENAME, INSTANCEPATH, LOCALINSTANCEPATH, CLASSNAME, CLASSPATH or LOCALCLASSPATH.
    CIMObjectPath decodePath(XmlReader& reader);
    /// VALUE.REFERENCE or OBJECTPATH, which hold one of these.
    CIMObjectPath decodeReference(XmlReader& reader);

  private:
    struct Place {
        String host;
        CIMNamespaceName nameSpace;
    };

    CIMObjectPath decodeQualified(XmlReader& reader);
    CIMObjectPath decodeLocal(XmlReader& reader, const Place& place);
    Place decodePlace(XmlReader& reader);
    CIMNamespaceName decodeNamespace(XmlReader& reader);
    Array<CIMKeyBinding> decodeKeys(XmlReader& reader);
    CIMKeyBinding decodeNamedKey(XmlReader& reader);
    CIMKeyBinding decodeKey(const CIMName& name, XmlReader& reader);
    CIMKeyBinding decodeKeyReference(const CIMName& name, XmlReader& reader);
    CIMKeyBinding decodeKeyValue(const CIMName& name, XmlReader& reader);

    NameCache& names_;
    detail::Chunks chunks_;   // of their own: whoever keeps the paths of objects need not keep the objects
    std::size_t nesting_ = 0; // how deep this is in keys that are references
};

} // namespace Pegasus::cimxml
