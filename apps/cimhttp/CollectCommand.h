#pragma once

#include <iosfwd>

namespace cimhttp {

struct Options;
class FailureLog;
class Plugin;

/// Connects as a requested-class document and the options say, reads the classes that the document names with all their
/// instances, and writes one JSON document to `output` or to the file of the options. `errors` gets one line for each
/// class that cannot be read, and shows the progress where the options allow it. False when a class is missing. Throws
/// Failure when the document is not valid, before anything is read.
bool RunCollectCommand(const Plugin& plugin, const Options& options, FailureLog& log, std::ostream& output,
                       std::ostream& errors);

} // namespace cimhttp
