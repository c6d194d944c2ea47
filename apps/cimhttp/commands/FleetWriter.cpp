#include "commands/FleetWriter.h"

#include "Options.h"
#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "output/Json.h"
#include "output/ListingText.h"
#include "output/MergedListing.h"
#include "text/TerminalText.h"

#include <ostream>
#include <sstream>

namespace cimhttp {

namespace {

using Parts = std::vector<ServerRecords::Part>;

std::string TextOf(const ServerRecords::Part& part) {
    std::ostringstream text;
    part.text.WriteTo(text);
    return text.str();
}

class JsonFleetWriter : public FleetWriter {
  public:
    explicit JsonFleetWriter(const CommandContext& context) : output_(context.output), lines_(context.output) {}

    void Write(const std::string& /*server*/, const Parts& parts) override {
        for (const auto& part : parts) {
            part.text.WriteTo(lines_.Next());
        }
    }

    void End() override {
        lines_.End();
        output_ << '\n';
    }

  private:
    std::ostream& output_;
    JsonLines lines_;
};

class CsvFleetWriter : public FleetWriter {
  public:
    explicit CsvFleetWriter(const CommandContext& context) : context_(context) {}

    void Write(const std::string& server, const Parts& parts) override {
        for (const auto& part : parts) {
            if (part.rows) {
                merged_.Add(server, *part.rows);
            } else if (part.csvColumns) {
                if (!hasHeadings_) {
                    WriteCsv(WithServer(server, Listing(*part.csvColumns)), true, context_);
                    hasHeadings_ = true;
                }
                part.text.WriteTo(context_.output);
            }
        }
    }

    void End() override {
        if (!merged_.IsEmpty()) {
            WriteCsv(merged_.AsListing(), true, context_);
        }
    }

  private:
    const CommandContext& context_;
    MergedListing merged_;
    bool hasHeadings_ = false;
};

/// Texts such as `no instances` stand below the table.
class TableFleetWriter : public FleetWriter {
  public:
    explicit TableFleetWriter(const CommandContext& context) : context_(context) {}

    void Write(const std::string& server, const Parts& parts) override {
        for (const auto& part : parts) {
            if (part.rows) {
                wholeForm_ = part.wholeForm;
                merged_.Add(server, *part.rows);
            } else {
                AddText(TextOf(part));
            }
        }
    }

    void End() override {
        if (!merged_.IsEmpty()) {
            WriteListing(merged_.AsListing(), OutputFormat::kTable, context_, wholeForm_);
        }
        context_.output << (merged_.IsEmpty() || texts_.empty() ? "" : "\n") << texts_;
    }

  private:
    /// Without the empty lines, which set off a text from the table of one server.
    void AddText(const std::string& text) {
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = text.find('\n', begin) + 1;
            if (end - begin > 1) {
                texts_.append(text, begin, end - begin);
            }
            begin = end;
        }
    }

    const CommandContext& context_;
    MergedListing merged_;
    std::string texts_;
    const char* wholeForm_ = "plain";
};

class TextFleetWriter : public FleetWriter {
  public:
    TextFleetWriter(const CommandContext& context, bool hasComments) : context_(context), hasComments_(hasComments) {}

    void Write(const std::string& server, const Parts& parts) override {
        for (const auto& part : parts) {
            if (part.rows) {
                context_.output << separator_;
                WriteLists(WithServer(server, *part.rows), {context_.options.width, context_.options.usesColor},
                           context_.output);
            } else if (hasComments_) {
                context_.output << separator_ << "// " << Printable(server) << '\n';
                part.text.WriteTo(context_.output);
            } else {
                part.text.WriteTo(context_.output);
            }
            separator_ = "\n";
        }
    }

    void End() override {}

  private:
    const CommandContext& context_;
    bool hasComments_;
    const char* separator_ = "";
};

} // namespace

std::unique_ptr<FleetWriter> MakeFleetWriter(OutputFormat format, const CommandContext& context) {
    switch (format) {
    case OutputFormat::kJson:
        return std::make_unique<JsonFleetWriter>(context);
    case OutputFormat::kCsv:
        return std::make_unique<CsvFleetWriter>(context);
    case OutputFormat::kTable:
        return std::make_unique<TableFleetWriter>(context);
    default:
        return std::make_unique<TextFleetWriter>(context, format != OutputFormat::kPlain);
    }
}

} // namespace cimhttp
