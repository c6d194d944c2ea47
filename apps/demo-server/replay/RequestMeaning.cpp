#include "replay/RequestMeaning.h"

#include "schema/Names.h"
#include "schema/PathText.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

namespace demo {

namespace {

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// A text behind its length, so that no two lists of texts look alike.
std::string Measured(std::string_view text) { return std::to_string(text.size()) + ' ' + std::string(text); }

std::string MeaningOf(const std::string& text) {
    return SameName(text, "true") || SameName(text, "false") ? LowerCase(text) : text;
}

/// Names of properties, in any order.
std::string MeaningOf(const Value::Items& items) {
    std::vector<std::string> names;
    names.reserve(items.size());
    for (const auto& item : items) {
        names.push_back(item ? Measured(LowerCase(*item)) : "null");
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) {
        all += name + ';';
    }
    return all;
}

std::string MeaningOf(const RequestParameter& parameter) {
    if (const auto* const path = parameter.value.AsReference()) {
        return PathText(*path);
    }
    if (const auto* const items = parameter.value.AsArray()) {
        return MeaningOf(*items);
    }
    const auto* const text = parameter.value.AsText();
    return text ? MeaningOf(*text) : "";
}

bool Counts(const RequestParameter& parameter) {
    return !parameter.kind.empty() && !SameName(parameter.name, "MaxObjectCount") &&
           !SameName(parameter.name, "OperationTimeout");
}

} // namespace

std::string MeaningOf(const CimRequest& request) {
    std::vector<std::string> parameters;
    for (const auto& parameter : request.parameters) {
        if (Counts(parameter)) {
            parameters.push_back(LowerCase(parameter.name) + ' ' + parameter.kind + ' ' +
                                 Measured(MeaningOf(parameter)));
        }
    }
    std::sort(parameters.begin(), parameters.end());
    std::string meaning = LowerCase(request.method) + ' ' + LowerCase(request.nameSpace);
    for (const std::string& parameter : parameters) {
        meaning += '\n' + parameter;
    }
    return meaning;
}

std::string ShortTextOf(const CimRequest& request) {
    const std::string object = request.ObjectName();
    std::string text = request.method + (object.empty() ? "" : " of " + object) + " in " + request.nameSpace;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

} // namespace demo
