#pragma once

#include "operations/Parameters.h"
#include "operations/Repository.h"
#include "operations/Traversal.h"

#include <optional>
#include <string_view>

namespace demo {

/// Where associations are followed from: a class, or an instance when there is a path.
struct SourceObject {
    const Class& declaration;
    std::optional<ObjectPath> path;
};

// What the operations on associations take from their parameters. A class that there is not is an invalid parameter:
// DSP0200 has no status of its own for it.

/// The source that the parameter of that name says. Throws CimError, also kNotFound for an instance that there is not.
SourceObject FindSource(const Repository& repository, const Parameters& parameters, std::string_view name);

/// AssocClass, Role, ResultClass and ResultRole. Throws CimError.
TraversalFilter AssociatorFilter(const Repository& repository, const Parameters& parameters);

/// ResultClass and Role, where the associations themselves are the result. Throws CimError.
TraversalFilter ReferenceFilter(const Repository& repository, const Parameters& parameters);

/// The declarations of these parameters.
ParameterDeclarations ReferenceFilterParameters();
ParameterDeclarations AssociatorFilterParameters();

} // namespace demo
