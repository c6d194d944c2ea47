#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/ILogger.h"

namespace cimhttp {

/// What the command line and the environment ask for.
struct Options {
    enum class Command { kNone, kInfo, kClasses, kClass, kInstances, kCollect };

    Command command = Command::kNone;
    std::string name; ///< the class, the pattern of `classes` or the document of `collect`
    bool deep = false;
    bool raw = false;                    ///< `instances` shows values as they are, not as people read them
    std::vector<std::string> properties; ///< the properties that `instances` shows; empty for all
    std::string out_file;                ///< what `collect` writes; empty for the standard output
    std::optional<std::string> host;     ///< here and below: what the command line says about the server
    std::optional<std::string> user;
    std::optional<std::string> password;          ///< from the password file
    std::optional<std::string> password_variable; ///< from the environment
    std::optional<bool> tls;
    std::string plugin;                                                ///< the path of the plug-in
    std::optional<NQORVYX20::ILogger::EVYXLogSeverity> log_level = {}; ///< empty: no log
    std::size_t width = 0;                                             ///< the columns that a table may take
    bool is_error_stream_terminal = false;
};

} // namespace cimhttp
