#pragma once

namespace cimhttp {

/// What stands for null among texts for people: an en dash.
constexpr const char* kNullText = "–";

} // namespace cimhttp
