#include "operations/Parameters.h"

#include "wire/CimError.h"

#include <algorithm>
#include <cassert>

namespace demo {

namespace {

[[noreturn]] void Fail(std::string_view name, std::string_view what) {
    throw CimError(CimStatus::kInvalidParameter, std::string(name).append(1, ' ').append(what));
}

/// Some clients say null with an empty name, which nothing has.
bool IsNull(const RequestParameter& parameter) {
    if (parameter.kind == "CLASSNAME") {
        return parameter.value.AsReference()->className.empty();
    }
    return parameter.kind.empty();
}

void CheckFlag(const RequestParameter& parameter) {
    if (parameter.kind != "VALUE" || !IsValueOf(CimType::kBoolean, *parameter.value.AsText())) {
        Fail(parameter.name, "must be a VALUE that is TRUE or FALSE");
    }
}

void CheckNumber(const RequestParameter& parameter) {
    if (parameter.kind != "VALUE" || !IsValueOf(CimType::kUint32, *parameter.value.AsText())) {
        Fail(parameter.name, "must be a VALUE that is a whole number of 32 bits");
    }
}

void CheckPropertyList(const RequestParameter& parameter) {
    if (parameter.kind != "VALUE.ARRAY") {
        Fail(parameter.name, "must be a VALUE.ARRAY");
    }
    const auto& items = *parameter.value.AsArray();
    if (std::any_of(items.begin(), items.end(), [](const auto& item) { return !item; })) {
        Fail(parameter.name, "has a null entry");
    }
}

void CheckKind(const RequestParameter& parameter, std::string_view kind) {
    if (parameter.kind != kind) {
        Fail(parameter.name, std::string("must be a ").append(kind));
    }
}

void Check(const RequestParameter& parameter, ParameterKind kind) {
    switch (kind) {
    case ParameterKind::kFlag:
        return CheckFlag(parameter);
    case ParameterKind::kNumber:
        return CheckNumber(parameter);
    case ParameterKind::kText:
        return CheckKind(parameter, "VALUE");
    case ParameterKind::kClassName:
        return CheckKind(parameter, "CLASSNAME");
    case ParameterKind::kInstanceName:
        return CheckKind(parameter, "INSTANCENAME");
    case ParameterKind::kObjectName:
        if (parameter.kind != "INSTANCENAME" && parameter.kind != "CLASSNAME") {
            Fail(parameter.name, "must be an INSTANCENAME or a CLASSNAME");
        }
        return;
    case ParameterKind::kPropertyList:
        return CheckPropertyList(parameter);
    }
}

} // namespace

Parameters::Parameters(const CimRequest& request, const ParameterDeclarations& declarations) {
    for (const auto& declaration : declarations) {
        entries_.emplace(declaration.name, Entry{&declaration, nullptr});
    }
    for (const auto& parameter : request.parameters) {
        Take(parameter, request.method);
    }
    for (const auto& declaration : declarations) {
        if (declaration.isRequired && !Find(declaration.name)) {
            Fail(declaration.name, "is missing");
        }
    }
}

void Parameters::Take(const RequestParameter& parameter, const std::string& method) {
    const auto found = entries_.find(parameter.name);
    if (found == entries_.end()) {
        Fail(parameter.name, "is no parameter of " + method);
    }
    if (found->second.parameter) {
        Fail(parameter.name, "appears twice");
    }
    found->second.parameter = &parameter;
    if (!IsNull(parameter)) {
        Check(parameter, found->second.declaration->kind);
    }
}

bool Parameters::Flag(std::string_view name) const {
    const auto* const parameter = Find(name);
    return parameter ? SameName(*parameter->value.AsText(), "true")
                     : entries_.find(name)->second.declaration->flagDefault;
}

std::optional<std::uint32_t> Parameters::Number(std::string_view name) const {
    const auto* const parameter = Find(name);
    return parameter ? std::optional(static_cast<std::uint32_t>(std::stoul(*parameter->value.AsText()))) : std::nullopt;
}

std::string Parameters::Name(std::string_view name) const {
    const auto* const parameter = Find(name);
    if (!parameter) {
        return "";
    }
    if (const ObjectPath* const path = parameter->value.AsReference()) {
        return path->className;
    }
    const std::string* const text = parameter->value.AsText();
    return text ? *text : "";
}

const ObjectPath& Parameters::Object(std::string_view name) const {
    const auto* const parameter = Find(name);
    assert(parameter && parameter->value.AsReference());
    return *parameter->value.AsReference();
}

bool Parameters::IsClassName(std::string_view name) const {
    const auto* const parameter = Find(name);
    return parameter && parameter->kind == "CLASSNAME";
}

Selection Parameters::GetSelection() const {
    Selection selection;
    selection.localOnly = FlagIfDeclared("LocalOnly");
    selection.includeQualifiers = FlagIfDeclared("IncludeQualifiers");
    selection.includeClassOrigin = FlagIfDeclared("IncludeClassOrigin");
    if (entries_.count("PropertyList") == 0) {
        return selection;
    }
    if (const auto* const list = Find("PropertyList")) {
        selection.propertyList.emplace();
        for (const auto& item : *list->value.AsArray()) {
            selection.propertyList->insert(*item);
        }
    }
    return selection;
}

const RequestParameter* Parameters::Find(std::string_view name) const {
    const auto found = entries_.find(name);
    assert(found != entries_.end());
    const RequestParameter* const parameter = found->second.parameter;
    return parameter && !IsNull(*parameter) ? parameter : nullptr;
}

bool Parameters::FlagIfDeclared(std::string_view name) const { return entries_.count(name) != 0 && Flag(name); }

} // namespace demo
