#include "cimxml/PathDecoder.h"

#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlTree.h"

#include <string>

namespace Pegasus::cimxml {

namespace {

/// The kind of key that KEYVALUE holds: what VALUETYPE says, else what the CIM type in TYPE says, else a text.
CIMKeyBinding::Type keyTypeOf(XmlElement keyValue) {
    const Attributes attributes(keyValue);
    if (const auto valueType = attributes.find("VALUETYPE")) {
        if (*valueType == "string")
            return CIMKeyBinding::STRING;
        if (*valueType == "boolean")
            return CIMKeyBinding::BOOLEAN;
        if (*valueType == "numeric")
            return CIMKeyBinding::NUMERIC;
        throwXmlError({"unknown VALUETYPE: ", *valueType});
    }
    const auto type = attributes.find("TYPE");
    if (!type)
        return CIMKeyBinding::STRING;
    const CIMType cimType = decodeType(*type);
    if (cimType == CIMTYPE_BOOLEAN)
        return CIMKeyBinding::BOOLEAN;
    return cimType <= CIMTYPE_REAL64 ? CIMKeyBinding::NUMERIC : CIMKeyBinding::STRING;
}

} // namespace

CIMObjectPath PathDecoder::decodePath(XmlElement element) {
    if (isNamed(element, "INSTANCENAME") || isNamed(element, "CLASSNAME"))
        return decodeLocal(element, Place());
    if (isNamed(element, "INSTANCEPATH") || isNamed(element, "LOCALINSTANCEPATH") || isNamed(element, "CLASSPATH") ||
        isNamed(element, "LOCALCLASSPATH"))
        return decodeQualified(element);
    throwUnexpected(element);
}

CIMObjectPath PathDecoder::decodeReference(XmlElement element) {
    const auto path = onlyChild(element);
    if (!path)
        throwXmlError({"the element ", element.name(), " is empty"});
    return decodePath(path);
}

/// A namespace path and the name of the class or instance in it.
CIMObjectPath PathDecoder::decodeQualified(XmlElement element) {
    XmlElement place;
    XmlElement name;
    for (const auto child : ChildElements(element)) {
        if (name)
            throwUnexpected(child);
        (place ? name : place) = child;
    }
    if (!name)
        throwXmlError({"the element ", element.name(), " has no namespace and name"});
    return decodeLocal(name, decodePlace(place));
}

CIMObjectPath PathDecoder::decodeLocal(XmlElement element, const Place& place) {
    if (isNamed(element, "CLASSNAME"))
        return CIMObjectPath(place.host, place.nameSpace, names_.get(Attributes(element).get("NAME")));
    if (!isNamed(element, "INSTANCENAME"))
        throwUnexpected(element);
    return CIMObjectPath(place.host, place.nameSpace, names_.get(Attributes(element).get("CLASSNAME")),
                         decodeKeys(element));
}

PathDecoder::Place PathDecoder::decodePlace(XmlElement element) {
    if (isNamed(element, "LOCALNAMESPACEPATH"))
        return Place{String(), decodeNamespace(element)};
    if (!isNamed(element, "NAMESPACEPATH"))
        throwUnexpected(element);
    Place place;
    for (const auto child : ChildElements(element)) {
        std::string buffer;
        if (isNamed(child, "HOST"))
            place.host = String(trimmed(textOf(child, buffer)));
        else if (isNamed(child, "LOCALNAMESPACEPATH"))
            place.nameSpace = decodeNamespace(child);
        else
            throwUnexpected(child);
    }
    return place;
}

CIMNamespaceName PathDecoder::decodeNamespace(XmlElement element) {
    std::string path;
    for (const auto child : ChildElements(element)) {
        if (!isNamed(child, "NAMESPACE"))
            throwUnexpected(child);
        if (!path.empty())
            path += '/';
        path += Attributes(child).get("NAME");
    }
    const String name{std::string_view(path)};
    if (!CIMNamespaceName::legal(name))
        throwXmlError({"not the name of a namespace: \"", path, "\""});
    return CIMNamespaceName(name);
}

/// Named keys, or one value without a name, or none.
Array<CIMKeyBinding> PathDecoder::decodeKeys(XmlElement instanceName) {
    Array<CIMKeyBinding> keys;
    for (const auto child : ChildElements(instanceName)) {
        if (keys.size() != 0 && keys[0].getName().isNull())
            throwUnexpected(child);
        if (!isNamed(child, "KEYBINDING")) {
            if (keys.size() != 0)
                throwUnexpected(child);
            keys.append(decodeKey(CIMName(), child));
            continue;
        }
        const auto value = onlyChild(child);
        if (!value)
            throwXmlError({"the element KEYBINDING is empty"});
        keys.append(decodeKey(names_.get(Attributes(child).get("NAME")), value));
    }
    return keys;
}

CIMKeyBinding PathDecoder::decodeKey(const CIMName& name, XmlElement value) {
    if (isNamed(value, "KEYVALUE"))
        return decodeKeyValue(name, value);
    if (!isNamed(value, "VALUE.REFERENCE"))
        throwUnexpected(value);
    // Each reference within a reference doubles the number of escapes, so the text is held against its limit here.
    const String path = decodeReference(value).toString();
    if (path.view().size() > kMaxObjectBytes)
        throwXmlError({"the path of a reference is too long"});
    return CIMKeyBinding(name, path, CIMKeyBinding::REFERENCE);
}

CIMKeyBinding PathDecoder::decodeKeyValue(const CIMName& name, XmlElement element) {
    std::string buffer;
    const std::string_view text = textOf(element, buffer);
    const CIMKeyBinding::Type type = keyTypeOf(element);
    switch (type) {
    case CIMKeyBinding::BOOLEAN:
        return CIMKeyBinding(name, decodeScalar<Boolean>(text) ? "TRUE" : "FALSE", type);
    case CIMKeyBinding::NUMERIC:
        decodeScalar<Real64>(text); // refuses what is no number
        return CIMKeyBinding(name, String(trimmed(text)), type);
    case CIMKeyBinding::STRING:
    case CIMKeyBinding::REFERENCE:
        break;
    }
    return CIMKeyBinding(name, String(text), type);
}

} // namespace Pegasus::cimxml
