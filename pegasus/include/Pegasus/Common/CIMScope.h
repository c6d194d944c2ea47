#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// The scope of a qualifier, the kinds of elements that may have it: a set of bits.
class CIMScope {
  public:
    static const CIMScope NONE;
    static const CIMScope CLASS;
    static const CIMScope ASSOCIATION;
    static const CIMScope INDICATION;
    static const CIMScope PROPERTY;
    static const CIMScope REFERENCE;
    static const CIMScope METHOD;
    static const CIMScope PARAMETER;
    static const CIMScope ANY; // all seven

    constexpr CIMScope() noexcept = default;
    explicit constexpr CIMScope(Uint32 bits) noexcept : bits_(bits) {}

    void addScope(const CIMScope& scope) noexcept { bits_ |= scope.bits_; }
    /// Whether all bits of `scope` are set.
    Boolean hasScope(const CIMScope& scope) const noexcept { return (bits_ & scope.bits_) == scope.bits_; }
    Boolean equal(const CIMScope& scope) const noexcept { return bits_ == scope.bits_; }

    /// The words of the set bits, separated by one blank, in the order CLASS ASSOCIATION INDICATION PROPERTY REFERENCE
    /// METHOD PARAMETER.
    String toString() const;

    friend CIMScope operator+(CIMScope a, const CIMScope& b) noexcept {
        a.addScope(b);
        return a;
    }
    friend bool operator==(const CIMScope& a, const CIMScope& b) noexcept { return a.equal(b); }
    friend bool operator!=(const CIMScope& a, const CIMScope& b) noexcept { return !a.equal(b); }

  private:
    Uint32 bits_ = 0;
};

} // namespace bundled
} // namespace Pegasus
