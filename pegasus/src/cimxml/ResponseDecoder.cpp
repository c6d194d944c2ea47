#include "cimxml/ResponseDecoder.h"

#include "cimxml/InputText.h"
#include "cimxml/Limits.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlReader.h"
#include "model/ServerError.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace Pegasus::cimxml {

namespace {

[[noreturn]] void throwForeign(std::string_view what, std::string_view got, std::string_view expected) {
    std::string message = "the server answers another request: ";
    message.append(what).append(" \"").append(got).append("\" instead of \"").append(expected).append("\"");
    throw CIMClientResponseException(String(std::string_view(message)));
}

[[noreturn]] void throwUnexpectedObject(std::string_view kind) {
    const std::string message =
        "the server's answer holds " + std::string(kind) + ", which the operation does not return";
    throw CIMClientResponseException(String(std::string_view(message)));
}

/// What other operations return. An element that is not even among these is no CIM-XML.
bool isOtherReturnValue(std::string_view elementName) {
    constexpr std::array<std::string_view, 4> kOthers = {"VALUE.ARRAY", "VALUE.REFERENCE", "VALUE.REFARRAY",
                                                         "VALUE.NAMEDOBJECT"};
    return std::find(kOthers.begin(), kOthers.end(), elementName) != kOthers.end();
}

/// The server's error in an ERROR element.
CIMException decodeError(XmlReader& reader) {
    const auto code = decodeScalar<Uint32>(reader.attributes().get("CODE"));
    if (code == CIM_ERR_SUCCESS)
        throwXmlError({"it reports an error with the code 0"});
    const String description(reader.attributes().find("DESCRIPTION").value_or(std::string_view()));
    reader.skip();
    return detail::serverError(code, description);
}

/// The elements around the objects of an answer, from the outermost to the innermost. Each comes once.
constexpr std::array<std::string_view, 5> kEnvelope = {"CIM", "MESSAGE", "SIMPLERSP", "IMETHODRESPONSE",
                                                       "IRETURNVALUE"};
constexpr std::size_t kInMethodResponse = 4;
constexpr std::size_t kInReturnValue = 5;

} // namespace

void ReturnValueSink::onClass(const CIMClass&) { throwUnexpectedObject("a class"); }
void ReturnValueSink::onInstance(const CIMInstance&) { throwUnexpectedObject("an instance"); }
void ReturnValueSink::onObject(const CIMObject&) { throwUnexpectedObject("a class or an instance of an association"); }
void ReturnValueSink::onClassName(const CIMName&) { throwUnexpectedObject("a class name"); }
void ReturnValueSink::onInstanceName(const CIMObjectPath&) { throwUnexpectedObject("an instance name"); }
void ReturnValueSink::onObjectPath(const CIMObjectPath&) { throwUnexpectedObject("an object path"); }
void ReturnValueSink::onQualifierDecl(const CIMQualifierDecl&) { throwUnexpectedObject("a qualifier declaration"); }
void ReturnValueSink::onInstancePath(const CIMObjectPath&) { throwUnexpectedObject("INSTANCEPATH"); }
void ReturnValueSink::onValueText(const String&) { throwUnexpectedObject("VALUE"); }

class ResponseDecoder::Impl {
  public:
    Impl(std::string messageId, std::string method, ReturnValueSink& sink, std::shared_ptr<ObjectDecoder> objects,
         const ClientLimits& limits, const Checkpoint* checkpoint)
        : messageId_(std::move(messageId)),
          method_(std::move(method)),
          sink_(sink),
          objects_(std::move(objects)),
          limits_(limits),
          reader_(objects_->tags(), checkpoint) {
        objects_->startAnswer(checkpoint);
    }

    void feed(std::string_view chunk) {
        bytes_ += chunk.size();
        if (bytes_ > limits_.answerBytes)
            throwPastLimit({"it has more than ", std::to_string(limits_.answerBytes), " bytes"});
        input_.append(chunk);
        if (input_.unread().size() >= enough_ || input_.endsBadly())
            readOn();
    }

    void finish() {
        readOn();
        if (atStart_ || level_ != 0 || !input_.isEmpty())
            throwXmlError({"it ends in the middle of the document"});
        if (nextLevel_ < kInMethodResponse)
            throwXmlError({"it has no ", kEnvelope[nextLevel_]});
        if (error_)
            throw CIMException(*error_);
    }

    Uint64 bytes() const noexcept { return bytes_; }

  private:
    /// Reads all that is complete. What is not has to be read again from its beginning, so that is put off until there
    /// is twice as much of it: however small the pieces are in which an object arrives, it is read but a few times.
    void readOn() {
        enough_ = 0;
        try {
            while (readNext()) {
            }
        } catch (const EndOfText&) {
            const std::size_t waiting = input_.unread().size();
            if (!inObject_)
                checkFrame(waiting);
            if (waiting >= kMaxObjectBytes)
                throwPastLimit({"one object is larger than ", std::to_string(kMaxObjectBytes >> 20U), " MiB"});
            enough_ = std::min(2 * waiting, kMaxObjectBytes);
        }
        if (input_.endsBadly())
            throwXmlError({"it is not UTF-8, or holds characters that XML does not allow"});
    }

    /// Reads a tag of the envelope, or one element within it. False when there is nothing but white space.
    bool readNext() {
        skipByteOrderMark();
        inObject_ = false;
        reader_.start(input_.unread().substr(0, kMaxObjectBytes),
                      level_ == 0 ? std::string_view() : kEnvelope[level_ - 1]);
        const XmlReader::Ahead ahead = reader_.ahead();
        const std::size_t between = reader_.position();
        inObject_ = ahead == XmlReader::Ahead::Element && level_ == kInReturnValue;
        if (ahead == XmlReader::Ahead::Text)
            throwXmlError({"there is text between the elements"});
        if (ahead == XmlReader::Ahead::EndTag)
            leaveEnvelope();
        else if (ahead == XmlReader::Ahead::Element)
            readElement();
        if (inObject_)
            countObject(between);
        else
            countFrame(reader_.position());
        input_.take(reader_.position());
        return ahead != XmlReader::Ahead::Nothing;
    }

    void countFrame(std::size_t length) {
        checkFrame(length);
        frameBytes_ += length;
    }

    /// Sees to it that what belongs to no object stays short, from one object to the next.
    void checkFrame(std::size_t length) const {
        if (frameBytes_ + length > limits_.frameBytes)
            throwPastLimit({"more than ", std::to_string(limits_.frameBytes), " bytes in a row belong to no object"});
    }

    /// Counts an object, and what stood before it.
    void countObject(std::size_t between) {
        countFrame(between);
        if (++objectCount_ > limits_.answerObjects)
            throwPastLimit({"it has more than ", std::to_string(limits_.answerObjects), " objects"});
        frameBytes_ = 0;
    }

    void skipByteOrderMark() {
        const std::string_view unread = input_.unread();
        if (!atStart_ || unread.empty())
            return;
        input_.take(unread.size() - withoutByteOrderMark(unread).size());
        atStart_ = false;
    }

    void leaveEnvelope() {
        reader_.nextElement();
        --level_;
    }

    void readElement() {
        reader_.nextElement();
        if (isEnvelope(reader_.name()))
            enterEnvelope();
        else if (level_ == kInReturnValue)
            deliver(reader_.name());
        else if (reader_.name() == "ERROR")
            error_.emplace(decodeError(reader_));
        else if (reader_.name() == "PARAMVALUE")
            takeOutputParameter();
        else
            throwXmlError({"the element ", reader_.name(), " does not belong into ", kEnvelope[kInMethodResponse - 1]});
    }

    /// Whether an element that begins here is the next one of the envelope, and not an element that it holds.
    bool isEnvelope(std::string_view name) const {
        if (level_ == nextLevel_ && level_ < kEnvelope.size() && name == kEnvelope[level_])
            return true;
        if (level_ == kInMethodResponse - 1 && name == "METHODRESPONSE")
            throw CIMClientResponseException(
                "the server answers another request: a METHODRESPONSE is for extrinsic methods");
        if (level_ < kInMethodResponse)
            throwXmlError({"the element ", name, " stands where ",
                           level_ == nextLevel_ ? kEnvelope[level_] : std::string_view("nothing more"),
                           " is expected"});
        return false;
    }

    void enterEnvelope() {
        if (reader_.name() == "MESSAGE") {
            if (const auto id = reader_.attributes().get("ID"); id != messageId_)
                throwForeign("message ID", id, messageId_);
        } else if (reader_.name() == "IMETHODRESPONSE") {
            if (const auto name = reader_.attributes().get("NAME"); name != method_)
                throwForeign("method", name, method_);
        }
        nextLevel_ = level_ + 1;
        level_ += reader_.tag().isEmpty ? 0 : 1;
    }

    void deliver(std::string_view name) {
        if (name == "VALUE.NAMEDINSTANCE" || name == "VALUE.INSTANCEWITHPATH")
            sink_.onInstance(objects_->decodeInstanceWithPath(reader_));
        else if (name == "INSTANCE")
            sink_.onInstance(objects_->decodeInstance(reader_));
        else if (name == "CLASS")
            sink_.onClass(objects_->decodeClass(reader_));
        else if (name == "VALUE.OBJECTWITHPATH" || name == "VALUE.OBJECTWITHLOCALPATH" || name == "VALUE.OBJECT")
            sink_.onObject(objects_->decodeObject(reader_));
        else if (name == "INSTANCENAME")
            sink_.onInstanceName(objects_->decodeInstanceName(reader_));
        else if (name == "OBJECTPATH")
            sink_.onObjectPath(objects_->decodeObjectPath(reader_));
        else if (name == "CLASSNAME")
            sink_.onClassName(objects_->decodeClassName(reader_));
        else if (name == "QUALIFIER.DECLARATION")
            sink_.onQualifierDecl(objects_->decodeQualifierDecl(reader_));
        else if (name == "INSTANCEPATH")
            sink_.onInstancePath(objects_->decodeInstanceName(reader_));
        else if (name == "VALUE")
            sink_.onValueText(String(reader_.text()));
        else
            refuse(name);
    }

    /// Its type is known to whoever asked for it; servers leave PARAMTYPE out, or call it TYPE.
    void takeOutputParameter() {
        const String name(reader_.attributes().find("NAME").value_or(std::string_view()));
        std::optional<String> text;
        std::optional<CIMClass> cimClass;
        while (reader_.nextElement()) {
            if (reader_.name() == "VALUE")
                text.emplace(reader_.text());
            else if (reader_.name() == "CLASS")
                cimClass.emplace(objects_->decodeClass(reader_));
            else
                reader_.skip();
        }
        if (text)
            sink_.onOutputText(name, *text);
        if (cimClass)
            sink_.onOutputClass(name, *cimClass);
    }

    [[noreturn]] void refuse(std::string_view name) {
        reader_.skip();
        if (isOtherReturnValue(name))
            throwUnexpectedObject(name);
        throwXmlError({"the element ", name, " does not belong into IRETURNVALUE"});
    }

    const std::string messageId_;
    const std::string method_;
    ReturnValueSink& sink_;
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
    XmlReader reader_;
    std::optional<CIMException> error_;
};

ResponseDecoder::ResponseDecoder(std::string messageId, std::string method, ReturnValueSink& sink,
                                 std::shared_ptr<ObjectDecoder> objects, const ClientLimits& limits,
                                 const Checkpoint* checkpoint)
    : impl_(std::make_unique<Impl>(std::move(messageId), std::move(method), sink,
                                   objects ? std::move(objects) : std::make_shared<ObjectDecoder>(), limits,
                                   checkpoint)) {}

ResponseDecoder::~ResponseDecoder() = default;

void ResponseDecoder::feed(std::string_view chunk) { impl_->feed(chunk); }

void ResponseDecoder::finish() { impl_->finish(); }

Uint64 ResponseDecoder::bytes() const noexcept { return impl_->bytes(); }

} // namespace Pegasus::cimxml
