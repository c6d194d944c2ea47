#include "ListingWriter.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <string>
#include <vector>

#include "Command.h"
#include "Json.h"
#include "Listing.h"
#include "Options.h"
#include "TerminalText.h"
#include "TextTable.h"

namespace cimhttp {

namespace {

constexpr const char* kRecordEnd = "\r\n"; // RFC 4180, 2.1

std::string MemberName(std::string heading) {
    std::transform(heading.begin(), heading.end(), heading.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return heading;
}

void WriteJson(const Listing& listing, std::ostream& output) {
    output << '[';
    const char* separator = "\n";
    for (const auto& row : listing.Rows()) {
        JsonObject object;
        for (std::size_t i = 0; i < row.size(); ++i) {
            object.Add(MemberName(listing.Columns()[i].heading), JsonValue(row[i].value));
        }
        output << separator << object.Text();
        separator = ",\n";
    }
    output << "\n]\n";
}

std::string Field(const std::string& text) {
    const bool is_bare = !text.empty() && text.find_first_of(",\"\r\n") == std::string::npos && text.front() != ' ' &&
                         text.back() != ' ';
    if (is_bare) {
        return text;
    }
    std::string field = "\"";
    for (const char character : text) {
        field.append(character == '"' ? 2 : 1, character);
    }
    return field + '"';
}

/// `is_shown`: on a terminal, which the texts must not steer.
void WriteCsv(const Listing& listing, bool is_shown, std::ostream& output) {
    std::string record;
    for (const Listing::Column& column : listing.Columns()) {
        record += (record.empty() ? "" : ",") + Field(column.heading);
    }
    output << record << kRecordEnd;
    for (const auto& row : listing.Rows()) {
        const char* separator = "";
        for (const Cell& cell : row) {
            output << separator << (cell.value.IsNull() ? "" : Field(is_shown ? PrintableLines(cell.text) : cell.text));
            separator = ",";
        }
        output << kRecordEnd;
    }
}

void SayWhatIsLeftOut(std::size_t count, std::ostream& errors) {
    if (count == 0) {
        return;
    }
    errors << "cimhttp: " << count << (count == 1 ? " column is" : " columns are") << " left out; -o plain shows all\n";
}

} // namespace

void WriteListing(const Listing& listing, OutputFormat format, const CommandContext& context) {
    const TextStyle style{context.options.width, context.options.uses_color};
    switch (format) {
    case OutputFormat::kJson:
        WriteJson(listing, context.output);
        break;
    case OutputFormat::kCsv:
        WriteCsv(listing, context.options.is_output_terminal, context.output);
        break;
    case OutputFormat::kPlain:
        WriteLists(listing, style, context.output);
        break;
    default: {
        const auto left_out = WriteTable(listing, style, context.output);
        context.output.flush(); // on a terminal, the remark stands below the table
        SayWhatIsLeftOut(left_out.size(), context.errors);
    }
    }
}

} // namespace cimhttp
