#pragma once

#include "exporter/Module.h"

#include <string>

namespace cimhttp {

/// The modules of a YAML document, which `name` is the name of:
///
///     modules:
///       storage:
///         - class: CIM_FileSystem
///           labels: [Name, {mount: Root}]
///           metrics:
///             - AvailableSpace
///             - {property: OperationalStatus, states: [OK, Degraded]}
///
/// Throws Failure(kUsage) with the line of what is wrong: an unknown word, too, is.
Modules ParseModules(const std::string& document, const std::string& name);

/// Those of a file. Throws so, too, when the file cannot be read.
Modules ReadModules(const std::string& path);

/// The modules that the program brings along.
Modules BuiltInModules();

/// Their document.
const char* BuiltInModulesText();

} // namespace cimhttp
