#pragma once

#include <stdexcept>
#include <string>

namespace cimhttp {

/// What ends the program: one line for the user and an exit status.
class Failure : public std::runtime_error {
  public:
    enum ExitStatus { kOther = 1, kUsage = 2, kConnection = 3, kIncomplete = 7 };

    Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

    int Status() const { return status_; }

  private:
    ExitStatus status_;
};

} // namespace cimhttp
