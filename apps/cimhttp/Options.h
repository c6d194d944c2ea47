#pragma once

#include "cimhttp/DisplayTexts.h"
#include "connection/TlsSettings.h"
#include "host/ILogger.h"
#include "output/OutputFormat.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace cimhttp {

class OperationStatistics;
struct SavedConnection;

/// What the command line and the environment say for all commands.
struct Options {
    std::optional<std::string> connection; ///< the named connection, or what names several, see ServerList
    std::optional<std::string> host;       ///< what the command line says about the server, see ServerName
    std::optional<std::string> user;
    std::optional<std::string> password;         ///< from the password file
    std::optional<std::string> passwordVariable; ///< from the environment
    std::optional<bool> tls;
    std::optional<int> port;
    std::optional<std::string> nameSpace; ///< of the server
    TlsSettings tlsSettings;
    bool strict = false;                       ///< whether an answer of which a part cannot be read fails as a whole
    std::optional<unsigned> timeout;           ///< in seconds
    std::optional<std::string> recording = {}; ///< the file that all is recorded in
    std::string plugin;                        ///< the path of the plug-in
    std::optional<NQORVYX20::ILogger::EVYXLogSeverity> logLevel = {}; ///< empty: no log
    NQORVYX20::DisplayForm textForm = {};
    std::optional<std::string> trace = {};                ///< the file for what is sent and received
    std::shared_ptr<OperationStatistics> statistics = {}; ///< where what operations take is counted; null: nowhere
    std::optional<OutputFormat> format = {};              ///< empty: the command's first one
    std::size_t width = 0;                                ///< the columns that a table may take; 0 for any number
    bool usesColor = false;
    bool isUtf8 = false; ///< whether the locale's character set is UTF-8
    bool isInputTerminal = false;
    bool isOutputTerminal = false;
    bool isErrorStreamTerminal = false;
    std::size_t errorStreamWidth = 0; ///< 0 when it is not known

    std::optional<std::size_t> parallel = {}; ///< how many servers are connected at once at most
    bool asCompleted = false;                 ///< servers are written in the order in which they are done

    // Of one of several servers:
    std::optional<std::string> server = {};            ///< its name; empty for the only one
    std::shared_ptr<const SavedConnection> saved = {}; ///< the named connection, which is not read again
    std::optional<std::chrono::steady_clock::time_point> deadline = {}; ///< when all must be done
};

/// The options with which nobody is asked anything, as without a terminal.
inline Options Unattended(Options options) {
    options.isInputTerminal = false;
    options.isErrorStreamTerminal = false;
    return options;
}

} // namespace cimhttp
