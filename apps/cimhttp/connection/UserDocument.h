#pragma once

#include <nlohmann/json.hpp>

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace cimhttp {

/// A JSON object in one of the user's files for configuration, which only its owner reads.
class UserDocument {
  public:
    struct Content {
        nlohmann::json object = nlohmann::json::object();
        mode_t mode = 0; ///< the type and permissions of the file; 0 where there is none
    };

    /// The path of a file in `cimhttp` in the user's folder for configuration: $XDG_CONFIG_HOME, or .config in $HOME.
    /// Nothing where neither is set.
    static std::optional<std::string> PathOfUser(const std::string& fileName);

    /// `kind` says what the object is, for complaints, as in `a list of connections`.
    UserDocument(std::string path, std::string kind) : path_(std::move(path)), kind_(std::move(kind)) {}

    const std::string& Path() const { return path_; }

    /// An empty object where there is no file. Throws Failure(kUsage), naming the file, when it cannot be read or holds
    /// something else.
    Content Read() const;

    /// Replaces the file as a whole with what `change` makes of its content, by one that only its owner reads. No other
    /// Update() comes in between: each waits for the one before, some seconds long. Makes the folder where there is
    /// none, and leaves a file beside the other that stands for the lock. Throws like Read() and `change`, and Failure,
    /// naming the file, when it cannot be locked or written; the file is then as it was.
    void Update(const std::function<nlohmann::ordered_json(const Content&)>& change) const;

  private:
    nlohmann::json Parse(const std::string& text) const;
    void MakeFolder() const;

    std::string path_;
    std::string kind_;
};

} // namespace cimhttp
