#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace demo {

/// The status codes of DSP0200 that this server answers with.
enum class CimStatus {
    kFailed = 1,
    kInvalidNamespace = 3,
    kInvalidParameter = 4,
    kInvalidClass = 5,
    kNotFound = 6,
    kNotSupported = 7,
    kNoSuchProperty = 12,
    kInvalidEnumerationContext = 21,
    kInvalidOperationTimeout = 22,
    kPullCannotBeAbandoned = 24,
    kFilteredEnumerationNotSupported = 25,
    kContinuationOnErrorNotSupported = 26,
    kServerLimitsExceeded = 27,
};

/// An operation that fails with a CIM status.
class CimError : public std::runtime_error {
  public:
    /// The text begins with the symbolic name of the status, as in "CIM_ERR_NOT_FOUND: detail".
    CimError(CimStatus status, std::string_view detail);

    CimStatus Status() const { return status_; }
    /// The status as the number of the wire.
    std::string Code() const { return std::to_string(static_cast<int>(status_)); }

  private:
    CimStatus status_;
};

/// A request that is no CIM operation that the server can read: it is answered on the level of HTTP (DSP0200,
/// CIMError).
class HttpError : public std::runtime_error {
  public:
    HttpError(int httpStatus, std::string cimError, const std::string& detail)
        : std::runtime_error(detail), httpStatus_(httpStatus), cimError_(std::move(cimError)) {}

    int HttpStatus() const { return httpStatus_; }
    /// The value of the header CIMError.
    const std::string& CimErrorValue() const { return cimError_; }

  private:
    int httpStatus_;
    std::string cimError_;
};

} // namespace demo
