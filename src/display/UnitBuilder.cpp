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
    return fAbove.size() == 1 && fAbove.front()->name == above &&
           (below == nullptr ? fBelow.empty() : fBelow.size() == 1 && fBelow.front()->name == below);
}

bool UnitBuilder::IsTime() const { return fAbove.size() == 1 && fBelow.empty() && fAbove.front()->seconds != 0; }

std::optional<Unit> UnitBuilder::Build() const {
    if (fAbove.empty()) {
        return std::nullopt;
    }
    if (IsTime()) {
        return TimeUnit();
    }
    const bool isWord = fAbove.size() == 1 && fBelow.empty() && !fAbove.front()->singular.empty();
    const std::string symbol = Symbol();
    return Unit{symbol, isWord ? std::string(fAbove.front()->singular) : symbol, fScale, StepsOf()};
}

/// Sizes go by 1024 unless the unit itself counts in thousands; rates go by 1000 unless it counts in 1024s.
Unit::Steps UnitBuilder::StepsOf() const {
    if (!fAbove.front()->hasPrefixes || (IsOne("bit", nullptr) && fScale.IsOne())) {
        return Unit::Steps::kNone;
    }
    const bool isBinary = fScale.two != 0 || (IsOne("byte", nullptr) && fScale.ten == 0);
    return isBinary ? Unit::Steps::kBinary : Unit::Steps::kDecimal;
}

Unit UnitBuilder::TimeUnit() const {
    Unit unit{"s", "s", fScale, Unit::Steps::kTime};
    unit.scale.factor *= fAbove.front()->seconds;
    return unit;
}

std::string UnitBuilder::Symbol() const {
    if (IsOne("count", nullptr)) {
        return {};
    }
    if (IsOne("revolution", "minute")) {
        return "rpm";
    }
    if (fAbove.size() == 2 && fBelow.empty() && fAbove[1]->name == "hour") {
        return std::string(fAbove[0]->symbol) + 'h';
    }
    if (fAbove.size() == 2 && fBelow.empty() && fAbove[0]->name == "volt" && fAbove[1]->name == "ampere") {
        return "VA";
    }
    if (fBelow.empty()) {
        return Product(fAbove);
    }
    const std::string below = Product(fBelow);
    const std::string above = Product(fAbove);
    return (above.empty() ? "1" : above) + '/' + (fBelow.size() > 1 ? '(' + below + ')' : below);
}

} // namespace NQORVYX20
