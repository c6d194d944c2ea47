#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/ILogger.h"

namespace cimhttp {

/// What the command line and the environment ask for.
struct Options {
    enum class Command { kNone, kInfo, kClasses, kClass, kInstances };

    Command command = Command::kNone;
    std::string name; ///< the class, or the pattern of `classes`; empty for none
    bool deep = false;
    bool raw = false;                    ///< `instances` shows values as they are, not as people read them
    std::vector<std::string> properties; ///< the properties that `instances` shows; empty for all
    std::string host = "localhost";
    std::string user; ///< empty: no credentials are sent
    std::string password;
    bool tls = false;
    std::string plugin;                                                ///< the path of the plug-in
    std::optional<NQORVYX20::ILogger::EVYXLogSeverity> log_level = {}; ///< empty: no log
    std::size_t width = 0;                                             ///< the columns that a table may take
};

} // namespace cimhttp
