#include "provider/TCimHTTPRequestedClassParser.h"

#include "convert/LetterCase.h"
#include "host/TRootObject.h"

#include <utility>

using NQORVYX20::ILogger;
using NQORVYX20::LowerCase;

namespace {

constexpr const char* kRoot = "vyx";
constexpr const char* kNetwork = "network";
constexpr const char* kClass = "class";

bool IsSetting(const std::string& attribute) {
    return attribute == "address" || attribute == "user" || attribute == "pass" || attribute == "ssl";
}

} // namespace

TCimHTTPRequestedClassParser::TCimHTTPRequestedClassParser() = default;

TCimHTTPRequestedClassParser::~TCimHTTPRequestedClassParser() = default;

void TCimHTTPRequestedClassParser::StartElement(const char* name, std::map<std::string, std::string>& attributes) {
    element_ = LowerCase(name);
    if (element_ == kRoot) {
        StartRoot(attributes);
    } else if (element_ == kNetwork) {
        StartNetwork(attributes);
    } else if (element_ == kClass) {
        StartClass(attributes);
    } else {
        FatalError("Unrecognized identifier");
    }
}

void TCimHTTPRequestedClassParser::StartRoot(const std::map<std::string, std::string>& attributes) {
    if (attributes.count("version") == 0) {
        FatalError("No Version Specified for VYX identifier");
        return;
    }
    settingName_.clear();
    settingValue_.clear();
    className_.clear();
}

void TCimHTTPRequestedClassParser::StartNetwork(const std::map<std::string, std::string>& attributes) {
    for (const auto& [name, value] : attributes) {
        if (!IsSetting(name)) {
            FatalError("Unrecognized Attribute.");
        } else if (!settingValue_.empty()) {
            FatalError("Expecting End of Object before Beginning New Object.");
        } else {
            settingName_ = name;
            settingValue_ = value;
            return;
        }
    }
    FatalError("No Name Specified for Object identifier");
}

void TCimHTTPRequestedClassParser::StartClass(const std::map<std::string, std::string>& attributes) {
    for (const auto& [name, value] : attributes) {
        if (name != "name") {
            FatalError("Unrecognized Attribute.");
        } else if (!className_.empty()) {
            FatalError("Expecting End of Counter Before Beginning New Counter.");
        } else {
            className_ = value;
            classNames_.push_back(value);
            return;
        }
    }
    FatalError("No Name Specified for Counter identifier");
}

void TCimHTTPRequestedClassParser::EndElement(const char* name) {
    element_ = LowerCase(name);
    if (element_ == kRoot) {
        return;
    }
    if (element_ == kNetwork) {
        EndNetwork();
    } else if (element_ == kClass) {
        className_.clear();
    } else {
        FatalError("Unrecognized identifier");
    }
    element_.clear();
}

void TCimHTTPRequestedClassParser::EndNetwork() {
    if (settingName_.empty()) {
        FatalError("Object Identifier Ended Unexpectedly.");
        return;
    }
    networkData_.emplace(settingName_, settingValue_);
    settingName_.clear();
    settingValue_.clear();
}

void TCimHTTPRequestedClassParser::processingInstruction(const char* /*target*/, const char* /*data*/) {}

void TCimHTTPRequestedClassParser::characters(const char* /*text*/, unsigned int /*length*/) {}

void TCimHTTPRequestedClassParser::notationDecl(const char* /*name*/, const char* /*publicId*/,
                                                const char* /*systemId*/) {}

void TCimHTTPRequestedClassParser::FatalError(const char* message) { DebugOutput(ILogger::eLogError, message); }

// In these texts an "object" is a network setting and a "counter" a class: tools that search the log know them so.
void TCimHTTPRequestedClassParser::DebugOutput(ILogger::EVYXLogSeverity severity, std::string message) {
    NQORVYX20::TRootObject::GetCoreLogger()->Log(severity, "Performance Data RDD Parser line " +
                                                               std::to_string(GetCurLine()) + ":" + message);
}

std::map<std::string, std::string> TCimHTTPRequestedClassParser::GetRequestedNetworkData() { return networkData_; }

std::vector<std::string> TCimHTTPRequestedClassParser::GetRequestedClassData() { return classNames_; }
