#include "TInmemIndex.h"

namespace NQORVYX20 {

void TInmemInstance::TIndex::Extend(const TSlots& slots) {
    if (slots.size() * 4 > places_.size() * 3) {
        Grow(slots.capacity());
    }
    for (; entered_ < slots.size(); ++entered_) {
        Enter(slots, entered_);
    }
}

void TInmemInstance::TIndex::Grow(std::size_t slotCount) {
    while (slotCount * 4 > (std::size_t{1} << bits_) * 3) {
        ++bits_;
    }
    places_.assign(std::size_t{1} << bits_, kEmpty);
    entered_ = 0;
}

void TInmemInstance::TIndex::Enter(const TSlots& slots, std::size_t place) {
    std::size_t position = FirstPosition(*slots[place].declaration);
    while (places_[position] != kEmpty) {
        position = NextPosition(position);
    }
    places_[position] = static_cast<std::uint32_t>(place);
}

} // namespace NQORVYX20
