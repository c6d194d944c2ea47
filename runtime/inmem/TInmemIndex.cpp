#include "TInmemIndex.h"

namespace NQORVYX20 {

void TInmemInstance::TIndex::Grow(std::size_t slotCount) {
    while (slotCount * 4 > (std::size_t{1} << bits_) * 3) {
        ++bits_;
    }
    places_.assign(std::size_t{1} << bits_, kEmpty);
    entered_ = 0;
}

} // namespace NQORVYX20
