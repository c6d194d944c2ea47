#pragma once

#include <string>

namespace cimhttp {

/// What a file with a password says.
struct PasswordFile {
    std::string password; ///< the first line
    std::string warning;  ///< a line for the user when others can read or change the file, empty otherwise
};

/// Reads a file, or standard input where the path is `-`. Throws Failure(kUsage), naming the file, when there is no
/// password to be read.
PasswordFile ReadPasswordFile(const std::string& path);

} // namespace cimhttp
