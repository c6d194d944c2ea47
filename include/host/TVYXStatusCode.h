#pragma once

#include <cstdint>

namespace NQORVYX20 {

/// The numeric status of an operation; 0 is success. The codes:
///
///  0 success                              25 invalid CIM name
///  1 operation not supported              28 qualifier conflict
/// 14 type mismatch                        31 operation refused: the object is read-only
/// 15 element not found                    32 required context value missing
/// 16 element already exists               42 remote connection failed
class TVYXStatusCode {
  public:
    explicit TVYXStatusCode(std::uint32_t code = 0) : code_(code) {}

    std::uint32_t GetCode() const { return code_; }

    /// An English sentence that says what the code means. The text is static.
    const char* TranslateStatusCode() const noexcept;

  private:
    std::uint32_t code_;
};

} // namespace NQORVYX20
