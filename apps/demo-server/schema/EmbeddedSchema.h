#pragma once

#include <string_view>

namespace demo {

/// The text of schema/demo-schema.xml, which the build puts into the program.
std::string_view EmbeddedSchema();

} // namespace demo
