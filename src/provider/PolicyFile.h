#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace NQORVYX20 {

/// The file in which the operator of this machine says how servers are connected to.
class PolicyFile {
  public:
    static constexpr const char* kUsualPath = "/etc/cimhttp/policy.json";
    static constexpr const char* kVariable = "CIMHTTP_POLICY";
    static constexpr std::size_t kMaxBytes = std::size_t{1} << 20U;

    /// The one that the variable names, which has to be there; the usual one, which need not, where the variable is
    /// empty, is not set, or is ignored since the process has more rights than the user who started it.
    static PolicyFile OfMachine();

    PolicyFile(std::string path, bool mayBeMissing) : path_(std::move(path)), mayBeMissing_(mayBeMissing) {}

    const std::string& Path() const { return path_; }

    /// Its content; empty when it is missing and may be. Throws PolicyFault when it cannot be read, is larger than
    /// kMaxBytes, is no regular file or can be written by everybody, or when its path is not an absolute one.
    std::optional<std::string> Read() const;

  private:
    bool IsMissing() const;

    std::string path_;
    bool mayBeMissing_;
};

} // namespace NQORVYX20
