#include "selection/GivenKeys.h"

#include "Failure.h"
#include "text/NearestNames.h"
#include "text/WordList.h"

namespace cimhttp {

GivenKeys::GivenKeys(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        const std::size_t sign = text.find('=');
        if (sign == std::string::npos || sign == 0) {
            throw Failure(Failure::kUsage, "'" + text +
                                               "' is not a key such as 'Name=eth0' (the file of a client's key is "
                                               "given before the command)");
        }
        if (!values_.emplace(text.substr(0, sign), text.substr(sign + 1)).second) {
            throw Failure(Failure::kUsage, "the key " + text.substr(0, sign) + " is given twice");
        }
    }
}

void GivenKeys::Check(const std::vector<std::string>& names, const std::string& className) const {
    const NameSet known(names.begin(), names.end());
    for (const auto& [name, value] : values_) {
        if (known.count(name) == 0) {
            std::string text = "the class " + className + " has no key " + name;
            text += DidYouMean(NearestNames(name, names)) + "; its keys are " + ListedTogether(names);
            throw Failure(Failure::kUsage, text);
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
