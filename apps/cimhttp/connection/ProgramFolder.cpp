#include "connection/ProgramFolder.h"

#include <filesystem>

namespace cimhttp {

std::string LibraryBesideProgram(const std::string& file_name) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = program.parent_path().parent_path() / "lib" / file_name;
    return !error && std::filesystem::exists(beside, error) ? beside.string() : file_name;
}

} // namespace cimhttp
