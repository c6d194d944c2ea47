#pragma once

#include <string>

namespace cimhttp {

/// What a file with a password says.
struct PasswordFile {
    std::string password; ///< the first line
    std::string warning;  ///< a line for the user when others can read or change the file, empty otherwise
};

/// Throws Failure(kUsage), naming the file, when no password can be read from it.
PasswordFile ReadPasswordFile(const std::string& path);

} // namespace cimhttp
