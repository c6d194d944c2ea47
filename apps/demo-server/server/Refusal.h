#pragma once

#include <boost/beast/http/field.hpp>
#include <boost/beast/http/status.hpp>

#include <chrono>
#include <exception>
#include <string>
#include <utility>

namespace demo {

/// A request that is not carried out, for a reason that HTTP has a status for.
class Refusal : public std::exception {
  public:
    using Status = boost::beast::http::status;
    using Field = boost::beast::http::field;

    explicit Refusal(Status status) : status_(status) {}
    /// With a header that the status needs.
    Refusal(Status status, Field field, std::string value) : status_(status), field_(field), value_(std::move(value)) {}

    /// For what can be had a little later.
    static Refusal PutOff(Status status, std::chrono::milliseconds wait) {
        return {status, Field::retry_after, std::to_string(std::chrono::ceil<std::chrono::seconds>(wait).count())};
    }

    Status HttpStatus() const { return status_; }
    /// Field::unknown for none.
    Field HeaderField() const { return field_; }
    const std::string& HeaderValue() const { return value_; }

    const char* what() const noexcept override { return "the request is refused"; }

  private:
    Status status_;
    Field field_ = Field::unknown;
    std::string value_;
};

} // namespace demo
