#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace support {

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "cimhttp-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "cannot make " + pattern);
    }
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::WriteFile(const std::string& name, std::string_view content) const {
    const std::filesystem::path file = path_ / name;
    std::ofstream(file, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    return file.string();
}

} // namespace support
