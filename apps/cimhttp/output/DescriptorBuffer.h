#pragma once

#include <array>
#include <cstddef>
#include <streambuf>

namespace cimhttp {

/// What is written to a stream goes to a file descriptor, which stays the caller's.
class DescriptorBuffer : public std::streambuf {
  public:
    explicit DescriptorBuffer(int descriptor);

    /// Why the first writing that failed did, an errno; 0 while none has. Nothing is written behind it.
    int Error() const { return error_; }

  private:
    int_type overflow(int_type character) override;
    int sync() override;

    int descriptor_;
    int error_ = 0;
    std::array<char, std::size_t{64} << 10U> block_{};
};

} // namespace cimhttp
