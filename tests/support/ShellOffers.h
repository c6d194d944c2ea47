#pragma once

#include <string>
#include <vector>

namespace support {

/// What a shell, bash, fish or zsh, offers when Tab is pressed after `line`, by a file with the completion of the
/// program that the line begins with, which is in the folder `programs`. Without repetitions, sorted by bytes. Skips
/// the test without the shell.
std::vector<std::string> ShellOffers(const std::string& shell, const std::string& completion,
                                     const std::string& programs, const std::string& line,
                                     std::vector<std::string> environment = {});

} // namespace support
