#pragma once

#include "Descriptor.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace cimhttp {

/// A file that is read for the user. Whatever kind of file it is, reading it ends: no more is read than a limit, and a
/// pipe or a device that has nothing to give is waited for only so long. All complaints are Failure(kUsage) and begin
/// with the file's name.
class InputFile {
  public:
    /// Opens the file at `path`. `name` is what complaints call it, where that is not the path itself.
    explicit InputFile(const std::string& path, const std::string& name = {});

    /// Reads what is open already.
    InputFile(Descriptor descriptor, std::string name);

    /// The type and permissions, as stat() says.
    mode_t Mode() const { return mode_; }

    /// Complains where it is no regular file, such as a pipe.
    void NeedRegular() const;

    /// The whole content. Complains when that has more than `limit` bytes.
    std::string ReadAll(std::size_t limit) const;

    /// The first line without its end. Complains when that has more than `limit` bytes, and when there is none.
    std::string ReadLine(std::size_t limit) const;

    /// How long a pipe or a device may keep the reader waiting; a minute unless set.
    void SetTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

  private:
    /// Reads to the end, to the end of a line if `isLine`, or a little beyond the limit.
    std::string Read(std::size_t limit, bool isLine) const;
    void AwaitMore(std::chrono::steady_clock::time_point end) const;
    [[noreturn]] void Fail(const std::string& reason) const;

    std::string name_;
    Descriptor descriptor_;
    mode_t mode_ = 0;
    std::chrono::milliseconds timeout_{std::chrono::minutes(1)};
};

} // namespace cimhttp
