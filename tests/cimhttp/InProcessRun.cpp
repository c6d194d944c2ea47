#include "InProcessRun.h"

#include "Program.h"

#include <sstream>

support::ProgramRun RunInProcess(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"cimhttp", "--plugin", CIMHTTP_PLUGIN});
    std::vector<const char*> words;
    words.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        words.push_back(argument.c_str());
    }
    std::ostringstream output;
    std::ostringstream errors;
    const int status = cimhttp::RunProgram(static_cast<int>(words.size()), words.data(), output, errors);
    return {status, output.str(), errors.str()};
}
