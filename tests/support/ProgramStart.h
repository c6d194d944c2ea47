#pragma once

#include <string>
#include <vector>

namespace support {

/// All that a process needs to become another program, made ready before it is forked. After the fork nothing may be
/// allocated: another thread may have held the allocator's lock, and nobody gives it back in the child.
class ProgramStart {
  public:
    /// `environment` has entries like "NAME=value"; the program sees them, PATH, and the CIMHTTP_POLICY of the tests
    /// unless it has one.
    ProgramStart(std::string program, const std::vector<std::string>& arguments, std::vector<std::string> environment);
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

    /// For the child alone; ends it with 127 when there is no such program.
    [[noreturn]] void Become() const;

    /// For the child alone: sends a stream to a file from now on; ends it with 127 when the file cannot be written.
    static void Redirect(int stream, const std::string& file);

  private:
    std::string program_;
    std::vector<std::string> words_;
    std::vector<std::string> variables_;
    std::vector<char*> wordPointers_;
    std::vector<char*> variablePointers_;
};

} // namespace support
