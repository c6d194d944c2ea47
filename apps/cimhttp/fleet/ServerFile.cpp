#include "fleet/ServerFile.h"

#include "Failure.h"

namespace cimhttp {

namespace {

const std::string kPlace = "{server}";

} // namespace

bool IsServerFilePattern(const std::string& pattern) { return pattern.find(kPlace) != std::string::npos; }

std::string ServerFile(const std::string& pattern, const std::string& server) {
    if (server.empty() || server.front() == '.' || server.find('/') != std::string::npos ||
        server.find('\0') != std::string::npos) {
        throw Failure(Failure::kUsage, "the name '" + server + "' cannot be part of a file's name");
    }
    std::string file = pattern;
    for (auto place = file.find(kPlace); place != std::string::npos; place = file.find(kPlace, place + server.size())) {
        file.replace(place, kPlace.size(), server);
    }
    return file;
}

} // namespace cimhttp
