#include "OptionValues.h"

#include "text/ParsedText.h"

#include <cmath>

namespace cimhttp {

namespace {

/// `--output` of `--output,-o`
std::string LongName(const std::string& name) { return name.substr(0, name.find(',')); }

} // namespace

CLI::ValidationError BadValue(const std::string& name, const std::string& text, const std::string& allowed) {
    return CLI::ValidationError(LongName(name), "'" + text + "' is not " + allowed);
}

CLI::Option* AddFlag(CLI::App& app, const std::string& name, const std::string& help,
                     const std::function<void(bool)>& take) {
    const auto takeWord = [name, take](const CLI::results_t& words) {
        const auto truth = TruthIn(words.front());
        if (!truth) {
            throw BadValue(name, words.front(), "true or false");
        }
        take(*truth);
        return true;
    };
    return app.add_option(name, takeWord, help)->expected(0)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::Option* AddValue(CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
                      const std::function<std::optional<std::string>(const std::string&)>& take) {
    const auto takeWord = [name, take](const CLI::results_t& words) {
        if (const auto allowed = take(words.front())) {
            throw BadValue(name, words.front(), *allowed);
        }
        return true;
    };
    return app.add_option(name, takeWord, help)->type_name(valueName);
}

std::optional<unsigned long long> WholeNumberIn(const std::string& text, unsigned long long least,
                                                unsigned long long most) {
    const auto number = NumberIn<unsigned long long>(text);
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

std::optional<double> FiniteNumberIn(const std::string& text) {
    const auto number = NumberIn<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

} // namespace cimhttp
