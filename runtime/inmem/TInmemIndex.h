#pragma once

#include "host/ICIMPropertyDecl.h"
#include "host/TInmemInstance.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace NQORVYX20 {

/// Finds the slots of an instance by their declarations, whatever their number. It is small, since every instance with
/// more than a few values has one: a table of slot numbers, searched in order from a position that depends on the
/// declaration's address.
class TInmemInstance::TIndex {
  public:
    /// Enters the slots that have come since the last call.
    void Extend(const TSlots& slots);

    /// The declaration's slot, or null when it has none. All slots must have been entered.
    TSlot* Find(TSlots& slots, const ICIMPropertyDecl& declaration) const {
        for (std::size_t position = FirstPosition(declaration);; position = NextPosition(position)) {
            const std::uint32_t place = places_[position];
            if (place == kEmpty) {
                return nullptr;
            }
            TSlot& slot = slots[place];
            if (slot.declaration.get() == &declaration) {
                return &slot;
            }
        }
    }

  private:
    static constexpr std::uint32_t kEmpty = std::numeric_limits<std::uint32_t>::max();

    // Fibonacci hashing: the product's highest bits depend on all bits of the address.
    std::size_t FirstPosition(const ICIMPropertyDecl& declaration) const {
        constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
        const auto address = reinterpret_cast<std::uintptr_t>(&declaration);
        return static_cast<std::size_t>((address * kGoldenRatio) >> (64U - bits_));
    }
    std::size_t NextPosition(std::size_t position) const { return (position + 1) & (places_.size() - 1); }
    void Grow(std::size_t slotCount);
    void Enter(const TSlots& slots, std::size_t place);

    std::vector<std::uint32_t> places_; // a power of two of them, a quarter at least empty
    unsigned int bits_ = 0;             // the logarithm of their number
    std::size_t entered_ = 0;
};

} // namespace NQORVYX20
