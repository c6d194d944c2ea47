#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace Pegasus::http {

/// Lets this process have no more than so many descriptors beyond those that it has.
class FewDescriptors {
  public:
    explicit FewDescriptors(rlim_t spare) {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int next = ::dup(STDERR_FILENO); // the lowest number that is free
        ::close(next);
        const rlimit fewer{static_cast<rlim_t>(next) + spare, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &fewer);
    }
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

  private:
    rlimit before_{};
};

/// How many descriptors this process has open now.
inline std::size_t openDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd"); // which is one of them
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors))) - 1;
}

} // namespace Pegasus::http
