#pragma once

#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <string>
#include <string_view>

/// A policy that counts for this process while the object lives: afterwards the one before does.
class ScopedPolicy {
  public:
    explicit ScopedPolicy(std::string_view content) { Write(content); }
    ~ScopedPolicy() { Name(before_); }
    ScopedPolicy(const ScopedPolicy&) = delete;
    ScopedPolicy& operator=(const ScopedPolicy&) = delete;

    /// Puts another content in the place of the file's.
    void Write(std::string_view content) { Name(directory_.WriteFile("policy.json", content)); }

    /// Lets the variable name something else.
    static void Name(const std::string& path) { ::setenv("CIMHTTP_POLICY", path.c_str(), 1); }

    std::string Path() const { return (directory_.Path() / "policy.json").string(); }

  private:
    static std::string Named() {
        const char* const path = std::getenv("CIMHTTP_POLICY");
        return path == nullptr ? "" : path;
    }

    const support::TemporaryDirectory directory_;
    const std::string before_ = Named(); // empty is as good as not set
};
