#include "commands/ServerRecords.h"

#include <utility>

namespace cimhttp {

ServerRecords::ServerRecords(const std::string& server, OutputFormat format)
    : server_(server),
      json_(server),
      lines_(server, ServerLines::Form::kText, [this](std::string_view line) { text_ += line; }),
      output_(SinkFor(format)) {}

SinkStream::Sink ServerRecords::SinkFor(OutputFormat format) {
    switch (format) {
    case OutputFormat::kJson:
        return [this](std::string_view text) { json_.Append(text); };
    case OutputFormat::kMof:
    case OutputFormat::kDot:
        return [this](std::string_view text) { text_ += text; };
    default:
        return [this](std::string_view text) { lines_.Append(text); };
    }
}

void ServerRecords::AddRows(Listing rows, const char* wholeForm) {
    EndText();
    Part part;
    part.rows = std::move(rows);
    part.wholeForm = wholeForm;
    parts_.push_back(std::move(part));
}

void ServerRecords::AddCsv(const std::vector<Listing::Column>& columns, const std::string& records) {
    if (!parts_.empty() && parts_.back().csvColumns) {
        parts_.back().text += records;
        return;
    }
    Part part;
    part.text = records;
    part.csvColumns = columns;
    parts_.push_back(std::move(part));
}

std::vector<ServerRecords::Part> ServerRecords::Take() {
    EndText();
    return std::exchange(parts_, {});
}

void ServerRecords::EndText() {
    lines_.End();
    text_ += json_.Take();
    if (text_.find_first_not_of('\n') != std::string::npos) {
        Part part;
        part.text = std::exchange(text_, {});
        parts_.push_back(std::move(part));
    }
    text_.clear();
}

} // namespace cimhttp
