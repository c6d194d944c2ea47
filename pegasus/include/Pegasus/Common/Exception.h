#pragma once

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {
inline namespace bundled {

class CIMInstance;
class ContentLanguageList;

/// The base of all errors of the client API. Not derived from std::exception.
class Exception {
  public:
    explicit Exception(const String& message) : message_(message) {}
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception();

    virtual const String& getMessage() const noexcept { return message_; }

    /// The languages that the message is in, as far as the server says. (ContentLanguageList.h)
    const ContentLanguageList& getContentLanguages() const noexcept;
    void setContentLanguages(const ContentLanguageList& languages);

  private:
    String message_;
    std::shared_ptr<const ContentLanguageList> languages_; // null: none
};

/// An error that the server reports for an operation. The message is the code's name, a colon, a blank and the server's
/// description, from which the name is removed where it begins with it. An operation of the client adds the server and
/// the operation: see RefusedByServer in Pegasus/Client/FailureMarks.h.
class CIMException : public Exception {
  public:
    explicit CIMException(CIMStatusCode code, const String& description = String());

    CIMStatusCode getCode() const noexcept { return code_; }

    /// The instances of CIM_Error, or of subclasses of it, that the server sends with its error. (CIMInstance.h)
    Uint32 getErrorCount() const noexcept;
    /// Throws IndexOutOfBoundsException.
    CIMInstance getError(Uint32 index) const;
    void addError(const CIMInstance& instance);

  protected:
    /// A message that is used as it is.
    struct WholeMessage {
        String text;
    };
    CIMException(CIMStatusCode code, const WholeMessage& message);

  private:
    struct Errors;

    CIMStatusCode code_;
    std::shared_ptr<const Errors> errors_; // null: none
};

/// A null pointer was given where a text is asked for.
class NullPointer : public Exception {
  public:
    NullPointer();
};

/// An object has a property, method, parameter or qualifier of that name already.
class AlreadyExistsException : public Exception {
  public:
    explicit AlreadyExistsException(const String& message);
};

/// A default-constructed handle was used.
class UninitializedObjectException : public Exception {
  public:
    UninitializedObjectException();
};

/// An index is not below the number of elements.
class IndexOutOfBoundsException : public Exception {
  public:
    IndexOutOfBoundsException();
};

/// A value was asked for as another type than its own.
class TypeMismatchException : public Exception {
  public:
    explicit TypeMismatchException(const String& message = "the value has another type");
};

/// An object is a class where an instance is asked for, or the other way round.
class DynamicCastFailedException : public Exception {
  public:
    explicit DynamicCastFailedException(const String& message = "the object is of another kind");
};

/// An instance lacks a property, or the property its value.
class NoSuchPropertyException : public Exception {
  public:
    explicit NoSuchPropertyException(const String& message);
};

class InvalidNameException : public Exception {
  public:
    explicit InvalidNameException(const String& name);
};

class InvalidNamespaceNameException : public Exception {
  public:
    explicit InvalidNamespaceNameException(const String& name);
};

/// A date-time is not 25 characters of the right form.
class InvalidDateTimeFormatException : public Exception {
  public:
    explicit InvalidDateTimeFormatException(const String& text = String());
};

/// A date-time has the right form, but a field with an impossible number.
class DateTimeOutOfRangeException : public Exception {
  public:
    explicit DateTimeOutOfRangeException(const String& message);
};

/// A text is not the text form of an object path.
class MalformedObjectNameException : public Exception {
  public:
    explicit MalformedObjectNameException(const String& text);
};

/// Nothing listens at the address, or the peer closed before the connection was usable.
class CannotConnectException : public Exception {
  public:
    using Exception::Exception;
};

/// A host cannot be resolved to an address.
class InvalidLocatorException : public Exception {
  public:
    using Exception::Exception;
};

class AlreadyConnectedException : public Exception {
  public:
    AlreadyConnectedException();
};

class NotConnectedException : public Exception {
  public:
    NotConnectedException();
};

/// An operation took longer than the client's time-out.
class ConnectionTimeoutException : public Exception {
  public:
    explicit ConnectionTimeoutException(const String& message = "the server did not answer within the time-out");
};

/// TLS could not be set up: settings that cannot be used, a certificate that was refused, a failed handshake.
class SSLException : public Exception {
  public:
    using Exception::Exception;
};

} // namespace bundled
} // namespace Pegasus
