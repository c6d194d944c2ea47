#include "fleet/ServerLog.h"

#include <utility>

namespace cimhttp {

namespace {

thread_local const std::string* serverOfThread = nullptr;

} // namespace

ServerLog::Scope::Scope(const std::string& server) { serverOfThread = &server; }

ServerLog::Scope::~Scope() { serverOfThread = nullptr; }

void ServerLog::Log(EVYXLogSeverity severity, std::string message) {
    log_->Log(severity, serverOfThread == nullptr ? std::move(message) : *serverOfThread + ": " + message);
}

} // namespace cimhttp
