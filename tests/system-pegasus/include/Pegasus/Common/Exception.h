#pragma once

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMConstInstance;

class Exception {
  public:
    explicit Exception(const String& message);
    Exception(const Exception& other);
    virtual ~Exception();
    Exception& operator=(const Exception& other);

    virtual const String& getMessage() const;
    ContentLanguageList getContentLanguages() const;
    void setContentLanguages(const ContentLanguageList& languages);

  private:
    void* rep_;
};

class CIMException : public Exception {
  public:
    CIMException(CIMStatusCode code, const String& message);
    CIMException(const CIMException& other);
    ~CIMException();
    CIMException& operator=(const CIMException& other);

    CIMStatusCode getCode() const;
    Uint32 getErrorCount() const;
    CIMConstInstance getError(Uint32 index) const;
};

// The library makes these itself.
// clang-format off
class NullPointer : public Exception { NullPointer(); };
class AlreadyExistsException : public Exception { AlreadyExistsException(); };
class UninitializedObjectException : public Exception { UninitializedObjectException(); };
class IndexOutOfBoundsException : public Exception { IndexOutOfBoundsException(); };
class TypeMismatchException : public Exception { TypeMismatchException(); };
class DynamicCastFailedException : public Exception { DynamicCastFailedException(); };
class InvalidNameException : public Exception { InvalidNameException(); };
class InvalidNamespaceNameException : public Exception { InvalidNamespaceNameException(); };
class InvalidDateTimeFormatException : public Exception { InvalidDateTimeFormatException(); };
class DateTimeOutOfRangeException : public Exception { DateTimeOutOfRangeException(); };
class MalformedObjectNameException : public Exception { MalformedObjectNameException(); };
class CannotConnectException : public Exception { CannotConnectException(); };
class InvalidLocatorException : public Exception { InvalidLocatorException(); };
class AlreadyConnectedException : public Exception { AlreadyConnectedException(); };
class NotConnectedException : public Exception { NotConnectedException(); };
class ConnectionTimeoutException : public Exception { ConnectionTimeoutException(); };
class SSLException : public Exception { SSLException(); };
// clang-format on

} // namespace Pegasus
