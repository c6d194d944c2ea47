#include "monitoring/PerformanceData.h"

#include "monitoring/StatusText.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kMostNumbers = 1000;
constexpr std::size_t kLabelWidth = 100;

std::string LabelText(const std::string& text) {
    std::string label = StatusText(text, kLabelWidth);
    const auto isForbidden = [](char letter) { return letter == '\'' || letter == '='; };
    std::replace_if(label.begin(), label.end(), isForbidden, '_');
    return label;
}

std::string UnitOf(const PerformanceData::Number& number) {
    if (number.isCounter) {
        return "c";
    }
    const std::string& base = number.quantity.unit.base;
    return base == "s" || base == "%" || base == "B" ? base : "";
}

std::string NumberAndLimits(const PerformanceData::Number& number) {
    std::string text =
        NumberText(number.quantity.InBase()) + UnitOf(number) + ';' + number.warning + ';' + number.critical;
    return text.substr(0, text.find_last_not_of(';') + 1);
}

} // namespace

void PerformanceData::Add(Number number) {
    ++count_;
    if (numbers_.size() < kMostNumbers) {
        numbers_.push_back(std::move(number));
    }
}

std::string PerformanceData::Text() const {
    std::map<std::string, std::size_t> counts;
    for (const Number& number : numbers_) {
        ++counts[LabelText(number.label)];
    }
    std::set<std::string> taken;
    std::string text;
    for (const Number& number : numbers_) {
        std::string label = LabelText(number.label);
        if (counts[label] > 1) {
            label = LabelText(number.label + " of " + number.identity);
        }
        const std::string base = label;
        for (std::size_t copy = 2; !taken.insert(label).second; ++copy) {
            label = base + '#' + std::to_string(copy);
        }
        text.append(text.empty() ? "'" : " '").append(label).append("'=").append(NumberAndLimits(number));
    }
    return text;
}

} // namespace cimhttp
