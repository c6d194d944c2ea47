#include "TInmemIndex.h"

#include <limits>

#include "host/ICIMPropertyDecl.h"

namespace NQORVYX20 {

namespace {

constexpr std::uint32_t kEmpty = std::numeric_limits<std::uint32_t>::max();

} // namespace

void TInmemInstance::TIndex::Extend(const TSlots& slots) {
    if (slots.size() * 4 > fPlaces.size() * 3)
        Grow(slots.capacity());
    for (; fEntered < slots.size(); ++fEntered)
        Enter(slots, fEntered);
}

void TInmemInstance::TIndex::Grow(std::size_t slotCount) {
    while (slotCount * 4 > (std::size_t{1} << fBits) * 3)
        ++fBits;
    fPlaces.assign(std::size_t{1} << fBits, kEmpty);
    fEntered = 0;
}

void TInmemInstance::TIndex::Enter(const TSlots& slots, std::size_t place) {
    std::size_t position = FirstPosition(*slots[place].declaration);
    while (fPlaces[position] != kEmpty)
        position = NextPosition(position);
    fPlaces[position] = static_cast<std::uint32_t>(place);
}

TInmemInstance::TSlot* TInmemInstance::TIndex::Find(TSlots& slots, const ICIMPropertyDecl& declaration) const {
    std::size_t position = FirstPosition(declaration);
    for (; fPlaces[position] != kEmpty; position = NextPosition(position)) {
        TSlot& slot = slots[fPlaces[position]];
        if (slot.declaration.get() == &declaration)
            return &slot;
    }
    return nullptr;
}

// Fibonacci hashing: the product's highest bits depend on all bits of the address.
std::size_t TInmemInstance::TIndex::FirstPosition(const ICIMPropertyDecl& declaration) const {
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
    const auto address = reinterpret_cast<std::uintptr_t>(&declaration);
    return static_cast<std::size_t>((address * kGoldenRatio) >> (64U - fBits));
}

} // namespace NQORVYX20
