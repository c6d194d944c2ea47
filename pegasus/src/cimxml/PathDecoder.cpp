#include "cimxml/PathDecoder.h"

#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "xml/DecodingError.h"
#include "xml/XmlCharacters.h"

#include <algorithm>
#include <string>
#include <utility>

namespace Pegasus::cimxml {

using xml::Attributes;
using xml::throwBadContent;
using xml::throwIncomplete;
using xml::throwPastLimit;
using xml::trimmed;

namespace {

/// The kind of key that KEYVALUE holds: by VALUETYPE, else by the CIM type in TYPE, else a text. Empty attributes do
/// not count.
CIMKeyBinding::Type keyTypeOf(const Attributes& attributes) {
    if (const auto valueType = trimmed(attributes.find("VALUETYPE").value_or("")); !valueType.empty()) {
        if (valueType == "string") {
            return CIMKeyBinding::STRING;
        }
        if (valueType == "boolean") {
            return CIMKeyBinding::BOOLEAN;
        }
        if (valueType == "numeric") {
            return CIMKeyBinding::NUMERIC;
        }
        throwBadContent({"unknown VALUETYPE: ", valueType});
    }
    const auto type = trimmed(attributes.find("TYPE").value_or(""));
    if (type.empty()) {
        return CIMKeyBinding::STRING;
    }
    const CIMType cimType = decodeType(type);
    if (cimType == CIMTYPE_BOOLEAN) {
        return CIMKeyBinding::BOOLEAN;
    }
    return cimType <= CIMTYPE_REAL64 ? CIMKeyBinding::NUMERIC : CIMKeyBinding::STRING;
}

std::size_t sizeOf(const String& text) { return text.view().size(); }

/// What a key takes in the text form of its path: name, '=', the value, in quotes and with escapes or not, and what
/// separates it from the others.
std::size_t textSizeOf(const CIMKeyBinding& key) {
    const std::string_view value = key.getValue().view();
    const auto escapes = std::count_if(value.begin(), value.end(), [](char c) { return c == '"' || c == '\\'; });
    return sizeOf(key.getName().getString()) + value.size() + static_cast<std::size_t>(escapes) + 4;
}

/// At least the size of the path's text form, and at most little more.
std::size_t textSizeOf(const CIMObjectPath& path) {
    std::size_t size =
        sizeOf(path.getHost()) + sizeOf(path.getNameSpace().getString()) + sizeOf(path.getClassName().getString()) + 4;
    for (const CIMKeyBinding& key : path.getKeyBindings()) {
        size += textSizeOf(key);
    }
    return size;
}

/// Counts a level of references while it exists, also when an exception ends the decoding.
class Nesting {
  public:
    explicit Nesting(std::size_t& depth) : depth_(depth) {
        if (depth_ == kMaxReferenceNesting) {
            throwPastLimit({"references are nested deeper than ", std::to_string(kMaxReferenceNesting)});
        }
        ++depth_;
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    std::size_t& depth_;
};

} // namespace

CIMObjectPath PathDecoder::decodePath(XmlReader& reader) {
    const detail::Chunks::Scope scope(&chunks_);
    const std::string_view name = reader.name();
    if (name == "INSTANCENAME" || name == "CLASSNAME") {
        return decodeLocal(reader, Place());
    }
    if (name == "INSTANCEPATH" || name == "LOCALINSTANCEPATH" || name == "CLASSPATH" || name == "LOCALCLASSPATH") {
        return decodeQualified(reader);
    }
    reader.throwUnexpected();
}

CIMObjectPath PathDecoder::decodeReference(XmlReader& reader) {
    const std::string_view name = reader.name();
    if (!reader.nextElement()) {
        throwIncomplete({"the element ", name, " is empty"});
    }
    CIMObjectPath path = decodePath(reader);
    if (reader.nextElement()) {
        reader.throwUnexpected();
    }
    return path;
}

/// A namespace path and the name of the class or instance in it.
CIMObjectPath PathDecoder::decodeQualified(XmlReader& reader) {
    const std::string_view name = reader.name();
    const auto enterNext = [&] {
        if (!reader.nextElement()) {
            throwIncomplete({"the element ", name, " has no namespace and name"});
        }
    };
    enterNext();
    const Place place = decodePlace(reader);
    enterNext();
    const bool isOfClass = name == "CLASSPATH" || name == "LOCALCLASSPATH";
    if (isOfClass != (reader.name() == "CLASSNAME")) {
        reader.throwUnexpected();
    }
    CIMObjectPath path = decodeLocal(reader, place);
    if (reader.nextElement()) {
        reader.throwUnexpected();
    }
    return path;
}

CIMObjectPath PathDecoder::decodeLocal(XmlReader& reader, const Place& place) {
    if (reader.name() == "CLASSNAME") {
        CIMObjectPath path(place.host, place.nameSpace, names_.get(reader.attributes().get("NAME")));
        reader.skip();
        return path;
    }
    if (reader.name() != "INSTANCENAME") {
        reader.throwUnexpected();
    }
    const CIMName className = names_.get(reader.attributes().get("CLASSNAME"));
    return CIMObjectPath(place.host, place.nameSpace, className, decodeKeys(reader));
}

PathDecoder::Place PathDecoder::decodePlace(XmlReader& reader) {
    if (reader.name() == "LOCALNAMESPACEPATH") {
        return Place{String(), decodeNamespace(reader)};
    }
    if (reader.name() != "NAMESPACEPATH") {
        reader.throwUnexpected();
    }
    Place place;
    bool hasHost = false;
    bool hasNamespace = false;
    while (reader.nextElement()) {
        if (reader.name() == "HOST" && !std::exchange(hasHost, true)) {
            place.host = String(trimmed(reader.text()));
        } else if (reader.name() == "LOCALNAMESPACEPATH" && !std::exchange(hasNamespace, true)) {
            place.nameSpace = decodeNamespace(reader);
        } else {
            reader.throwUnexpected();
        }
    }
    if (!hasNamespace) {
        throwIncomplete({"the element NAMESPACEPATH has no namespace"});
    }
    return place;
}

/// LOCALNAMESPACEPATH; the null name where it is empty.
CIMNamespaceName PathDecoder::decodeNamespace(XmlReader& reader) {
    std::string path;
    bool isEmpty = true;
    for (; reader.nextElement(); isEmpty = false) {
        if (reader.name() != "NAMESPACE") {
            reader.throwUnexpected();
        }
        if (!isEmpty) {
            path += '/';
        }
        path += trimmed(reader.attributes().get("NAME"));
        reader.skip();
    }
    if (isEmpty) {
        return CIMNamespaceName();
    }
    const String name{std::string_view(path)};
    if (!CIMNamespaceName::legal(name)) {
        throwBadContent({"not the name of a namespace: \"", path, "\""});
    }
    return CIMNamespaceName(name);
}

/// Named keys, or one value without a name, or none.
Array<CIMKeyBinding> PathDecoder::decodeKeys(XmlReader& reader) {
    Array<CIMKeyBinding> keys;
    while (reader.nextElement()) {
        const bool named = reader.name() == "KEYBINDING";
        if (keys.size() != 0 && (!named || keys[0].getName().isNull())) {
            reader.throwUnexpected();
        }
        keys.append(named ? decodeNamedKey(reader) : decodeKey(CIMName(), reader));
    }
    return keys;
}

CIMKeyBinding PathDecoder::decodeNamedKey(XmlReader& reader) {
    const CIMName name = names_.get(reader.attributes().get("NAME"));
    if (!reader.nextElement()) {
        throwIncomplete({"the element KEYBINDING is empty"});
    }
    CIMKeyBinding key = decodeKey(name, reader);
    if (reader.nextElement()) {
        reader.throwUnexpected();
    }
    return key;
}

CIMKeyBinding PathDecoder::decodeKey(const CIMName& name, XmlReader& reader) {
    if (reader.name() == "KEYVALUE") {
        return decodeKeyValue(name, reader);
    }
    if (reader.name() != "VALUE.REFERENCE") {
        reader.throwUnexpected();
    }
    return decodeKeyReference(name, reader);
}

/// The path is kept as a text, which is measured before it is made.
CIMKeyBinding PathDecoder::decodeKeyReference(const CIMName& name, XmlReader& reader) {
    const Nesting nesting(nesting_);
    const std::size_t begin = reader.position();
    const CIMObjectPath path = decodeReference(reader);
    const std::size_t size = textSizeOf(path);
    if (size > kMaxReferenceGrowth * (reader.position() - begin)) {
        throwPastLimit({"the path of a reference is too long for its element: references are nested too deep"});
    }
    if (size > kMaxReferenceBytes) {
        throwPastLimit({"the path of a reference is longer than ", std::to_string(kMaxReferenceBytes >> 20U), " MiB"});
    }
    return CIMKeyBinding(name, path.toString(), CIMKeyBinding::REFERENCE);
}

/// A value that is stated to be a number or a boolean, and is none, is kept as a text: nothing of the path is lost.
CIMKeyBinding PathDecoder::decodeKeyValue(const CIMName& name, XmlReader& reader) {
    const CIMKeyBinding::Type type = keyTypeOf(reader.attributes());
    const std::string_view text = reader.text();
    if (type == CIMKeyBinding::NUMERIC && isNumber(text)) {
        return CIMKeyBinding(name, String(trimmed(text)), type);
    }
    if (const auto boolean = type == CIMKeyBinding::BOOLEAN ? readBoolean(text) : std::nullopt) {
        return CIMKeyBinding(name, *boolean ? "TRUE" : "FALSE", type);
    }
    return CIMKeyBinding(name, String(text), CIMKeyBinding::STRING);
}

} // namespace Pegasus::cimxml
