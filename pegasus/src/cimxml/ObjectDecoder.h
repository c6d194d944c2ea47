#pragma once

#include "cimxml/NameCache.h"
#include "cimxml/ObjectFindings.h"
#include "cimxml/PathDecoder.h"
#include "cimxml/PropertyNames.h"
#include "cimxml/QualifierCache.h"
#include "model/Chunks.h"
#include "xml/Checkpoint.h"
#include "xml/DecodingError.h"
#include "xml/TagFacts.h"
#include "xml/XmlReader.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace Pegasus::cimxml {

using xml::Attributes;
using xml::Checkpoint;
using xml::DecodingError;
using xml::StartTag;
using xml::XmlReader;

/// Turns elements into objects (DSP0201, 5.2.1 and 5.2.3). Each operation decodes the element that the reader has
/// entered, and leaves it. Attributes that it does not know are ignored, elements are not. All throw
/// DecodingError, and EndOfText.
///
/// It caches what objects have in common, so the more alike they are, the faster it is. It may serve one answer after
/// another, even after one that ended in an exception.
class ObjectDecoder {
  public:
    /// Where the readers keep start tags.
    xml::TagCache& tags() noexcept { return tags_; }
    /// Clears the caches that are full. To be called before anything of an answer is read. The checkpoint, if there is
    /// one, is passed while embedded objects are read; it must live as long as the answer is decoded. With `lenient`, a
    /// value that is not valid is null, and the last of two properties of an instance with one name counts.
    void startAnswer(const Checkpoint* checkpoint, bool lenient) noexcept;
    /// Whether a string property becomes one of embedded objects where only its qualifiers say that it holds them.
    void setQualifiedEmbedding(bool isOn) noexcept { qualifiedEmbedding_ = isOn; }
    /// Whether an object may have two properties with one name unless it is read leniently. It then has both.
    void setDoubledProperties(bool areRead) noexcept { doubledProperties_ = areRead; }
    /// To be called before each object, also before one that is read again from its beginning.
    void startObject() noexcept { findings_.clear(); }
    /// The findings in the object.
    const ObjectFindings& findings() const noexcept { return findings_; }

    /// CLASS.
    CIMClass decodeClass(XmlReader& reader);
    /// INSTANCE; its path is the class name.
    CIMInstance decodeInstance(XmlReader& reader);
    /// VALUE.NAMEDINSTANCE or VALUE.INSTANCEWITHPATH: an instance with its path.
    CIMInstance decodeInstanceWithPath(XmlReader& reader);
    /// VALUE.OBJECTWITHPATH or VALUE.OBJECTWITHLOCALPATH: a class or an instance with its path. VALUE.OBJECT: one
    /// without.
    CIMObject decodeObject(XmlReader& reader);
    /// INSTANCENAME.
    CIMObjectPath decodeInstanceName(XmlReader& reader);
    /// OBJECTPATH, which holds an INSTANCEPATH or a CLASSPATH.
    CIMObjectPath decodeObjectPath(XmlReader& reader);
    /// CLASSNAME.
    CIMName decodeClassName(XmlReader& reader);
    /// QUALIFIER.DECLARATION.
    CIMQualifierDecl decodeQualifierDecl(XmlReader& reader);
    /// VALUE or VALUE.ARRAY, as texts, since their type is not stated; VALUE.REFERENCE or VALUE.REFARRAY.
    CIMValue decodeUntypedValue(XmlReader& reader);

  private:
    /// What the start tag of a property says.
    struct PropertyHead {
        bool isProperty = false; ///< else nothing: it begins another element
        CIMName name;
        std::size_t nameHash = 0;
        CIMType type = CIMTYPE_BOOLEAN;
        bool isArray = false;
        Uint32 arraySize = 0;
        CIMName referenceClass;
        CIMName classOrigin;
        bool propagated = false;
        bool isDeclaration = false; ///< says more than name, type and where it comes from
    };

    CIMQualifier decodeQualifier(XmlReader& reader);
    CIMQualifier decodeNewQualifier(XmlReader& reader);
    CIMMethod decodeMethod(XmlReader& reader);

    /// Add the element to the object that it describes; false when it is of another kind.
    template <class Owner>
    bool addQualifier(Owner& owner, XmlReader& reader);
    /// Looks for a property of that name among `names`, where they are given.
    template <class Owner>
    bool addProperty(Owner& owner, PropertyNames* names, XmlReader& reader);
    bool addParameter(CIMMethod& method, XmlReader& reader);

    /// The value in a VALUE element of some form.
    CIMValue decodeValue(CIMType type, bool isArray, XmlReader& reader);
    std::optional<CIMValue> takePlainValue(CIMType type, XmlReader& reader);
    CIMValue decodeGoodValue(CIMType type, bool isArray, XmlReader& reader);
    template <class T>
    CIMValue decodeScalarValue(XmlReader& reader);
    template <class T>
    CIMValue decodeArrayValue(XmlReader& reader);
    template <class T>
    std::optional<bool> nextItem(Array<T>& items, XmlReader& reader);
    template <class T>
    bool appendItem(Array<T>& items, XmlReader& reader);
    template <class T>
    std::optional<T> decodeItem(XmlReader& reader);
    CIMProperty withEmbedding(CIMProperty& property, XmlReader& reader);
    template <class T>
    CIMValue embeddedValue(const CIMValue& texts, XmlReader& reader);
    template <class T>
    std::optional<T> decodeQualifiedEmbedded(std::string_view text, XmlReader& reader);
    template <class T>
    std::optional<T> decodeEmbedded(std::string_view text);
    CIMObject decodeEmbeddedText(std::string_view text);
    CIMObject decodeOnlyObject(XmlReader& reader);

    struct Depth {
        std::size_t elements;
        std::size_t embedding;
    };

    Depth depthOutside(const XmlReader& reader) const noexcept { return {reader.depth() - 1, embedding_}; }
    void goOnBehind(const DecodingError& error, const Depth& outside, XmlReader& reader);
    void takeDoubled(const CIMName& name, Uint32 earlier, PropertyNames& names, const XmlReader& reader);

    static CIMProperty newProperty(const PropertyHead& head, CIMValue&& value);
    CIMName optionalName(const Attributes& attributes, std::string_view attributeName);
    PropertyHead decodePropertyHead(const StartTag& tag);

    detail::Chunks chunks_;
    xml::TagCache tags_;
    const Checkpoint* checkpoint_ = nullptr;
    NameCache names_;
    xml::TagFacts<PropertyHead> propertyHeads_;
    QualifierCache qualifiers_;
    PathDecoder paths_{names_};
    Uint32 propertyCount_ = 0;  // of the instance that was decoded last
    std::size_t embedding_ = 0; // how deep this is in embedded objects
    bool lenient_ = false;
    bool qualifiedEmbedding_ = true;
    bool doubledProperties_ = false;
    ObjectFindings findings_;
};

} // namespace Pegasus::cimxml
