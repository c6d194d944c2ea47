#pragma once

#include <string_view>

namespace demo {

// The texts of the files schema/*-schema.xml, which the build puts into the program.

std::string_view EmbeddedCimSchema();
std::string_view EmbeddedDemoSchema();
std::string_view EmbeddedInteropSchema();

} // namespace demo
