#pragma once

#include "host/TVYXStatusCode.h"

#include <exception>

namespace NQORVYX20 {

/// The exception of the object model. It carries a status code and nothing else; what an operation has to say about a
/// failure beyond that goes to the core logger before it throws.
class TVYXException : public std::exception {
  public:
    explicit TVYXException(TVYXStatusCode status) : status_(status) {}
    explicit TVYXException(std::uint32_t code) : status_(code) {}

    TVYXStatusCode GetStatusCode() const { return status_; }

    /// The text of TVYXStatusCode::TranslateStatusCode().
    const char* what() const noexcept override;

  private:
    TVYXStatusCode status_;
};

} // namespace NQORVYX20
