#include "commands/PathWriter.h"

#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

void WriteCsv(const std::vector<std::string>& paths, const CommandContext& context) {
    Listing listing({{"Path"}});
    for (const std::string& path : paths) {
        listing.AddRow({path});
    }
    WriteListing(listing, OutputFormat::kCsv, context);
}

void WriteLines(const std::vector<std::string>& paths, std::ostream& output) {
    for (const std::string& path : paths) {
        output << Printable(path) << '\n';
    }
}

} // namespace

void WritePaths(const std::vector<std::string>& paths, OutputFormat format, const CommandContext& context) {
    switch (format) {
    case OutputFormat::kJson:
        context.output << JsonTexts(paths) << '\n';
        break;
    case OutputFormat::kCsv:
        WriteCsv(paths, context);
        break;
    default:
        WriteLines(paths, context.output);
    }
}

} // namespace cimhttp
