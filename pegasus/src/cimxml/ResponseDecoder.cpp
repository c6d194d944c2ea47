#include "cimxml/ResponseDecoder.h"

#include "cimxml/ErrorLocation.h"
#include "cimxml/Findings.h"
#include "cimxml/Limits.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/ScalarDecoder.h"
#include "errors/Marked.h"
#include "model/ServerError.h"
#include "text/Utf8.h"
#include "xml/DecodingError.h"
#include "xml/InputText.h"
#include "xml/XmlCharacters.h"
#include "xml/XmlReader.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace Pegasus::cimxml {

using xml::EndOfText;
using xml::InputText;
using xml::kLongestExcerpt;
using xml::throwBadContent;
using xml::throwMalformed;
using xml::throwPastLimit;
using xml::trimmed;
using xml::withoutByteOrderMark;

namespace {

[[noreturn]] void throwForeign(std::string_view what, std::string_view got, std::string_view expected) {
    std::string message = "the server answers another request: ";
    message.append(what).append(" \"").append(got).append("\" instead of \"").append(expected).append("\"");
    throw CIMClientResponseException(String(std::string_view(message)));
}

/// What other operations return. An element that is not even among these is no CIM-XML.
bool isOtherReturnValue(std::string_view elementName) {
    constexpr std::array<std::string_view, 4> kOthers = {"VALUE.ARRAY", "VALUE.REFERENCE", "VALUE.REFARRAY",
                                                         "VALUE.NAMEDOBJECT"};
    return std::find(kOthers.begin(), kOthers.end(), elementName) != kOthers.end();
}

bool isValue(std::string_view elementName) {
    constexpr std::array<std::string_view, 4> kValues = {"VALUE", "VALUE.ARRAY", "VALUE.REFERENCE", "VALUE.REFARRAY"};
    return std::find(kValues.begin(), kValues.end(), elementName) != kValues.end();
}

/// Adds the instance of CIM_Error in an INSTANCE element to an error. One that cannot be read is left out: the error is
/// what counts.
void addInstance(CIMException& error, ObjectDecoder& objects, XmlReader& reader) {
    const std::size_t outside = reader.depth() - 1;
    try {
        error.addError(objects.decodeInstance(reader));
    } catch (const DecodingError& bad) {
        if (bad.kind != DecodingError::Kind::Content && bad.kind != DecodingError::Kind::Incomplete) {
            throw;
        }
        reader.skipTo(outside);
    }
}

/// The server's error in an ERROR element.
CIMException decodeError(ObjectDecoder& objects, XmlReader& reader) {
    const auto code = decodeScalar<Uint32>(reader.attributes().get("CODE"));
    if (code == CIM_ERR_SUCCESS) {
        throwBadContent({"it reports an error with the code 0"});
    }
    const String description(reader.attributes().find("DESCRIPTION").value_or(std::string_view()));
    CIMException error = detail::serverError(code, description);
    while (reader.nextElement()) {
        if (reader.name() == "INSTANCE") {
            addInstance(error, objects, reader);
        } else {
            reader.skip();
        }
    }
    return error;
}

/// What a body is that does not begin with an element.
std::string_view kindOf(std::string_view body) {
    return body.front() == '{' || body.front() == '[' ? "it is JSON, or another text, and not XML"
                                                      : "it is a text and not XML";
}

/// The elements around the objects of an answer, from the outermost to the innermost. Each comes once.
constexpr std::array<std::string_view, 5> kEnvelope = {"CIM", "MESSAGE", "SIMPLERSP", "IMETHODRESPONSE",
                                                       "IRETURNVALUE"};
constexpr std::size_t kInMethodResponse = 4;
constexpr std::size_t kInReturnValue = 5;

} // namespace

class ResponseDecoder::Impl {
  public:
    Impl(std::string messageId, std::string method, ReturnValueSink& sink, std::shared_ptr<ObjectDecoder> objects,
         const ClientLimits& limits, const Checkpoint* checkpoint, Findings* findings)
        : messageId_(std::move(messageId)),
          method_(std::move(method)),
          sink_(sink),
          findings_(findings),
          input_(findings != nullptr),
          objects_(std::move(objects)),
          limits_(limits),
          reader_(objects_->tags(), checkpoint) {
        objects_->startAnswer(checkpoint, findings != nullptr);
    }

    void feed(std::string_view chunk) {
        explaining([&] { take(chunk); });
    }

    void finish() {
        explaining([&] { takeEnd(); });
        if (error_) {
            throw CIMException(*error_);
        }
    }

    Uint64 bytes() const noexcept { return bytes_; }

  private:
    void take(std::string_view chunk) {
        bytes_ += chunk.size();
        if (bytes_ > limits_.answerBytes) {
            throwPastLimit({"it has more than ", std::to_string(limits_.answerBytes), " bytes"});
        }
        input_.append(chunk);
        if (input_.unread().size() >= enough_ || input_.endsBadly()) {
            readOn();
        }
    }

    void takeEnd() {
        input_.end();
        readOn();
        reading_ = false;
        if (bytes_ == 0) {
            throwBadContent({"its body is empty"});
        }
        if (atStart_ || level_ != 0 || !input_.isEmpty()) {
            throwMalformed({"it ends in the middle of the document"});
        }
        if (nextLevel_ < kInMethodResponse) {
            throwBadContent({"it has no ", kEnvelope[nextLevel_]});
        }
    }

    /// Turns what decoding throws into what the API throws.
    template <class Work>
    void explaining(Work work) {
        try {
            work();
        } catch (const DecodingError& error) {
            const String message(explain(error));
            if (error.kind == DecodingError::Kind::Limit) {
                throw errors::Marked<CIMClientXmlException, ExceedsLimit>(message);
            }
            throw CIMClientXmlException(message);
        }
    }

    /// What is wrong, in which object and element of it, and where in the body.
    std::string explain(const DecodingError& error) const {
        const std::string_view text = input_.unread();
        std::size_t at = text.size();
        if (reading_) {
            at = error.kind == DecodingError::Kind::Content ? reader_.tagPosition() : reader_.position();
        }
        const std::string_view upTo = text.substr(0, reading_ ? reader_.position() : text.size());
        const auto place = std::make_unique<ErrorLocation>(upTo, parent());
        place->goTo(at);
        std::string message = "the server's answer is not good CIM-XML: " + error.what + place->text();
        if (bytes_ != 0) {
            message += ", at byte " + std::to_string(input_.offsetOf(at));
        }
        if (const std::string_view there = text::beginningOf(text.substr(at), kLongestExcerpt);
            !error.value && !there.empty()) {
            message.append(": ").append(there);
        }
        return message;
    }

    /// The element of the envelope in which the unread text begins.
    std::string_view parent() const { return level_ == 0 ? std::string_view() : kEnvelope[level_ - 1]; }

    /// Reads all that is complete. What is not has to be read again from its beginning, so that is put off until there
    /// is twice as much of it: however small the pieces are in which an object arrives, it is read only a few times.
    void readOn() {
        enough_ = 0;
        try {
            while (readNext()) {
            }
        } catch (const EndOfText&) {
            const std::size_t waiting = input_.unread().size();
            if (!inObject_) {
                checkFrame(waiting);
            }
            if (waiting >= kMaxObjectBytes) {
                throwPastLimit({"one object is larger than ", std::to_string(kMaxObjectBytes >> 20U), " MiB"});
            }
            enough_ = std::min(2 * waiting, kMaxObjectBytes);
        }
        if (input_.endsBadly()) {
            reading_ = false;
            throwMalformed({input_.badEnd()});
        }
    }

    /// Reads a tag of the envelope, or one element within it. False when there is nothing but white space.
    bool readNext() {
        skipByteOrderMark();
        inObject_ = false;
        reading_ = true;
        reader_.start(input_.unread().substr(0, kMaxObjectBytes), parent());
        const XmlReader::Ahead ahead = reader_.ahead();
        const std::size_t between = reader_.position();
        inObject_ = ahead == XmlReader::Ahead::Element && level_ == kInReturnValue;
        hasReported_ = false;
        objectBegin_ = between;
        if (ahead == XmlReader::Ahead::Text) {
            if (takesNullsAt(reader_.position())) {
                return true;
            }
            throwText();
        }
        if (ahead == XmlReader::Ahead::EndTag) {
            leaveEnvelope();
        } else if (ahead == XmlReader::Ahead::Element) {
            readElement();
        }
        if (inObject_) {
            countObject(between);
        } else {
            countFrame(reader_.position());
        }
        if (!hasReported_) {
            reportRepairs(inObject_ ? between : reader_.position());
        }
        input_.take(reader_.position());
        reading_ = false;
        return ahead != XmlReader::Ahead::Nothing || (isBehindDocument() && input_.takeNulls());
    }

    bool isBehindDocument() const { return level_ == 0 && nextLevel_ != 0; }

    /// Takes the replacements of null characters in a repaired text, after the document, from a position on.
    bool takesNullsAt(std::size_t position) {
        if (!isBehindDocument() || !InputText::isReplaced(input_.unread().substr(position))) {
            return false;
        }
        countFrame(position);
        input_.take(position);
        reading_ = false;
        return input_.takeNulls();
    }

    [[noreturn]] void throwText() const {
        if (isBehindDocument()) {
            throwMalformed({"there is text between the elements, behind the end of the document"});
        }
        if (level_ == 0) {
            throwMalformed({kindOf(input_.unread().substr(reader_.position()))});
        }
        throwMalformed({"there is text between the elements"});
    }

    void countFrame(std::size_t length) {
        checkFrame(length);
        frameBytes_ += length;
    }

    /// Limits what belongs to no object, from one object to the next.
    void checkFrame(std::size_t length) const {
        if (frameBytes_ + length > limits_.frameBytes) {
            throwPastLimit({"more than ", std::to_string(limits_.frameBytes), " bytes in a row belong to no object"});
        }
    }

    /// Counts an object, and what stood before it.
    void countObject(std::size_t between) {
        countFrame(between);
        if (++objectCount_ > limits_.answerObjects) {
            throwPastLimit({"it has more than ", std::to_string(limits_.answerObjects), " objects"});
        }
        frameBytes_ = 0;
    }

    void skipByteOrderMark() {
        const std::string_view unread = input_.unread();
        if (!atStart_ || unread.empty()) {
            return;
        }
        input_.take(unread.size() - withoutByteOrderMark(unread).size());
        atStart_ = false;
    }

    void leaveEnvelope() {
        reader_.nextElement();
        --level_;
    }

    void readElement() {
        reader_.nextElement();
        if (isEnvelope(reader_.name())) {
            enterEnvelope();
        } else if (reader_.name() == "CORRELATOR") {
            reader_.skip(); // for programs that relate messages to each other
        } else if (level_ == kInReturnValue) {
            deliver(reader_.name());
        } else if (reader_.name() == "ERROR") {
            readError();
        } else if (reader_.name() == "PARAMVALUE") {
            takeOutputParameter();
        } else {
            throwBadContent(
                {"the element ", reader_.name(), " does not belong into ", kEnvelope[kInMethodResponse - 1]});
        }
    }

    /// The first one counts.
    void readError() {
        objects_->startObject();
        const CIMException error = decodeError(*objects_, reader_);
        reportFindings();
        if (!error_) {
            error_.emplace(error);
        }
    }

    /// Whether an element that begins here is the next one of the envelope, and not an element that it holds.
    bool isEnvelope(std::string_view name) const {
        if (level_ == nextLevel_ && level_ < kEnvelope.size() && name == kEnvelope[level_]) {
            return true;
        }
        if (level_ == kInMethodResponse - 1 && name == "METHODRESPONSE") {
            throw CIMClientResponseException(
                "the server answers another request: a METHODRESPONSE is for extrinsic methods");
        }
        if (level_ < kInMethodResponse && name != "CORRELATOR") {
            throwBadContent({"the element ", name, " stands where ",
                             level_ == nextLevel_ ? kEnvelope[level_] : std::string_view("nothing more"),
                             " is expected"});
        }
        return false;
    }

    void enterEnvelope() {
        if (reader_.name() == "MESSAGE") {
            if (const auto id = trimmed(reader_.attributes().get("ID")); id != trimmed(messageId_)) {
                throwForeign("message ID", id, messageId_);
            }
        } else if (reader_.name() == "IMETHODRESPONSE") {
            if (const auto name = trimmed(reader_.attributes().get("NAME")); name != trimmed(method_)) {
                throwForeign("method", name, method_);
            }
        }
        nextLevel_ = level_ + 1;
        level_ += reader_.tag().isEmpty ? 0 : 1;
    }

    void deliver(std::string_view name) {
        objects_->startObject();
        if (name == "VALUE.NAMEDINSTANCE" || name == "VALUE.INSTANCEWITHPATH") {
            const CIMInstance instance = objects_->decodeInstanceWithPath(reader_);
            reportFindings(instance.getClassName(), instance.getPath());
            sink_.onInstance(instance);
        } else if (name == "INSTANCE") {
            const CIMInstance instance = objects_->decodeInstance(reader_);
            reportFindings(instance.getClassName());
            sink_.onInstanceAlone(instance);
        } else if (name == "CLASS") {
            const CIMClass cimClass = objects_->decodeClass(reader_);
            reportFindings(cimClass.getClassName());
            sink_.onClass(cimClass);
        } else if (name == "VALUE.OBJECTWITHPATH" || name == "VALUE.OBJECTWITHLOCALPATH" || name == "VALUE.OBJECT") {
            const CIMObject object = objects_->decodeObject(reader_);
            reportFindings(object.getClassName(), object.getPath());
            sink_.onObject(object);
        } else if (name == "INSTANCENAME") {
            const CIMObjectPath path = objects_->decodeInstanceName(reader_);
            reportFindings();
            sink_.onInstanceName(path);
        } else if (name == "OBJECTPATH") {
            const CIMObjectPath path = objects_->decodeObjectPath(reader_);
            reportFindings();
            sink_.onObjectPath(path);
        } else if (name == "CLASSNAME") {
            const CIMName className = objects_->decodeClassName(reader_);
            reportFindings();
            sink_.onClassName(className);
        } else if (name == "QUALIFIER.DECLARATION") {
            const CIMQualifierDecl declaration = objects_->decodeQualifierDecl(reader_);
            reportFindings();
            sink_.onQualifierDecl(declaration);
        } else if (name == "INSTANCEPATH") {
            const CIMObjectPath path = objects_->decodeInstanceName(reader_);
            reportFindings();
            sink_.onInstancePath(path);
        } else if (sink_.takesValues() && isValue(name)) {
            const CIMValue value = objects_->decodeUntypedValue(reader_);
            reportFindings();
            sink_.onValue(value);
        } else if (name == "VALUE") {
            const String text(reader_.text());
            reportFindings();
            sink_.onValueText(text);
        } else {
            refuse(name);
        }
    }

    /// Passes on the findings in the object that was decoded last. This comes before the sink gets it, since that may
    /// end the decoding.
    void reportFindings(const CIMName& className = CIMName(), const CIMObjectPath& path = CIMObjectPath()) {
        if (objects_->findings().count() != 0) {
            addFindings(className, path);
        }
        if (inObject_) {
            reportRepairs(objectBegin_);
        }
    }

    void addFindings(const CIMName& className, const CIMObjectPath& path) {
        const ObjectFindings& found = objects_->findings();
        const String pathText = path.getClassName().isNull() ? String() : cut(path.toString().view());
        for (const auto& finding : found.first()) {
            findings_->add({finding.kind, className.getString(), pathText, String(finding.element),
                            String(finding.text), String(finding.reason), input_.offsetOf(finding.position)});
        }
        for (const auto kind : {LenientFinding::UNREADABLE_VALUE, LenientFinding::DOUBLED_PROPERTY}) {
            findings_->addMore(kind, found.countOfOthers(kind));
        }
    }

    static String cut(std::string_view text) {
        constexpr std::size_t kLongest = 4096;
        return String(text::beginningOf(text, kLongest));
    }

    /// Passes on which elements held bytes that had to be repaired, in the text that has just been read, in which an
    /// object begins at `object`. Text after the document does not count. The findings do not depend on how the answer
    /// was cut.
    void reportRepairs(std::size_t object) {
        hasReported_ = true;
        const auto& repairs = input_.repairs();
        const bool hasSome = !repairs.empty() && input_.positionOf(repairs.front()) < reader_.position();
        if (hasSome && !isBehindDocument()) {
            addRepairs(object, reader_.position());
        }
    }

    void addRepairs(std::size_t object, std::size_t length) {
        const std::string_view text = input_.unread().substr(0, length);
        const auto place = std::make_unique<ErrorLocation>(text, parent());
        std::optional<std::string> last; // of the object
        for (const auto& repair : input_.repairs()) {
            const std::size_t at = input_.positionOf(repair);
            if (at >= length) {
                break;
            }
            place->goTo(at);
            const bool isInObject = at >= object;
            const std::string_view excerpt =
                isInObject ? excerptAround(at - object, text.substr(object)) : markupAround(at, text);
            std::string element = place->element();
            if (!isInObject || element != last) {
                findings_->add({LenientFinding::FOREIGN_BYTES, cut(place->className()), cut(place->path()),
                                String(element), String(excerpt), String(InputText::textOf(repair)),
                                input_.offsetOf(at)});
            }
            if (isInObject) {
                last = std::move(element);
            }
        }
    }

    /// A little of a text before and after a position.
    static std::string_view excerptAround(std::size_t at, std::string_view text) {
        const std::string_view before = text::beginningOf(text, at - std::min(at, kLongestExcerpt / 2));
        return text::beginningOf(text.substr(before.size()), kLongestExcerpt);
    }

    /// A little of the tag or comment that a position is in, before and after the position.
    static std::string_view markupAround(std::size_t at, std::string_view text) {
        const std::size_t begin = std::min(text.rfind('<', at), at);
        const std::size_t end = std::min(text.find('>', at), text.size() - 1) + 1;
        return excerptAround(at - begin, text.substr(begin, end - begin));
    }

    /// Its type is known to whoever asked for it; servers leave PARAMTYPE out, or call it TYPE.
    void takeOutputParameter() {
        const String name(reader_.attributes().find("NAME").value_or(std::string_view()));
        std::optional<String> text;
        std::optional<CIMClass> cimClass;
        objects_->startObject();
        while (reader_.nextElement()) {
            if (reader_.name() == "VALUE") {
                text.emplace(reader_.text());
            } else if (reader_.name() == "CLASS") {
                cimClass.emplace(objects_->decodeClass(reader_));
            } else {
                reader_.skip();
            }
        }
        if (cimClass) {
            reportFindings(cimClass->getClassName());
        }
        if (text) {
            sink_.onOutputText(name, *text);
        }
        if (cimClass) {
            sink_.onOutputClass(name, *cimClass);
        }
    }

    [[noreturn]] void refuse(std::string_view name) {
        reader_.skip();
        if (isOtherReturnValue(name)) {
            ReturnValueSink::throwUnexpected(name);
        }
        throwBadContent({"the element ", name, " does not belong into IRETURNVALUE"});
    }

    const std::string messageId_;
    const std::string method_;
    ReturnValueSink& sink_;
    Findings* const findings_; // null: the reading is strict
    InputText input_;
    std::size_t enough_ = 0; // how much must be unread for another attempt
    bool atStart_ = true;
    std::size_t level_ = 0;     // the elements of the envelope that are open
    std::size_t nextLevel_ = 0; // the one that may open next
    const std::shared_ptr<ObjectDecoder> objects_;
    const ClientLimits limits_;
    Uint64 bytes_ = 0;
    Uint64 objectCount_ = 0;
    Uint64 frameBytes_ = 0; // since the last object
    bool inObject_ = false; // what is read now belongs to one
    std::size_t objectBegin_ = 0;
    bool hasReported_ = false; // what was repaired in what is read now
    bool reading_ = false;     // what is wrong is where the reader is, not at the end of the unread text
    XmlReader reader_;
    std::optional<CIMException> error_;
};

ResponseDecoder::ResponseDecoder(std::string messageId, std::string method, ReturnValueSink& sink,
                                 std::shared_ptr<ObjectDecoder> objects, const ClientLimits& limits,
                                 const Checkpoint* checkpoint, Findings* findings)
    : impl_(std::make_unique<Impl>(std::move(messageId), std::move(method), sink,
                                   objects ? std::move(objects) : std::make_shared<ObjectDecoder>(), limits, checkpoint,
                                   findings)) {}

ResponseDecoder::~ResponseDecoder() = default;

void ResponseDecoder::feed(std::string_view chunk) { impl_->feed(chunk); }

void ResponseDecoder::finish() { impl_->finish(); }

Uint64 ResponseDecoder::bytes() const noexcept { return impl_->bytes(); }

} // namespace Pegasus::cimxml
