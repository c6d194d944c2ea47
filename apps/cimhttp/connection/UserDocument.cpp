#include "connection/UserDocument.h"

#include "Failure.h"
#include "files/FileLock.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <system_error>

namespace cimhttp {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr mode_t kOnlyOwner = 0600;
constexpr mode_t kNotForOthers = 077;
constexpr std::size_t kLargestFile = std::size_t{1} << 20U; // some thousand entries
constexpr std::chrono::seconds kLockTimeout{10};            // with other processes, which need milliseconds
constexpr int kIndent = 4;

/// Keeps new files and folders from others while it lives.
class PrivateFiles {
  public:
    PrivateFiles() : previous_(::umask(kNotForOthers)) {}
    ~PrivateFiles() { ::umask(previous_); }
    PrivateFiles(const PrivateFiles&) = delete;
    PrivateFiles& operator=(const PrivateFiles&) = delete;

  private:
    mode_t previous_;
};

std::string Absolute(const char* path) { return path != nullptr && *path == '/' ? path : ""; }

} // namespace

std::optional<std::string> UserDocument::PathOfUser(const std::string& fileName) {
    std::string folder = Absolute(std::getenv("XDG_CONFIG_HOME")); // a relative path does not count there
    if (folder.empty()) {
        const std::string home = Absolute(std::getenv("HOME"));
        folder = home.empty() ? "" : home + "/.config";
    }
    return folder.empty() ? std::nullopt : std::optional(folder + "/cimhttp/" + fileName);
}

UserDocument::Content UserDocument::Read() const {
    if (::access(path_.c_str(), F_OK) != 0 && errno == ENOENT) {
        return {};
    }
    const InputFile file(path_);
    file.NeedRegular();
    return {Parse(file.ReadAll(kLargestFile)), file.Mode()};
}

json UserDocument::Parse(const std::string& text) const {
    try {
        json document = json::parse(text);
        if (!document.is_object()) {
            throw Failure(Failure::kUsage, path_ + " is not " + kind_);
        }
        return document;
    } catch (const json::exception& error) { // also of a number that is too large
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const std::string what = error.what();
        const auto reason = what.find("] ");
        throw Failure(Failure::kUsage, path_ + ": " + (reason == std::string::npos ? what : what.substr(reason + 2)));
    }
}

void UserDocument::Update(const std::function<nlohmann::ordered_json(const Content&)>& change) const {
    const PrivateFiles scope;
    MakeFolder();
    const FileLock lock(path_ + ".lock", kLockTimeout);
    const auto document = change(Read());
    OutputFile(path_, kOnlyOwner).Replace([&](std::ostream& stream) { stream << document.dump(kIndent) << '\n'; });
}

void UserDocument::MakeFolder() const {
    const fs::path folder = fs::path(path_).parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw Failure(Failure::kOther, folder.string() + " cannot be made: " + error.message());
    }
}

} // namespace cimhttp
