#pragma once

#include <Pegasus/Common/Exception.h>

namespace Pegasus {
inline namespace bundled {

/// The answer is not HTTP, or not the HTTP of a CIM operation.
class CIMClientMalformedHTTPException : public Exception {
  public:
    using Exception::Exception;
};

/// The server answered with an HTTP status other than 200.
class CIMClientHTTPErrorException : public Exception {
  public:
    /// `cimError` and `cimErrorDetail` are the decoded CIMError and PGErrorDetail headers, empty where absent.
    CIMClientHTTPErrorException(Uint32 code, const String& reason, const String& cimError = String(),
                                const String& cimErrorDetail = String());

    /// The HTTP status.
    Uint32 getCode() const noexcept { return code_; }
    const String& getCIMError() const noexcept { return cimError_; }
    const String& getCIMErrorDetail() const noexcept { return cimErrorDetail_; }

  private:
    Uint32 code_;
    String cimError_;
    String cimErrorDetail_;
};

/// The answer's body is not well-formed XML, not CIM-XML, holds an impossible value, or passes a limit.
class CIMClientXmlException : public Exception {
  public:
    using Exception::Exception;
};

/// There is not enough memory for the operation. What it had allocated is freed, and the connection is closed; the
/// client can be used further. An ExceedsLimit, too (FailureMarks.h).
class OutOfMemoryException : public Exception {
  public:
    using Exception::Exception;
};

/// The answer belongs to another request, or does not hold what the operation returns, but other objects, too many, or
/// none.
class CIMClientResponseException : public Exception {
  public:
    using Exception::Exception;
};

} // namespace bundled
} // namespace Pegasus
