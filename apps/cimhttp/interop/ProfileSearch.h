#pragma once

#include "HostTypes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

class Session;

/// A profile that a server says it conforms to.
struct RegisteredProfile {
    std::optional<std::string> organization; ///< as people read it; empty for null, here and below
    std::optional<std::string> name;
    std::optional<std::string> version;
    std::string path; ///< with the namespace

    /// The paths of the instances with which the profile begins, sorted; empty when the server does not tell them.
    std::optional<std::vector<std::string>> centralInstances;
};

/// Finds the registered profiles of a server, in its Interop namespace.
class ProfileSearch {
  public:
    explicit ProfileSearch(Session& session) : session_(session) {}

    /// Throws Failure that says what was asked when no namespace has them.
    void Run();

    /// Sorted by organization, name and version.
    const std::vector<RegisteredProfile>& Profiles() const { return profiles_; }

    /// Which profiles' central instances are not known, and why, one line; empty when all are.
    std::string Remark() const;

  private:
    RegisteredProfile ProfileOf(const NQORVYX20::ICIMInstance& instance, const std::string& nameSpace) const;
    void FindCentralInstances(RegisteredProfile& profile);

    Session& session_;
    std::vector<RegisteredProfile> profiles_;
    std::size_t unknownCount_ = 0;
    std::string firstFailure_;
};

} // namespace cimhttp
