#pragma once

#include "host/ILogger.h"
#include "host/TRootObject.h"

#include <boost/make_shared.hpp>

#include <string>

/// Keeps what the object model logs from the fuzzer's own lines.
class SilentLog : public NQORVYX20::ILogger {
  public:
    void Log(EVYXLogSeverity /*severity*/, std::string /*message*/) override {}

    static void Install() { NQORVYX20::TRootObject::SetCoreLogger(boost::make_shared<SilentLog>()); }
};
