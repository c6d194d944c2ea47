#include "monitoring/Threshold.h"

#include "Failure.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TCIMContext.h"

namespace cimhttp {

Threshold::Threshold(const std::string& text)
    : text_(text), condition_(text), isEquation_(text[PropertyName().size()] == '=') {
    if (isEquation_) {
        operand_ = text.substr(PropertyName().size() + 1);
        range_ = ThresholdRange::In(operand_);
    }
}

bool Threshold::WantsRange(const NQORVYX20::ICIMPropertyDecl& property) const {
    if (!isEquation_ || operand_.empty() || !HasNumbers(property)) {
        return false;
    }
    const bool looksLikeRange = operand_.front() == '@' || operand_.find(':') != std::string::npos;
    return looksLikeRange || !HasValueMap(property);
}

void Threshold::Check(const NQORVYX20::ICIMPropertyDecl& property) const {
    if (WantsRange(property) && !range_ && !HasValueMap(property)) {
        throw Failure(Failure::kUsage, "'" + operand_ + "' is no range for the numbers of " +
                                           property.GetName(NQORVYX20::TCIMContext()) +
                                           ": give one such as 10, 10:, ~:10, 10:20 or @10:20, also with a unit");
    }
    condition_.Check(property);
}

const ThresholdRange* Threshold::RangeFor(const NQORVYX20::ICIMPropertyDecl& property) const {
    return range_ && WantsRange(property) ? &*range_ : nullptr;
}

} // namespace cimhttp
