#pragma once

#include "Choices.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <optional>
#include <string>

namespace cimhttp {

// Options whose complaints say what was given and what is allowed, for a parser that has words of its own otherwise.

/// The complaint about an option's value: `--port: '0' is not a whole number from 1 to 65535`.
CLI::ValidationError BadValue(const std::string& name, const std::string& text, const std::string& allowed);

/// A flag, which may be given a truth value, `--tls=false`.
CLI::Option* AddFlag(CLI::App& app, const std::string& name, const std::string& help,
                     const std::function<void(bool)>& take);

/// An option with a value. `take` returns nothing for a value that it accepts; for another, what is allowed instead.
CLI::Option* AddValue(CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
                      const std::function<std::optional<std::string>(const std::string&)>& take);

/// The whole number that a text is, within bounds; nothing for another text.
std::optional<unsigned long long> WholeNumberIn(const std::string& text, unsigned long long least,
                                                unsigned long long most);

/// The finite decimal number that a text is; nothing for another text.
std::optional<double> FiniteNumberIn(const std::string& text);

template <typename Number>
CLI::Option* AddWholeNumber(CLI::App& app, const std::string& name, const std::string& valueName,
                            const std::string& help, unsigned long long least, unsigned long long most,
                            std::optional<Number>& target) {
    return AddValue(app, name, valueName, help, [=, &target](const std::string& text) -> std::optional<std::string> {
        const auto number = WholeNumberIn(text, least, most);
        if (!number) {
            return "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
        }
        target = static_cast<Number>(*number);
        return std::nullopt;
    });
}

/// An option whose value is one of the choices, which must live longer than the parser.
template <typename T>
CLI::Option* AddChoice(CLI::App& app, const std::string& name, const std::string& valueName, const std::string& help,
                       const Choices<T>& choices, std::optional<T>& target) {
    return app
        .add_option(
            name,
            [name, &choices, &target](const CLI::results_t& words) {
                target = Chosen(words.front(), choices);
                if (!target) {
                    throw CLI::ValidationError(name.substr(0, name.find(',')),
                                               "there is no '" + words.front() + "'; give " + Listed(choices));
                }
                return true;
            },
            help)
        ->type_name(valueName);
}

} // namespace cimhttp
