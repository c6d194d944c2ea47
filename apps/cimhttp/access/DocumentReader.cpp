#include "access/DocumentReader.h"

#include <strings.h>

namespace cimhttp {

namespace {

bool IsNetwork(const char* name) { return ::strcasecmp(name, "network") == 0; }

bool IsOwnSetting(const std::string& attribute) {
    return attribute == "ca" || attribute == "namespace" || attribute == "port";
}

} // namespace

void DocumentReader::StartElement(const char* name, std::map<std::string, std::string>& attributes) {
    const bool is_network = IsNetwork(name);
    if (is_network && attributes.size() > 1) {
        FatalError("Only one setting in each network element, please: the others would not count.");
    }
    const bool is_own = is_network && !attributes.empty() && IsOwnSetting(attributes.begin()->first);
    open_elements_.push_back(is_own);
    if (is_own) {
        own_settings_.insert(*attributes.begin());
    } else {
        TCimHTTPRequestedClassParser::StartElement(name, attributes);
    }
}

void DocumentReader::EndElement(const char* name) {
    const bool is_own = open_elements_.back();
    open_elements_.pop_back();
    if (!is_own) {
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
    settings.insert(own_settings_.begin(), own_settings_.end());
    return settings;
}

} // namespace cimhttp
