#include "server/Parameters.h"

#include "wire/CimError.h"

#include <algorithm>

namespace demo {

namespace {

[[noreturn]] void Fail(std::string_view name, std::string_view what) {
    throw CimError(CimStatus::kInvalidParameter, std::string(name).append(1, ' ').append(what));
}

} // namespace

Parameters::Parameters(const CimRequest& request, std::initializer_list<std::string_view> known) {
    for (const auto& parameter : request.parameters) {
        if (std::none_of(known.begin(), known.end(), [&](auto name) { return SameName(name, parameter.name); }))
            Fail(parameter.name, "is no parameter of " + request.method);
        if (!parameters_.emplace(parameter.name, &parameter).second)
            Fail(parameter.name, "appears twice");
    }
}

bool Parameters::Flag(std::string_view name, bool otherwise) const {
    const auto* const parameter = Find(name, "VALUE");
    if (!parameter)
        return otherwise;
    const std::string& text = *parameter->value.AsText();
    if (!IsValueOf(CimType::kBoolean, text))
        Fail(name, "must be TRUE or FALSE");
    return SameName(text, "true");
}

std::optional<std::string> Parameters::ClassName(std::string_view name) const {
    const auto* const parameter = Find(name, "CLASSNAME");
    return parameter ? std::optional(parameter->value.AsReference()->className) : std::nullopt;
}

std::string Parameters::RequiredClassName(std::string_view name) const {
    auto result = ClassName(name);
    if (!result)
        Fail(name, "is missing");
    return *std::move(result);
}

std::string Parameters::RequiredText(std::string_view name) const {
    const auto* const parameter = Find(name, "VALUE");
    if (!parameter)
        Fail(name, "is missing");
    return *parameter->value.AsText();
}

std::optional<std::set<std::string, NameLess>> Parameters::PropertyList(std::string_view name) const {
    const auto* const parameter = Find(name, "VALUE.ARRAY");
    if (!parameter)
        return std::nullopt;
    std::set<std::string, NameLess> result;
    for (const auto& item : *parameter->value.AsArray()) {
        if (!item)
            Fail(name, "has a null entry");
        result.insert(*item);
    }
    return result;
}

const RequestParameter* Parameters::Find(std::string_view name, std::string_view kind) const {
    const auto found = parameters_.find(name);
    if (found == parameters_.end() || found->second->kind.empty())
        return nullptr;
    if (found->second->kind != kind)
        Fail(name, std::string("must be a ").append(kind));
    return found->second;
}

} // namespace demo
