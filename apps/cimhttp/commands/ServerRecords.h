#pragma once

#include "files/SpooledText.h"
#include "fleet/ServerLines.h"
#include "fleet/SinkStream.h"
#include "output/JsonRecords.h"
#include "output/Listing.h"
#include "output/OutputFormat.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// What a command writes about one of several servers: it is held here until the turn of the server has come. All text
/// names the server already: lines begin with its name, and JSON is what JsonRecords makes of it.
class ServerRecords {
  public:
    /// A text, or rows, or records of CSV with the columns that they have. The parts are in the order in which they
    /// were written.
    struct Part {
        SpooledText text;
        std::optional<Listing> rows = {};
        std::optional<std::vector<Listing::Column>> csvColumns = {}; ///< the text is their records
        const char* wholeForm = "";                                  ///< see WriteListing()
    };

    /// Texts that are long are in the spool.
    ServerRecords(const std::string& server, OutputFormat format, std::shared_ptr<Spool> spool);

    const std::string& Server() const { return server_; }

    /// Where everything is written that has no rows.
    std::ostream& Output() { return output_; }

    /// Rows for a table or for lists, or for CSV whose columns may be others of another server.
    void AddRows(Listing rows, const char* wholeForm);

    /// The records of CSV whose columns are those of any server.
    void AddCsv(const std::vector<Listing::Column>& columns, const std::string& records);

    /// What has been written so far; forgets it.
    std::vector<Part> Take();

  private:
    SinkStream::Sink SinkFor(OutputFormat format);
    void AddText(std::string_view text);
    void EndText();

    std::string server_;
    std::shared_ptr<Spool> spool_;
    std::vector<Part> parts_;
    SpooledText text_;    ///< of the next part
    bool isBlank_ = true; ///< there are only empty lines in it
    JsonRecords json_;
    ServerLines lines_;
    SinkStream output_;
};

} // namespace cimhttp
