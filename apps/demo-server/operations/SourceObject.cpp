#include "operations/SourceObject.h"

#include "wire/CimError.h"

#include <string>
#include <utility>

namespace demo {

namespace {

constexpr CimStatus kNoSuchClass = CimStatus::kInvalidParameter;

/// The name of a class that a parameter restricts the answer to, empty if it does not.
std::string ClassFilter(const Repository& repository, const Parameters& parameters, std::string_view name) {
    std::string filter = parameters.Name(name);
    if (!filter.empty()) {
        repository.FindClass(filter, kNoSuchClass);
    }
    return filter;
}

} // namespace

SourceObject FindSource(const Repository& repository, const Parameters& parameters, std::string_view name) {
    const ObjectPath& object = parameters.Object(name);
    const Class& declaration = repository.FindClass(object.className, kNoSuchClass);
    if (parameters.IsClassName(name)) {
        return {declaration, std::nullopt};
    }
    ObjectPath path = repository.Checked(declaration, object);
    // An empty answer would be a lie about an instance that is not there.
    if (!repository.Find(path)) {
        throw CimError(CimStatus::kNotFound, "there is no such instance of " + declaration.name);
    }
    return {declaration, std::move(path)};
}

TraversalFilter AssociatorFilter(const Repository& repository, const Parameters& parameters) {
    return {ClassFilter(repository, parameters, "AssocClass"), parameters.Name("Role"),
            ClassFilter(repository, parameters, "ResultClass"), parameters.Name("ResultRole")};
}

TraversalFilter ReferenceFilter(const Repository& repository, const Parameters& parameters) {
    return {ClassFilter(repository, parameters, "ResultClass"), parameters.Name("Role"), "", ""};
}

ParameterDeclarations ReferenceFilterParameters() {
    return {OptionalParameter("ResultClass", ParameterKind::kClassName),
            OptionalParameter("Role", ParameterKind::kText)};
}

ParameterDeclarations AssociatorFilterParameters() {
    auto parameters = ReferenceFilterParameters();
    parameters.push_back(OptionalParameter("AssocClass", ParameterKind::kClassName));
    parameters.push_back(OptionalParameter("ResultRole", ParameterKind::kText));
    return parameters;
}

} // namespace demo
