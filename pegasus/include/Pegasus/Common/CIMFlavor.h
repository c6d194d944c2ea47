#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// The flavor of a qualifier, by which it is inherited by subclasses and instances: a set of bits.
class CIMFlavor {
  public:
    static const CIMFlavor NONE;
    static const CIMFlavor OVERRIDABLE;
    static const CIMFlavor ENABLEOVERRIDE; // another name for OVERRIDABLE
    static const CIMFlavor TOSUBCLASS;
    static const CIMFlavor TOINSTANCE;
    static const CIMFlavor TRANSLATABLE;
    static const CIMFlavor DISABLEOVERRIDE;
    static const CIMFlavor RESTRICTED;
    static const CIMFlavor DEFAULTS; // OVERRIDABLE and TOSUBCLASS

    constexpr CIMFlavor() noexcept = default;
    explicit constexpr CIMFlavor(Uint32 bits) noexcept : bits_(bits) {}

    void addFlavor(const CIMFlavor& flavor) noexcept { bits_ |= flavor.bits_; }
    void removeFlavor(const CIMFlavor& flavor) noexcept { bits_ &= ~flavor.bits_; }
    /// Whether all bits of `flavor` are set.
    Boolean hasFlavor(const CIMFlavor& flavor) const noexcept { return (bits_ & flavor.bits_) == flavor.bits_; }
    Boolean equal(const CIMFlavor& flavor) const noexcept { return bits_ == flavor.bits_; }

    /// The words of the set bits, separated by one blank, in the order OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE
    /// DISABLEOVERRIDE RESTRICTED.
    String toString() const;

    friend CIMFlavor operator+(CIMFlavor a, const CIMFlavor& b) noexcept {
        a.addFlavor(b);
        return a;
    }
    friend bool operator==(const CIMFlavor& a, const CIMFlavor& b) noexcept { return a.equal(b); }
    friend bool operator!=(const CIMFlavor& a, const CIMFlavor& b) noexcept { return !a.equal(b); }

  private:
    Uint32 bits_ = 0;
};

} // namespace bundled
} // namespace Pegasus
