#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

std::string codeName(CIMStatusCode code) {
    const char* name = cimStatusCodeToString(code);
    return name ? std::string(name) : "CIM error " + std::to_string(static_cast<int>(code));
}

/// The rest of a text after a word and its separator; the whole text where it does not begin with them.
std::string_view behindWord(std::string_view text, std::string_view word) {
    if (text.substr(0, word.size()) != word) {
        return text;
    }
    const std::string_view rest = text.substr(word.size());
    if (!rest.empty() && rest.front() != ':' && rest.front() != ' ') {
        return text;
    }
    return rest.substr(std::min(rest.find_first_not_of(": "), rest.size()));
}

String withCodeName(CIMStatusCode code, const String& description) {
    const std::string name = codeName(code);
    const std::string_view text = behindWord(description.view(), name);
    return String(name + ": " + std::string(text.empty() ? "nothing more is said" : text));
}

String quoted(const char* before, const String& text) { return String(before) + String(" \"") + text + String("\""); }

} // namespace

Exception::~Exception() = default;

const ContentLanguageList& Exception::getContentLanguages() const noexcept {
    static const ContentLanguageList kNone;
    return languages_ ? *languages_ : kNone;
}

void Exception::setContentLanguages(const ContentLanguageList& languages) {
    languages_ = std::make_shared<const ContentLanguageList>(languages);
}

struct CIMException::Errors {
    Array<CIMInstance> instances;
};

CIMException::CIMException(CIMStatusCode code, const String& description)
    : Exception(withCodeName(code, description)), code_(code) {}

CIMException::CIMException(CIMStatusCode code, const WholeMessage& message) : Exception(message.text), code_(code) {}

Uint32 CIMException::getErrorCount() const noexcept { return errors_ ? errors_->instances.size() : 0; }

CIMInstance CIMException::getError(Uint32 index) const {
    if (!errors_) {
        throw IndexOutOfBoundsException();
    }
    return errors_->instances[index];
}

void CIMException::addError(const CIMInstance& instance) {
    // An exception that was copied keeps its own; else many are added in no more time than they take.
    const auto errors = errors_.use_count() == 1 ? std::const_pointer_cast<Errors>(errors_)
                                                 : std::make_shared<Errors>(errors_ ? *errors_ : Errors());
    errors->instances.append(instance);
    errors_ = errors;
}

NullPointer::NullPointer() : Exception("a null pointer was given for a text") {}

AlreadyExistsException::AlreadyExistsException(const String& message) : Exception(message) {}

UninitializedObjectException::UninitializedObjectException() : Exception("the object is not initialised") {}

IndexOutOfBoundsException::IndexOutOfBoundsException() : Exception("the index is out of bounds") {}

TypeMismatchException::TypeMismatchException(const String& message) : Exception(message) {}

DynamicCastFailedException::DynamicCastFailedException(const String& message) : Exception(message) {}

NoSuchPropertyException::NoSuchPropertyException(const String& message) : Exception(message) {}

InvalidNameException::InvalidNameException(const String& name) : Exception(quoted("not a CIM name:", name)) {}

InvalidNamespaceNameException::InvalidNamespaceNameException(const String& name)
    : Exception(quoted("not a CIM namespace name:", name)) {}

InvalidDateTimeFormatException::InvalidDateTimeFormatException(const String& text)
    : Exception(quoted("not the text of a CIM datetime:", text)) {}

DateTimeOutOfRangeException::DateTimeOutOfRangeException(const String& message) : Exception(message) {}

MalformedObjectNameException::MalformedObjectNameException(const String& text)
    : Exception(quoted("not an object path:", text)) {}

AlreadyConnectedException::AlreadyConnectedException() : Exception("the client is already connected") {}

NotConnectedException::NotConnectedException() : Exception("the client is not connected") {}

ConnectionTimeoutException::ConnectionTimeoutException(const String& message) : Exception(message) {}

} // namespace bundled
} // namespace Pegasus
