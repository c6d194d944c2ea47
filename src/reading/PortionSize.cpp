#include "reading/PortionSize.h"

#include <algorithm>

namespace NQORVYX20 {

void PortionSize::Took(std::uint32_t count, std::chrono::nanoseconds time) {
    if (count < next_) {
        return;
    }
    const std::uint64_t most = std::min<std::uint64_t>(most_, std::uint64_t{next_} * kGrowth);
    const auto nanoseconds = std::max<std::chrono::nanoseconds::rep>(time.count(), 1);
    const double fitting = static_cast<double>(count) * static_cast<double>(std::chrono::nanoseconds(kTime).count()) /
                           static_cast<double>(nanoseconds);
    next_ = static_cast<std::uint32_t>(std::clamp(fitting, 1.0, static_cast<double>(most)));
}

} // namespace NQORVYX20
