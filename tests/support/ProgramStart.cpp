#include "support/ProgramStart.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace support {

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ProgramStart::ProgramStart(std::string program, const std::vector<std::string>& arguments,
                           std::vector<std::string> environment)
    : program_(std::move(program)), words_{program_}, variables_(std::move(environment)) {
    words_.insert(words_.end(), arguments.begin(), arguments.end());
    for (const char* const name : {"PATH", "CIMHTTP_POLICY"}) {
        if (const char* const value = std::getenv(name)) {
            variables_.push_back(std::string(name) + '=' + value);
        }
    }
    variables_.emplace_back("LANG=C.UTF-8"); // what is drawn needs its characters
    wordPointers_ = Pointers(words_);
    variablePointers_ = Pointers(variables_);
}

void ProgramStart::Become() const {
    ::execve(program_.c_str(), wordPointers_.data(), variablePointers_.data());
    ::_exit(127);
}

void ProgramStart::Redirect(int stream, const std::string& file) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (descriptor < 0 || ::dup2(descriptor, stream) < 0) {
        ::_exit(127);
    }
    ::close(descriptor);
}

} // namespace support
