#include "monitoring/ThresholdRange.h"

#include "text/ParsedText.h"

#include <cmath>

namespace cimhttp {

std::optional<ThresholdRange> ThresholdRange::In(const std::string& text) {
    ThresholdRange range;
    range.text_ = text;
    range.alertsWithin_ = !text.empty() && text.front() == '@';
    const std::string limits = text.substr(range.alertsWithin_ ? 1 : 0);
    const std::size_t colon = limits.find(':');
    const std::string low = colon == std::string::npos ? "" : limits.substr(0, colon);
    const std::string high = colon == std::string::npos ? limits : limits.substr(colon + 1);
    if (low != "~") {
        range.lowest_ = low.empty() ? Limit{0, {}} : LimitIn(low);
        if (!range.lowest_) {
            return std::nullopt;
        }
    }
    const bool isOpen = high.empty() && colon != std::string::npos && !low.empty();
    if (!isOpen) {
        range.highest_ = LimitIn(high);
        if (!range.highest_) {
            return std::nullopt;
        }
    }
    if (range.lowest_ && range.highest_ && range.lowest_->unit.empty()) {
        range.lowest_->unit = range.highest_->unit;
    }
    return range.IsInOrder() ? std::optional<ThresholdRange>(range) : std::nullopt;
}

/// A number, perhaps with a unit behind it and a blank between them.
std::optional<ThresholdRange::Limit> ThresholdRange::LimitIn(const std::string& text) {
    const std::size_t end = std::min(text.find_first_not_of("+-.0123456789"), text.size());
    const auto number = NumberIn<long double>(text.substr(0, end));
    if (!number || !std::isfinite(*number)) {
        return std::nullopt;
    }
    const std::string unit = text.substr(std::min(text.find_first_not_of(' ', end), text.size()));
    const bool isUnit = unit.find_first_of("0123456789") == std::string::npos; // no exponent
    return isUnit ? std::optional<Limit>({*number, unit}) : std::nullopt;
}

/// Limits in units that cannot be compared are not, whatever the property's unit is.
bool ThresholdRange::IsInOrder() const {
    if (!lowest_ || !highest_) {
        return true;
    }
    if (lowest_->unit == highest_->unit) {
        return lowest_->number <= highest_->number;
    }
    const UnitScale low = UnitScale::Of(lowest_->unit);
    const UnitScale high = UnitScale::Of(highest_->unit);
    return highest_->unit.empty() ||
           (low.base == high.base && low.InBase(lowest_->number) <= high.InBase(highest_->number));
}

std::optional<long double> ThresholdRange::InBase(const Limit& limit, const UnitScale& unit) {
    if (limit.unit.empty()) {
        return unit.InBase(limit.number);
    }
    const UnitScale own = UnitScale::Of(limit.unit);
    return own.base == unit.base ? std::optional<long double>(own.InBase(limit.number)) : std::nullopt;
}

std::optional<bool> ThresholdRange::Alerts(const Quantity& quantity) const {
    bool isWithin = true;
    for (const auto& [limit, isLowest] : {std::pair(lowest_, true), std::pair(highest_, false)}) {
        if (!limit) {
            continue;
        }
        const auto number = InBase(*limit, quantity.unit);
        if (!number) {
            return std::nullopt;
        }
        isWithin = isWithin && (isLowest ? *number <= quantity.InBase() : quantity.InBase() <= *number);
    }
    return isWithin == alertsWithin_;
}

std::string ThresholdRange::PerformanceText(const Quantity& quantity) const {
    const auto text = [&](const std::optional<Limit>& limit) {
        const auto number = limit ? InBase(*limit, quantity.unit) : std::nullopt;
        return number ? NumberText(*number) : std::string();
    };
    const std::string low = lowest_ ? text(lowest_) : "~";
    const std::string begin = low == "0" && highest_ ? "" : low + ':';
    return (alertsWithin_ ? "@" : "") + begin + text(highest_);
}

} // namespace cimhttp
