#pragma once

#include "xml/Checkpoint.h"
#include "xml/PlainText.h"
#include "xml/StartTag.h"
#include "xml/TagCache.h"
#include "xml/XmlCharacters.h"
#include "xml/XmlLimits.h"

#include <cstddef>
#include <forward_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pegasus::xml {

/// Thrown by an XmlReader that needs more text than there is. Its caller knows whether more may come, so this never
/// leaves the library.
struct EndOfText {};

/// Reads elements out of a text, from left to right, and checks while it goes that they are well-formed and keep within
/// the limits of XmlLimits.h. Every element that nextElement() enters is left again by one of: text(), skip(), or
/// nextElement() returning false.
///
///     while (reader.nextElement())             // each child of the element that is being read
///         if (reader.name() == "VALUE")
///             use(reader.attributes(), reader.text());
///         else
///             reader.skip();
///
/// The text is made of whole characters that XML allows, or control characters; it must outlive the reader. A
/// document's element may be preceded by a document type declaration that holds no declarations of its own; every other
/// declaration is refused. All operations throw DecodingError, and EndOfText where the text ends before what they read
/// does; only start() may be called then. What the checkpoint throws passes through.
class XmlReader {
  public:
    /// `tags` and the checkpoint, if there is one, must outlive the reader. They may serve several readers, one after
    /// the other or one within the other.
    explicit XmlReader(TagCache& tags, const Checkpoint* checkpoint = nullptr, std::string_view text = {});
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// Begins to read a text: a document, or what follows within the element `parent`, whose start tag was read before.
    void start(std::string_view text, std::string_view parent = {}) noexcept;

    enum class Ahead { Element, EndTag, Text, Nothing };
    /// Skips white space, comments and processing instructions, and returns what follows them. CDATA is text.
    Ahead ahead();

    /// Enters the next child element of the one being read. False when there is no other, which leaves that one. There
    /// may be only white space between them.
    bool nextElement();

    /// The element that is being read. Its name is valid as long as the text.
    std::string_view name() const noexcept { return open_[depth_].element; }
    /// The start tag that was read last, valid up to the next operation.
    const StartTag& tag() const noexcept { return *tag_; }
    const Attributes& attributes() const noexcept { return tag_->attributes; }

    /// The characters of the element, which holds no others; leaves it. They are valid up to the next operation.
    std::string_view text();
    /// The characters of the next child element, which is left, where its start tag is `<element>`, without attributes.
    /// They are valid up to the next operation. Nothing, and no element is entered, where something else is next.
    std::optional<std::string_view> takeTextOf(std::string_view element) {
        const std::size_t tagLength = element.size() + 2;
        if (emptyTag_) {
            return std::nullopt;
        }
        skipSpace();
        if (rest().size() < tagLength || *at_ != '<' || at_[tagLength - 1] != '>' ||
            rest().substr(1, element.size()) != element) {
            return std::nullopt;
        }
        const char* const begin = at_ + tagLength;
        const char* const end = findSpecial(begin, end_);
        const bool isPlain = static_cast<std::size_t>(end_ - end) > tagLength && *end == '<' && end[1] == '/' &&
                             end[tagLength] == '>' && std::string_view(end + 2, element.size()) == element;
        if (!isPlain || depth_ == kMaxNesting) {
            enterPlain(element);
            return text();
        }
        tagBegin_ = at_;
        at_ = begin;
        countNodes(1);
        at_ = end + tagLength + 1;
        return std::string_view(begin, static_cast<std::size_t>(end - begin));
    }
    /// Leaves the element, whatever it holds.
    void skip() { skipTo(depth_ - 1); }

    /// How many elements are entered and not left.
    std::size_t depth() const noexcept { return depth_; }
    /// Leaves elements until `depth` of them are entered.
    void skipTo(std::size_t depth);
    /// Like skipTo(), also where references in texts stand for characters that XML does not allow.
    void skipBadTextTo(std::size_t depth);

    /// The text of the element that was entered last, from its start tag to the first `endTag`, which is its own unless
    /// its content has such a text. Empty when the element has no content, is not complete, or is longer than
    /// `longest`.
    std::string_view elementUpTo(std::string_view endTag, std::size_t longest) const noexcept;
    /// Leaves the element that was entered last: it is known to be `element`, and to have so many nodes below it.
    void skipKnown(std::string_view element, std::size_t nodes);
    /// Whether the text is read exactly up to the end of `part`.
    bool isBehind(std::string_view part) const noexcept { return at_ == part.data() + part.size(); }
    /// The elements, attributes and the like that were read since start().
    std::size_t nodes() const noexcept { return nodes_; }

    /// How much of the text is read.
    std::size_t position() const noexcept { return static_cast<std::size_t>(at_ - begin_); }
    /// The text from a position on.
    std::string_view textFrom(std::size_t position) const noexcept {
        return {begin_ + position, static_cast<std::size_t>(end_ - begin_) - position};
    }
    /// Where in the text the start tag begins that was read last.
    std::size_t tagPosition() const noexcept { return static_cast<std::size_t>(tagBegin_ - begin_); }

    /// Reports the element that was entered last as one that may not stand there.
    [[noreturn]] void throwUnexpected() const;

  private:
    std::string_view rest() const noexcept { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    char peek() const;
    bool isNext(std::string_view expected) const;
    bool isAtTag() const;
    bool isAtEndTag() const { return at_[1] == '/'; }
    /// Returns whether there was any white space.
    bool skipSpace() noexcept {
        const char* const before = at_;
        while (at_ != end_ && *at_ <= ' ' && isXmlSpace(*at_)) {
            ++at_;
        }
        return at_ != before;
    }
    void skipBetween();
    void skipMarkup();
    void skipDocumentType();
    bool isInDocument() const noexcept { return depth_ == 0 && open_[0].element.empty(); }
    std::string_view takeBetween(std::string_view opening, std::string_view terminator);
    bool leaveEmptyTag() noexcept;

    void takeStartTag();
    void takeOtherStartTag();
    bool skipTag(const CachedTag* tag) noexcept;
    CachedTag* scanStartTag();
    void enterPlain(std::string_view element);
    void enter(const StartTag& tag, CachedTag*& firstChild);
    void takeAttribute();
    void takeEndTag();
    void takeOtherEndTag();
    std::string_view takeName();
    std::string_view takeAttributeValue();
    std::string_view resolveAttributeValue(const char* begin, char quote);
    std::string_view takeCharacters();
    const char* skipPlainText();
    void resolveSpecial();
    void resolveLineEnd(char replacement, std::string& out);
    void resolveReferenceInValue(std::string& out);
    void resolveReferenceInText();
    std::uint32_t takeReference();
    void resolveCData();
    void countNodes(std::size_t count) {
        nodes_ += count;
        if (nodes_ > kMaxNodes) {
            throwTooManyNodes();
        }
        if (position() - checkedUpTo_ >= kBytesBetweenCheckpoints) {
            passCheckpoint();
        }
    }
    [[noreturn]] static void throwTooManyNodes();
    void passCheckpoint();

    /// An element that is entered, or the parent of the first of these.
    struct Level {
        std::string_view element;
        CachedTag** nextChild; // where it is kept which tag came next in such an element last time
    };

    TagCache& tags_;
    const Checkpoint* const checkpoint_;
    const char* begin_ = nullptr;
    const char* at_ = nullptr;
    const char* tagBegin_ = nullptr; // of the start tag that was read last
    const char* end_ = nullptr;
    std::vector<Level> open_{1}; // on the heap: readers within readers must not take a thread's stack
    std::size_t depth_ = 0;
    std::size_t nodes_ = 0;
    std::size_t checkedUpTo_ = 0; // where the checkpoint was passed last
    bool emptyTag_ = false;       // the element that was entered last ends with its start tag
    const StartTag* tag_ = &scannedTag_;
    StartTag scannedTag_;                           // the last one that had to be parsed
    CachedTag* firstTag_ = nullptr;                 // what comes next at the beginning,
    CachedTag* tagOfOthers_ = nullptr;              // and within elements whose tags are not cached
    std::forward_list<std::string> resolvedValues_; // values of attributes that do not stand for themselves
    std::string resolvedText_;
    bool skipsBadText_ = false;
};

} // namespace Pegasus::xml
