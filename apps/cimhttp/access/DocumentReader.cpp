#include "access/DocumentReader.h"

#include "text/Ascii.h"

namespace cimhttp {

namespace {

bool IsNetwork(const char* name) { return EqualIgnoringCase(name, "network"); }

bool IsOwnSetting(const std::string& attribute) {
    return attribute == "ca" || attribute == "namespace" || attribute == "port";
}

} // namespace

void DocumentReader::StartElement(const char* name, std::map<std::string, std::string>& attributes) {
    const bool isNetwork = IsNetwork(name);
    if (isNetwork && attributes.size() > 1) {
        FatalError("Only one setting in each network element, please: the others would not count.");
    }
    const bool isOwn = isNetwork && !attributes.empty() && IsOwnSetting(attributes.begin()->first);
    openElements_.push_back(isOwn);
    if (isOwn) {
        ownSettings_.insert(*attributes.begin());
    } else {
        TCimHTTPRequestedClassParser::StartElement(name, attributes);
    }
}

void DocumentReader::EndElement(const char* name) {
    const bool isOwn = openElements_.back();
    openElements_.pop_back();
    if (!isOwn) {
        TCimHTTPRequestedClassParser::EndElement(name);
    }
}

void DocumentReader::FatalError(const char* message) {
    if (error_.empty()) {
        error_ = "line " + std::to_string(GetCurLine()) + ": " + message;
    }
    TCimHTTPRequestedClassParser::FatalError(message);
}

std::map<std::string, std::string> DocumentReader::Settings() {
    std::map<std::string, std::string> settings = GetRequestedNetworkData();
    settings.insert(ownSettings_.begin(), ownSettings_.end());
    return settings;
}

} // namespace cimhttp
