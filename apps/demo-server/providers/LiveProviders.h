#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"
#include "schema/Schema.h"

#include <cstddef>

namespace demo {

/// A provider for each class of the built-in schema that has instances: those of the machine that the files tell about,
/// and so many made-up volumes. The schema must outlive the providers; it can be moved meanwhile.
InstanceProviders LiveProviders(const Schema& schema, const SystemFiles& files, std::size_t volumes);

} // namespace demo
