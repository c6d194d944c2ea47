#pragma once

#include "host/ILogger.h"
#include "host/TRootObject.h"

#include <boost/shared_ptr.hpp>

#include <utility>

namespace cimhttp {

/// The host's logger while one lives.
class LoggerScope {
  public:
    explicit LoggerScope(boost::shared_ptr<NQORVYX20::ILogger> logger) {
        NQORVYX20::TRootObject::SetCoreLogger(std::move(logger));
    }
    ~LoggerScope() { NQORVYX20::TRootObject::SetCoreLogger(boost::shared_ptr<NQORVYX20::ILogger>()); }
    LoggerScope(const LoggerScope&) = delete;
    LoggerScope& operator=(const LoggerScope&) = delete;
};

} // namespace cimhttp
