#pragma once

#include <stdexcept>
#include <string>

namespace cimhttp {

/// What ends the program: one line for the user and an exit status.
class Failure : public std::runtime_error {
  public:
    enum ExitStatus {
        kOther = 1,
        kUsage = 2,          ///< the command line, or a file that it names, is wrong
        kConnection = 3,     ///< the server cannot be reached, or does not answer in time
        kAuthentication = 4, ///< the server does not let the user in
        kNotFound = 5,       ///< the server does not have what was asked for
        kServer = 6,         ///< the server answers with an error, or with an invalid answer
        kIncomplete = 7,     ///< what was asked for could not be shown, or not all of it, though the server has it
        kSomeServers = 8,    ///< of several servers some failed and some did not, or they failed in different ways
        kClosedPipe = 141    ///< nobody reads the output any more: what shells say of a program ended by SIGPIPE
    };

    Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

    int Status() const { return status_; }

  private:
    ExitStatus status_;
};

/// The message where memory runs out for what the program itself makes of a server's answer.
constexpr const char* kTooLittleMemory = "there is not enough memory for this; ask for less, as with --property";

/// The server does not let the user in, whatever is asked for.
class LoginFailure : public Failure {
  public:
    explicit LoginFailure(const std::string& text) : Failure(kAuthentication, text) {}
};

} // namespace cimhttp
