#include "commands/ServerRecords.h"

#include <utility>

namespace cimhttp {

ServerRecords::ServerRecords(const std::string& server, OutputFormat format, std::shared_ptr<Spool> spool)
    : server_(server),
      spool_(std::move(spool)),
      text_(spool_),
      json_(server),
      lines_(server, ServerLines::Form::kText, [this](std::string_view line) { AddText(line); }),
      output_(SinkFor(format)) {}

SinkStream::Sink ServerRecords::SinkFor(OutputFormat format) {
    switch (format) {
    case OutputFormat::kJson:
        return [this](std::string_view text) {
            json_.Append(text);
            AddText(json_.TakeSoFar());
        };
    case OutputFormat::kMof:
    case OutputFormat::kDot:
        return [this](std::string_view text) { AddText(text); };
    default:
        return [this](std::string_view text) { lines_.Append(text); };
    }
}

void ServerRecords::AddRows(Listing rows, const char* wholeForm) {
    EndText();
    parts_.push_back({SpooledText(spool_), std::move(rows), {}, wholeForm});
}

void ServerRecords::AddCsv(const std::vector<Listing::Column>& columns, const std::string& records) {
    if (parts_.empty() || !parts_.back().csvColumns) {
        EndText();
        parts_.push_back({SpooledText(spool_), {}, columns, ""});
    }
    parts_.back().text.Append(records);
}

std::vector<ServerRecords::Part> ServerRecords::Take() {
    EndText();
    return std::exchange(parts_, {});
}

void ServerRecords::AddText(std::string_view text) {
    isBlank_ = isBlank_ && text.find_first_not_of('\n') == std::string_view::npos;
    text_.Append(text);
}

void ServerRecords::EndText() {
    lines_.End();
    AddText(json_.End());
    SpooledText text = std::exchange(text_, SpooledText(spool_));
    if (!isBlank_) {
        parts_.push_back({std::move(text), {}, {}, ""});
    }
    isBlank_ = true;
}

} // namespace cimhttp
