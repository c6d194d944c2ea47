#pragma once

#include <string>

namespace cimhttp {

/// Lets the desktop open a URL, if there is one and it can; it goes on by itself. Returns whether that was begun.
bool OpenOnDesktop(const std::string& url);

} // namespace cimhttp
