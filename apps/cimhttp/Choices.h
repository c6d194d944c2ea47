#pragma once

#include "text/Ascii.h"
#include "text/WordList.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cimhttp {

/// Words that stand for values, in the order in which help and complaints list them.
template <typename T>
using Choices = std::vector<std::pair<std::string, T>>;

/// The words as a list, `a, b or c`.
template <typename T>
std::string Listed(const Choices<T>& choices) {
    std::vector<std::string> words;
    std::transform(choices.begin(), choices.end(), std::back_inserter(words),
                   [](const auto& choice) { return choice.first; });
    return Listed(words);
}

/// What a word stands for, whatever its case.
template <typename T>
std::optional<T> Chosen(const std::string& word, const Choices<T>& choices) {
    for (const auto& [name, value] : choices) {
        if (EqualIgnoringCase(name, word)) {
            return value;
        }
    }
    return std::nullopt;
}

/// The truth value that a word stands for; nothing for another word.
inline std::optional<bool> TruthIn(const std::string& word) {
    static const Choices<bool> kTruths{{"true", true},   {"yes", true}, {"on", true},   {"1", true},
                                       {"false", false}, {"no", false}, {"off", false}, {"0", false}};
    return Chosen(word, kTruths);
}

/// The word for a value that is one of the choices.
template <typename T>
std::string WordFor(const T& value, const Choices<T>& choices) {
    return std::find_if(choices.begin(), choices.end(), [&](const auto& choice) { return choice.second == value; })
        ->first;
}

} // namespace cimhttp
