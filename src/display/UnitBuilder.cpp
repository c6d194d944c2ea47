#include "display/UnitBuilder.h"

namespace NQORVYX20 {

namespace {

/// A product: `VA`, `m²`, `N·m`.
std::string Product(const std::vector<const BaseUnit*>& units) {
    std::string product;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool isSquare = i + 1 < units.size() && units[i + 1] == units[i];
        const bool isCube = isSquare && i + 2 < units.size() && units[i + 2] == units[i];
        product.append(product.empty() ? "" : "·").append(units[i]->symbol);
        product.append(isCube ? "³" : isSquare ? "²" : "");
        i += isCube ? 2 : isSquare ? 1 : 0;
    }
    return product;
}

} // namespace

bool UnitBuilder::IsOne(const char* above, const char* below) const {
    return above_.size() == 1 && above_.front()->name == above &&
           (below == nullptr ? below_.empty() : below_.size() == 1 && below_.front()->name == below);
}

bool UnitBuilder::IsTime() const { return above_.size() == 1 && below_.empty() && above_.front()->seconds != 0; }

std::optional<Unit> UnitBuilder::Build() const {
    if (above_.empty()) {
        return std::nullopt;
    }
    if (IsTime()) {
        return TimeUnit();
    }
    const bool isWord = above_.size() == 1 && below_.empty() && !above_.front()->singular.empty();
    const std::string symbol = Symbol();
    return Unit{symbol, isWord ? std::string(above_.front()->singular) : symbol, scale_, StepsOf()};
}

/// Sizes go by 1024 unless the unit itself counts in thousands; rates go by 1000 unless it counts in 1024s.
Unit::Steps UnitBuilder::StepsOf() const {
    if (!above_.front()->hasPrefixes || (IsOne("bit", nullptr) && scale_.IsOne())) {
        return Unit::Steps::kNone;
    }
    const bool isBinary = scale_.two != 0 || (IsOne("byte", nullptr) && scale_.ten == 0);
    return isBinary ? Unit::Steps::kBinary : Unit::Steps::kDecimal;
}

Unit UnitBuilder::TimeUnit() const {
    Unit unit{"s", "s", scale_, Unit::Steps::kTime};
    unit.scale.factor *= above_.front()->seconds;
    return unit;
}

std::string UnitBuilder::Symbol() const {
    if (IsOne("count", nullptr)) {
        return {};
    }
    if (IsOne("revolution", "minute")) {
        return "rpm";
    }
    if (above_.size() == 2 && below_.empty() && above_[1]->name == "hour") {
        return std::string(above_[0]->symbol) + 'h';
    }
    if (above_.size() == 2 && below_.empty() && above_[0]->name == "volt" && above_[1]->name == "ampere") {
        return "VA";
    }
    if (below_.empty()) {
        return Product(above_);
    }
    const std::string below = Product(below_);
    const std::string above = Product(above_);
    return (above.empty() ? "1" : above) + '/' + (below_.size() > 1 ? '(' + below + ')' : below);
}

} // namespace NQORVYX20
