#include "selection/GivenKeys.h"

#include <algorithm>

#include "Failure.h"
#include "text/NearestNames.h"
#include "text/Pattern.h"
#include "text/WordList.h"

namespace cimhttp {

GivenKeys::GivenKeys(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        const std::size_t sign = text.find('=');
        if (sign == std::string::npos || sign == 0) {
            throw Failure(Failure::kUsage, "'" + text + "' is not a key such as 'Name=eth0'");
        }
        if (!values_.emplace(text.substr(0, sign), text.substr(sign + 1)).second) {
            throw Failure(Failure::kUsage, "the key " + text.substr(0, sign) + " is given twice");
        }
    }
}

void GivenKeys::Check(const std::vector<std::string>& names, const std::string& class_name) const {
    for (const auto& [given, value] : values_) {
        const std::string& name = given;
        if (std::none_of(names.begin(), names.end(), [&](const std::string& one) { return IsSameName(one, name); })) {
            throw Failure(Failure::kUsage, "the class " + class_name + " has no key " + name +
                                               DidYouMean(NearestNames(name, names)) + "; its keys are " +
                                               ListedTogether(names));
        }
    }
}

std::string GivenKeys::Text() const {
    std::string text;
    for (const auto& [name, value] : values_) {
        text.append(text.empty() ? " with " : ", ").append(name).append("=").append(value);
    }
    return text;
}

} // namespace cimhttp
