#include "replay/RequestMeaning.h"

#include "schema/AsciiCase.h"
#include "schema/Names.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace demo {

namespace {

/// A text with its length in front, so that no two lists of texts look alike.
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

std::string MeaningOf(const ObjectPath& path);

std::string MeaningOf(const KeyBinding& key) {
    const auto* const reference = key.value.AsReference();
    const auto* const text = key.value.AsText();
    return Measured(LowerCase(key.name)) + (reference ? " of " + Measured(MeaningOf(*reference)) : text ? *text : "");
}

/// Keys in any order. Each text stands in it once, however deep: the paths come from any client, and quotes around
/// quotes would double what is within.
std::string MeaningOf(const ObjectPath& path) {
    std::vector<std::string> keys;
    keys.reserve(path.keys.size());
    for (const auto& key : path.keys) {
        keys.push_back(Measured(MeaningOf(key)));
    }
    std::sort(keys.begin(), keys.end());
    std::string all = Measured(LowerCase(path.nameSpace)) + ':' + Measured(LowerCase(path.className));
    for (const std::string& key : keys) {
        all += '.' + key;
    }
    return all;
}

std::string MeaningOf(const RequestParameter& parameter) {
    if (const auto* const path = parameter.value.AsReference()) {
        return MeaningOf(*path);
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
