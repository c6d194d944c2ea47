#pragma once

#include "operations/Operation.h"

namespace demo {

/// Associators, AssociatorNames, References and ReferenceNames, of instances and of classes.
Operations AssociationOperations();

} // namespace demo
