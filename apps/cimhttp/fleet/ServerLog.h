#pragma once

#include "host/ILogger.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace cimhttp {

/// Passes messages on to another logger; those of a thread that works on one of several servers name it.
class ServerLog : public NQORVYX20::ILogger {
  public:
    /// While it lives, this thread works on the server of that name.
    class Scope {
      public:
        explicit Scope(const std::string& server);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    explicit ServerLog(boost::shared_ptr<NQORVYX20::ILogger> log) : log_(std::move(log)) {}

    void Log(EVYXLogSeverity severity, std::string message) override;

  private:
    const boost::shared_ptr<NQORVYX20::ILogger> log_;
};

} // namespace cimhttp
