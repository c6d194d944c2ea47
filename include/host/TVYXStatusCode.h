#pragma once

#include <cstdint>

namespace NQORVYX20 {

/// How an operation ended.
class TVYXStatusCode {
  public:
    /// The codes of the object model. A host may have others of its own.
    enum EStatusCode : std::uint32_t {
        eSuccess = 0,                ///< all went well
        eNotSupported = 1,           ///< there is no such operation here
        eTypeMismatch = 14,          ///< a value has another type than is expected, or is not valid for its type
        eNotFound = 15,              ///< there is no element of that name or path
        eAlreadyExists = 16,         ///< there is an element of that name already
        eInvalidName = 25,           ///< the text is not a CIM name
        eQualifierConflict = 28,     ///< another qualifier of that name is there, and it may not be overridden
        eReadOnly = 31,              ///< the object cannot be changed
        eContextValueMissing = 32,   ///< the context lacks a value that the operation needs
        eRemoteConnectionFailed = 42 ///< the remote server cannot be read
    };

    explicit TVYXStatusCode(std::uint32_t code = eSuccess) : code_(code) {}

    std::uint32_t GetCode() const { return code_; }

    /// An English sentence that says what the code means. The text is static.
    const char* TranslateStatusCode() const noexcept;

  private:
    std::uint32_t code_;
};

} // namespace NQORVYX20
