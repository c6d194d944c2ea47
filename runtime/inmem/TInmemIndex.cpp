#include "TInmemIndex.h"

namespace NQORVYX20 {

void TInmemInstance::TIndex::Extend(const TSlots& slots) {
    if (slots.size() * 4 > fPlaces.size() * 3) {
        Grow(slots.capacity());
    }
    for (; fEntered < slots.size(); ++fEntered) {
        Enter(slots, fEntered);
    }
}

void TInmemInstance::TIndex::Grow(std::size_t slotCount) {
    while (slotCount * 4 > (std::size_t{1} << fBits) * 3) {
        ++fBits;
    }
    fPlaces.assign(std::size_t{1} << fBits, kEmpty);
    fEntered = 0;
}

void TInmemInstance::TIndex::Enter(const TSlots& slots, std::size_t place) {
    std::size_t position = FirstPosition(*slots[place].declaration);
    while (fPlaces[position] != kEmpty) {
        position = NextPosition(position);
    }
    fPlaces[position] = static_cast<std::uint32_t>(place);
}

} // namespace NQORVYX20
