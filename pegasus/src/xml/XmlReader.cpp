#include "xml/XmlReader.h"

#include "text/Utf8.h"
#include "xml/ByteSet.h"
#include "xml/DecodingError.h"
#include "xml/XmlCharacters.h"
#include "xml/XmlReference.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Pegasus::xml {

namespace {

constexpr ByteSet kEndsName([](char c) { return !isInXmlName(c); });
constexpr ByteSet kEndsPlainValue("\"'<&\r\n\t");

constexpr ByteSet kEndsInDocumentType(">[<\"'");

constexpr std::string_view kCDataOpening = "<![CDATA[";
constexpr std::string_view kDocumentType = "<!DOCTYPE";

std::string badReferenceText(std::uint32_t codePoint) {
    return "a reference stands for " + codePointText(codePoint) + ", which XML does not allow";
}

} // namespace

XmlReader::XmlReader(TagCache& tags, const Checkpoint* checkpoint, std::string_view text)
    : tags_(tags), checkpoint_(checkpoint) {
    open_[0].nextChild = &firstTag_;
    start(text);
}

void XmlReader::start(std::string_view text, std::string_view parent) noexcept {
    begin_ = at_ = tagBegin_ = text.data();
    end_ = begin_ + text.size();
    open_[0].element = parent;
    depth_ = 0;
    nodes_ = 0;
    checkedUpTo_ = 0;
    emptyTag_ = false;
}

XmlReader::Ahead XmlReader::ahead() {
    skipBetween();
    if (at_ == end_) {
        return Ahead::Nothing;
    }
    if (*at_ != '<' || !isAtTag()) {
        return Ahead::Text;
    }
    return isAtEndTag() ? Ahead::EndTag : Ahead::Element;
}

bool XmlReader::nextElement() {
    if (leaveEmptyTag()) {
        return false;
    }
    skipSpace();
    if ((peek() != '<' || !isAtTag()) && !trimmed(takeCharacters()).empty()) {
        throwIncomplete({"there is text between the elements of ", name()});
    }
    if (isAtEndTag()) {
        takeEndTag();
        return false;
    }
    takeStartTag();
    return true;
}

std::string_view XmlReader::text() {
    if (leaveEmptyTag()) {
        return {};
    }
    const std::string_view characters = takeCharacters();
    if (!isAtEndTag()) {
        takeStartTag();
        throwUnexpected();
    }
    takeEndTag();
    return characters;
}

void XmlReader::skipTo(std::size_t depth) {
    while (depth_ > depth) {
        if (leaveEmptyTag()) {
            continue;
        }
        takeCharacters();
        if (isAtEndTag()) {
            takeEndTag();
        } else {
            takeStartTag();
        }
    }
}

void XmlReader::skipBadTextTo(std::size_t depth) {
    skipsBadText_ = true;
    try {
        skipTo(depth);
    } catch (...) {
        skipsBadText_ = false;
        throw;
    }
    skipsBadText_ = false;
}

std::string_view XmlReader::elementUpTo(std::string_view endTag, std::size_t longest) const noexcept {
    const auto tagLength = static_cast<std::size_t>(at_ - tagBegin_);
    if (emptyTag_ || tagLength > longest) {
        return {};
    }
    const std::string_view text(tagBegin_, std::min(static_cast<std::size_t>(end_ - tagBegin_), longest));
    const std::size_t end = text.find(endTag, tagLength);
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end + endTag.size());
}

void XmlReader::skipKnown(std::string_view element, std::size_t nodes) {
    at_ = element.data() + element.size();
    --depth_;
    countNodes(nodes);
}

void XmlReader::throwUnexpected() const {
    throwBadContent({"the element ", name(), " does not belong into ", open_[depth_ - 1].element});
}

void XmlReader::throwTooManyNodes() {
    throwPastLimit(
        {"one object has more than ", std::to_string(kMaxNodes), " elements, attributes, comments and CDATA sections"});
}

void XmlReader::passCheckpoint() {
    checkedUpTo_ = position();
    if (checkpoint_ != nullptr) {
        checkpoint_->pass();
    }
}

inline char XmlReader::peek() const {
    if (at_ == end_) {
        throw EndOfText();
    }
    return *at_;
}

/// Whether the text goes on with `expected`.
bool XmlReader::isNext(std::string_view expected) const {
    const std::string_view next = rest().substr(0, expected.size());
    if (next == expected) {
        return true;
    }
    if (next == expected.substr(0, next.size())) {
        throw EndOfText();
    }
    return false;
}

/// Whether a '<' begins a tag, and not a CDATA section, a comment or a processing instruction.
inline bool XmlReader::isAtTag() const {
    if (end_ - at_ < 2) {
        throw EndOfText();
    }
    return at_[1] != '!' && at_[1] != '?';
}

/// Skips white space, comments and processing instructions.
void XmlReader::skipBetween() {
    skipSpace();
    while (at_ != end_ && *at_ == '<' && !isAtTag() && !isNext(kCDataOpening)) {
        skipMarkup();
        skipSpace();
    }
}

/// Skips a comment or a processing instruction.
void XmlReader::skipMarkup() {
    if (at_[1] == '?') {
        takeBetween("<?", "?>");
    } else if (isNext("<!--")) {
        takeBetween("<!--", "-->");
    } else if (isInDocument() && isNext(kDocumentType)) {
        skipDocumentType();
    } else {
        throwMalformed({"it has a document type or another declaration where none is accepted"});
    }
}

/// Skips a document type that refers to its declarations; those that it holds itself could be entities.
void XmlReader::skipDocumentType() {
    at_ += kDocumentType.size();
    countNodes(1);
    for (at_ = kEndsInDocumentType.findFirst(at_, end_); peek() != '>';
         at_ = kEndsInDocumentType.findFirst(at_, end_)) {
        if (*at_ == '[' || *at_ == '<') {
            throwMalformed({"its document type has declarations, which are not accepted"});
        }
        const char quote = *at_++;
        at_ = std::find(at_, end_, quote);
        peek();
        ++at_;
    }
    ++at_;
}

/// Takes the opening, and all up to and with the terminator; returns what is between the two.
std::string_view XmlReader::takeBetween(std::string_view opening, std::string_view terminator) {
    countNodes(1);
    const std::size_t end = rest().find(terminator, opening.size());
    if (end == std::string_view::npos) {
        throw EndOfText();
    }
    const std::string_view between = rest().substr(opening.size(), end - opening.size());
    at_ += end + terminator.size();
    return between;
}

inline bool XmlReader::leaveEmptyTag() noexcept {
    const bool left = emptyTag_;
    depth_ -= left ? 1 : 0;
    emptyTag_ = false;
    return left;
}

void XmlReader::takeStartTag() {
    tagBegin_ = at_;
    Level& parent = open_[depth_];
    CachedTag* const expected = *parent.nextChild;
    if (!skipTag(expected)) {
        return takeOtherStartTag();
    }
    parent.nextChild = &expected->nextSibling;
    enter(*expected, expected->firstChild);
}

/// A start tag that did not come next the last time.
void XmlReader::takeOtherStartTag() {
    if (CachedTag* const tag = scanStartTag()) {
        *open_[depth_].nextChild = tag;
        open_[depth_].nextChild = &tag->nextSibling;
        enter(*tag, tag->firstChild);
    } else {
        enter(scannedTag_, tagOfOthers_);
    }
}

/// Skips a tag if it is the next one. (It is as long as the text: a tag does not begin with another.)
inline bool XmlReader::skipTag(const CachedTag* tag) noexcept {
    if (tag == nullptr || rest().size() < tag->text.size() ||
        std::memcmp(at_, tag->text.data(), tag->text.size()) != 0) {
        return false;
    }
    at_ += tag->text.size();
    return true;
}

/// Enters an element by a tag without attributes, which is the next one.
void XmlReader::enterPlain(std::string_view element) {
    tagBegin_ = at_;
    at_ += element.size() + 2;
    scannedTag_.element = element;
    scannedTag_.attributes.reset(element);
    scannedTag_.isEmpty = false;
    enter(scannedTag_, tagOfOthers_);
}

inline void XmlReader::enter(const StartTag& tag, CachedTag*& firstChild) {
    countNodes(1 + tag.attributes.count());
    if (depth_ == kMaxNesting) {
        throwPastLimit({"elements are nested deeper than ", std::to_string(kMaxNesting)});
    }
    tag_ = &tag;
    emptyTag_ = tag.isEmpty;
    if (++depth_ == open_.size()) {
        open_.emplace_back();
    }
    open_[depth_] = {tag.element, &firstChild};
}

/// Parses a tag. Returns it as the cache keeps it; null where the cache does not.
CachedTag* XmlReader::scanStartTag() {
    ++at_;
    const std::string_view element = takeName();
    scannedTag_.element = element;
    scannedTag_.attributes.reset(element);
    resolvedValues_.clear();
    for (bool spaced = skipSpace(); peek() != '>' && peek() != '/'; spaced = skipSpace()) {
        if (!spaced) {
            throwMalformed({"the tag of ", element, " is malformed"});
        }
        takeAttribute();
    }
    scannedTag_.isEmpty = *at_ == '/';
    if (scannedTag_.isEmpty && !isNext("/>")) {
        throwMalformed({"the tag of ", element, " is malformed"});
    }
    at_ += scannedTag_.isEmpty ? 2 : 1;
    const bool isPlain = resolvedValues_.empty();
    return isPlain ? tags_.findOrAdd(scannedTag_, {tagBegin_, static_cast<std::size_t>(at_ - tagBegin_)}) : nullptr;
}

inline void XmlReader::takeAttribute() {
    const std::string_view attribute = takeName();
    scannedTag_.attributes.add(attribute, takeAttributeValue());
}

inline std::string_view XmlReader::takeName() {
    const char* const begin = at_;
    at_ = kEndsName.findFirst(at_, end_);
    if (at_ == end_) {
        throw EndOfText();
    }
    if (at_ == begin || !startsXmlName(*begin)) {
        throwMalformed({"a tag is malformed"});
    }
    return {begin, static_cast<std::size_t>(at_ - begin)};
}

/// Takes '=' and a value in quotes; returns what the value stands for.
inline std::string_view XmlReader::takeAttributeValue() {
    skipSpace();
    const bool assigned = peek() == '=';
    at_ += assigned ? 1 : 0;
    skipSpace();
    const char quote = peek();
    if (!assigned || (quote != '"' && quote != '\'')) {
        throwMalformed({"an attribute has no value in quotes"});
    }
    const char* const begin = ++at_;
    at_ = kEndsPlainValue.findFirst(at_, end_);
    if (peek() != quote) {
        return resolveAttributeValue(begin, quote);
    }
    return {begin, static_cast<std::size_t>(at_++ - begin)};
}

/// Takes a value that holds more than plain characters (XML 1.0, 3.3.3).
std::string_view XmlReader::resolveAttributeValue(const char* begin, char quote) {
    std::string& value = resolvedValues_.emplace_front(begin, at_);
    for (char c = peek(); c != quote; c = peek()) {
        if (c == '<') {
            throwMalformed({"the value of an attribute holds '<'"});
        }
        if (c == '&') {
            resolveReferenceInValue(value);
        } else if (isXmlSpace(c)) {
            resolveLineEnd(' ', value);
        } else {
            value += *at_++; // the other quote
        }
        const char* const plain = at_;
        at_ = kEndsPlainValue.findFirst(at_, end_);
        value.append(plain, at_);
    }
    ++at_;
    return value;
}

inline void XmlReader::takeEndTag() {
    const std::string_view element = name();
    const std::size_t length = element.size() + 3;
    if (element.empty() || rest().size() < length || at_[length - 1] != '>' ||
        std::memcmp(at_ + 2, element.data(), element.size()) != 0) {
        return takeOtherEndTag();
    }
    at_ += length;
    --depth_;
}

/// An end tag that is malformed, incomplete, of another element, or holds white space.
void XmlReader::takeOtherEndTag() {
    at_ += 2;
    const std::string_view ended = takeName();
    skipSpace();
    if (peek() != '>') {
        throwMalformed({"the end tag of ", ended, " is malformed"});
    }
    if (name().empty()) {
        throwMalformed({"the end tag ", ended, " has no start tag"});
    }
    if (ended != name()) {
        throwMalformed({"the element ", name(), " ends with another tag: ", ended});
    }
    ++at_;
    --depth_;
}

/// Takes all up to the next tag, and returns the characters in it: references resolved, every line end a '\n' (XML 1.0,
/// 2.11).
std::string_view XmlReader::takeCharacters() {
    const char* const begin = skipPlainText();
    if (*at_ == '<' && isAtTag()) {
        return {begin, static_cast<std::size_t>(at_ - begin)};
    }
    resolvedText_.assign(begin, at_);
    do {
        resolveSpecial();
        const char* const plain = skipPlainText();
        resolvedText_.append(plain, at_);
    } while (*at_ != '<' || !isAtTag());
    return resolvedText_;
}

/// Skips characters that stand for themselves; returns where they begin. Something else follows them.
inline const char* XmlReader::skipPlainText() {
    const char* const begin = at_;
    at_ = findSpecial(at_, end_);
    if (at_ == end_) {
        throw EndOfText();
    }
    return begin;
}

/// Takes what is no plain text and no tag.
void XmlReader::resolveSpecial() {
    if (*at_ == '&') {
        resolveReferenceInText();
    } else if (*at_ == '\r') {
        resolveLineEnd('\n', resolvedText_);
    } else if (isNext(kCDataOpening)) {
        resolveCData();
    } else {
        skipMarkup();
    }
}

/// Takes a line end, or other white space that is not a blank.
void XmlReader::resolveLineEnd(char replacement, std::string& out) {
    at_ += isNext("\r\n") ? 2 : 1;
    out += replacement;
}

/// Resolves a reference in the value of an attribute. One that stands for no character makes the tag malformed, and is
/// not skipped.
void XmlReader::resolveReferenceInValue(std::string& out) {
    const char* const begin = at_;
    const std::uint32_t character = takeReference();
    if (!isAcceptedCharacter(character)) {
        at_ = begin;
        throwMalformed({badReferenceText(character)});
    }
    text::appendUtf8(character, out);
}

/// Resolves a reference in the text of an element. One that stands for no character makes only the text invalid, and is
/// skipped.
void XmlReader::resolveReferenceInText() {
    constexpr std::string_view kAmpersand = "&amp;"; // the most frequent one
    if (rest().substr(0, kAmpersand.size()) == kAmpersand) {
        at_ += kAmpersand.size();
        resolvedText_ += '&';
        return;
    }
    const std::uint32_t character = takeReference();
    if (isAcceptedCharacter(character)) {
        text::appendUtf8(character, resolvedText_);
    } else if (!skipsBadText_) {
        throwBadContent({badReferenceText(character)});
    }
}

std::uint32_t XmlReader::takeReference() {
    const std::string_view begin = rest().substr(0, kLongestReference);
    const std::size_t end = begin.find(';');
    if (end == std::string_view::npos) {
        if (begin.size() < kLongestReference) {
            throw EndOfText();
        }
        throwMalformed({"'&' begins no reference: ", begin});
    }
    const std::uint32_t character = characterOf(begin.substr(0, end + 1));
    at_ += end + 1;
    return character;
}

void XmlReader::resolveCData() {
    std::string_view data = takeBetween(kCDataOpening, "]]>");
    for (std::size_t end = data.find('\r'); end != std::string_view::npos; end = data.find('\r')) {
        resolvedText_.append(data.substr(0, end)) += '\n';
        data.remove_prefix(end + (data.substr(end, 2) == "\r\n" ? 2 : 1));
    }
    resolvedText_ += data;
}

} // namespace Pegasus::xml
