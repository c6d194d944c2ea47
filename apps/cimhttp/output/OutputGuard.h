#pragma once

#include <ostream>
#include <streambuf>

namespace cimhttp {

/// While it lives, a stream that can no longer be written to throws a Failure at once, so that a full disk or a closed
/// pipe ends the work instead of swallowing the rest of it. The Failure of a closed pipe is kClosedPipe.
class OutputGuard : private std::streambuf {
  public:
    explicit OutputGuard(std::ostream& stream);
    ~OutputGuard() override;
    OutputGuard(const OutputGuard&) = delete;
    OutputGuard& operator=(const OutputGuard&) = delete;

  private:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

    std::ostream& stream_;
    std::streambuf* target_;
};

} // namespace cimhttp
