#pragma once

#include <cstdint>
#include <string>

namespace NQORVYX20 {

/// One UTF-16 code unit, the CIM type char16.
class TCIMChar16 {
  public:
    /// Takes the code as decimal digits: "65" is the letter A.
    /// Throws TVYXException eTypeMismatch for anything but digits, and for a code above 65535.
    explicit TCIMChar16(const std::string& decimalCode);

    std::uint16_t GetCode() const { return code_; }

    /// The character as UTF-8. Half of a surrogate pair reads as the replacement character U+FFFD.
    std::string ToString() const;

  private:
    std::uint16_t code_;
};

inline bool operator==(const TCIMChar16& left, const TCIMChar16& right) { return left.GetCode() == right.GetCode(); }
inline bool operator!=(const TCIMChar16& left, const TCIMChar16& right) { return !(left == right); }
inline bool operator<(const TCIMChar16& left, const TCIMChar16& right) { return left.GetCode() < right.GetCode(); }

} // namespace NQORVYX20
