#pragma once

#include "commands/ServerRecords.h"
#include "output/OutputFormat.h"

#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

struct CommandContext;

/// Writes what was read of several servers, each when its turn comes.
class FleetWriter {
  public:
    virtual ~FleetWriter() = default;

    virtual void Write(const std::string& server, const std::vector<ServerRecords::Part>& parts) = 0;

    /// Writes what follows the last server. To be called once, unless no server had anything.
    virtual void End() = 0;
};

/// The writer for a form: JSON as one array, a record a line; CSV, as one document, with the record of the headings
/// first; a table of all servers; lists and other texts one below the other, MOF and graphs after a comment with the
/// name of the server. A table has the columns of all servers, and so has CSV whose columns depend on the server: these
/// are written when the last one is there, all others as they come.
/// The context must outlive it.
std::unique_ptr<FleetWriter> MakeFleetWriter(OutputFormat format, const CommandContext& context);

} // namespace cimhttp
