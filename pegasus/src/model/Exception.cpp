#include <Pegasus/Common/Exception.h>

#include <string>

namespace Pegasus {

namespace {

std::string codeName(CIMStatusCode code) {
    const char* name = cimStatusCodeToString(code);
    return name ? std::string(name) : "CIM error " + std::to_string(static_cast<int>(code));
}

String withCodeName(CIMStatusCode code, const String& description) {
    const std::string prefix = codeName(code) + ": ";
    if (description.view().substr(0, prefix.size()) == prefix)
        return description;
    return String(std::string_view(prefix)) + description;
}

String quoted(const char* before, const String& text) { return String(before) + String(" \"") + text + String("\""); }

} // namespace

Exception::~Exception() = default;

CIMException::CIMException(CIMStatusCode code, const String& description)
    : Exception(withCodeName(code, description)), code_(code) {}

UninitializedObjectException::UninitializedObjectException() : Exception("the object is not initialised") {}

IndexOutOfBoundsException::IndexOutOfBoundsException() : Exception("the index is out of bounds") {}

TypeMismatchException::TypeMismatchException(const String& message) : Exception(message) {}

DynamicCastFailedException::DynamicCastFailedException(const String& message) : Exception(message) {}

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

} // namespace Pegasus
