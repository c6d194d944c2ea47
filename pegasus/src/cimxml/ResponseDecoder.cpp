#include "cimxml/ResponseDecoder.h"

#include "cimxml/ObjectDecoder.h"
#include "cimxml/ObjectFramer.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlTree.h"
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
bool isOtherReturnValue(XmlElement element) {
    constexpr std::array<std::string_view, 6> kOthers = {"INSTANCEPATH",    "VALUE",          "VALUE.ARRAY",
                                                         "VALUE.REFERENCE", "VALUE.REFARRAY", "VALUE.NAMEDOBJECT"};
    return std::find(kOthers.begin(), kOthers.end(), element.name()) != kOthers.end();
}

/// The server's error in an ERROR element.
CIMException decodeError(XmlElement element) {
    const Attributes attributes(element);
    const auto code = decodeScalar<Uint32>(attributes.get("CODE"));
    if (code == CIM_ERR_SUCCESS)
        throwXmlError({"it reports an error with the code 0"});
    const auto description = attributes.find("DESCRIPTION");
    return detail::serverError(code, String(description.value_or(std::string_view())));
}

} // namespace

void ReturnValueSink::onClass(const CIMClass&) { throwUnexpectedObject("a class"); }
void ReturnValueSink::onInstance(const CIMInstance&) { throwUnexpectedObject("an instance"); }
void ReturnValueSink::onObject(const CIMObject&) { throwUnexpectedObject("a class or an instance of an association"); }
void ReturnValueSink::onClassName(const CIMName&) { throwUnexpectedObject("a class name"); }
void ReturnValueSink::onInstanceName(const CIMObjectPath&) { throwUnexpectedObject("an instance name"); }
void ReturnValueSink::onObjectPath(const CIMObjectPath&) { throwUnexpectedObject("an object path"); }
void ReturnValueSink::onQualifierDecl(const CIMQualifierDecl&) { throwUnexpectedObject("a qualifier declaration"); }

class ResponseDecoder::Impl : private ObjectFramer::Handler {
  public:
    Impl(std::string messageId, std::string method, ReturnValueSink& sink)
        : messageId_(std::move(messageId)), method_(std::move(method)), sink_(sink) {}

    void feed(std::string_view chunk) { framer_.feed(chunk); }

    void finish() const {
        framer_.finish();
        if (error_)
            throw CIMException(*error_);
    }

  private:
    void onEnvelope(ElementText& tag) override {
        const auto element = tree_.parse(tag);
        if (isNamed(element, "MESSAGE")) {
            if (const auto id = Attributes(element).get("ID"); id != messageId_)
                throwForeign("message ID", id, messageId_);
        } else if (isNamed(element, "IMETHODRESPONSE")) {
            if (const auto name = Attributes(element).get("NAME"); name != method_)
                throwForeign("method", name, method_);
        }
    }

    void onElement(ElementText& text, bool inReturnValue) override {
        const auto element = tree_.parse(text);
        if (inReturnValue)
            deliver(element);
        else if (isNamed(element, "ERROR"))
            error_.emplace(decodeError(element));
        else if (!isNamed(element, "PARAMVALUE"))
            throwUnexpectedInResponse(element);
    }

    void deliver(XmlElement element) {
        if (isNamed(element, "VALUE.NAMEDINSTANCE") || isNamed(element, "VALUE.INSTANCEWITHPATH"))
            sink_.onInstance(objects_.decodeInstanceWithPath(element));
        else if (isNamed(element, "INSTANCE"))
            sink_.onInstance(objects_.decodeInstance(element));
        else if (isNamed(element, "CLASS"))
            sink_.onClass(objects_.decodeClass(element));
        else if (isNamed(element, "VALUE.OBJECTWITHPATH") || isNamed(element, "VALUE.OBJECTWITHLOCALPATH") ||
                 isNamed(element, "VALUE.OBJECT"))
            sink_.onObject(objects_.decodeObject(element));
        else if (isNamed(element, "INSTANCENAME"))
            sink_.onInstanceName(objects_.decodeInstanceName(element));
        else if (isNamed(element, "OBJECTPATH"))
            sink_.onObjectPath(objects_.decodeObjectPath(element));
        else if (isNamed(element, "CLASSNAME"))
            sink_.onClassName(objects_.decodeClassName(element));
        else if (isNamed(element, "QUALIFIER.DECLARATION"))
            sink_.onQualifierDecl(objects_.decodeQualifierDecl(element));
        else if (isOtherReturnValue(element))
            throwUnexpectedObject(element.name());
        else
            throwXmlError({"the element ", element.name(), " does not belong into IRETURNVALUE"});
    }

    [[noreturn]] static void throwUnexpectedInResponse(XmlElement element) {
        throwXmlError({"the element ", element.name(), " does not belong into IMETHODRESPONSE"});
    }

    const std::string messageId_;
    const std::string method_;
    ReturnValueSink& sink_;
    ObjectFramer framer_{*this};
    XmlTree tree_;
    ObjectDecoder objects_;
    std::optional<CIMException> error_;
};

ResponseDecoder::ResponseDecoder(std::string messageId, std::string method, ReturnValueSink& sink)
    : impl_(std::make_unique<Impl>(std::move(messageId), std::move(method), sink)) {}

ResponseDecoder::~ResponseDecoder() = default;

void ResponseDecoder::feed(std::string_view chunk) { impl_->feed(chunk); }

void ResponseDecoder::finish() { impl_->finish(); }

} // namespace Pegasus::cimxml
