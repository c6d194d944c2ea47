#pragma once

#include "cimxml/ElementText.h"
#include "cimxml/XmlLexer.h"

#include <cstddef>
#include <string_view>

namespace Pegasus::cimxml {

/// Cuts the document of an answer into what an operation's reader wants: the start tags of the envelope
///
///     CIM > MESSAGE > SIMPLERSP > IMETHODRESPONSE > IRETURNVALUE
///
/// and the elements within: each object of the return value, and the ERROR in place of one. Throws
/// CIMClientXmlException where the document is not well-formed or not of this shape, CIMClientResponseException where
/// it is the answer to an extrinsic method; what is within the elements is left to the parser behind it.
class ObjectFramer {
  public:
    class Handler {
      public:
        virtual ~Handler() = default;
        /// An element of the envelope begins. The text is its start tag, taken for an empty element.
        virtual void onEnvelope(ElementText& tag) = 0;
        /// An element of IMETHODRESPONSE or of IRETURNVALUE is complete.
        virtual void onElement(ElementText& element, bool inReturnValue) = 0;
    };

    explicit ObjectFramer(Handler& handler) : handler_(handler) {}

    /// Takes the next bytes of the document, cut anywhere.
    void feed(std::string_view bytes);
    /// Says that the document is complete.
    void finish() const;

  private:
    void takeElement(std::string_view& bytes);
    void takeEnvelope(std::string_view& bytes);
    void deliverElement();
    bool isEnvelope(std::string_view name) const;
    void open();
    void close();
    void checkCharacters();

    Handler& handler_;
    XmlLexer lexer_;
    ElementText piece_;         // the token or the element that is being collected
    std::size_t level_ = 0;     // the elements of the envelope that are open
    std::size_t nextLevel_ = 0; // the one that may open next: each comes once
    bool inElement_ = false;
};

} // namespace Pegasus::cimxml
