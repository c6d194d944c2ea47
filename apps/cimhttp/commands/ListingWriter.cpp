#include "commands/ListingWriter.h"

#include "Options.h"
#include "commands/Command.h"
#include "commands/ServerRecords.h"
#include "output/CsvText.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "output/ListingText.h"
#include "text/Ascii.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <ostream>
#include <string_view>

namespace cimhttp {

namespace {

void WriteJson(const Listing& listing, std::ostream& output) {
    const auto rowJson = [&](const std::vector<Cell>& row) {
        JsonObject object;
        for (std::size_t i = 0; i < row.size(); ++i) {
            object.Add(AsciiLower(listing.Columns()[i].heading), JsonValue(row[i].value));
        }
        return object.Text();
    };
    WriteJsonLines(listing.Rows(), rowJson, output);
    output << '\n';
}

/// `isShown`, here and below: on a terminal, which the texts must not steer.
void WriteHeadings(const std::vector<Listing::Column>& columns, bool isShown, std::ostream& output) {
    std::string record;
    for (const Listing::Column& column : columns) {
        record += record.empty() ? "" : ",";
        AppendCsvText(column.heading, isShown, record);
    }
    output << record << kCsvRecordEnd;
}

void AppendRecord(const std::vector<Cell>& row, bool isShown, std::string& record) {
    const char* separator = "";
    for (const Cell& cell : row) {
        record += separator;
        if (!cell.value.IsNull()) {
            AppendCsvText(cell.text, isShown, record);
        }
        separator = ",";
    }
    record += kCsvRecordEnd;
}

void WriteRecords(const Listing& listing, bool isShown, std::ostream& output) {
    std::string record;
    for (const auto& row : listing.Rows()) {
        record.clear();
        AppendRecord(row, isShown, record);
        output << record;
    }
}

/// Hands over the CSV of one of several servers.
void AddCsv(const Listing& listing, bool isShown, ServerRecords& records) {
    if (listing.HasVaryingColumns()) {
        records.AddRows(listing, "");
        return;
    }
    std::string text;
    for (const auto& row : listing.Rows()) {
        AppendCsvText(records.Server(), isShown, text);
        text += ',';
        AppendRecord(row, isShown, text);
    }
    records.AddCsv(listing.Columns(), text);
}

/// One line that names as many columns as it has room for.
std::string LeftOutColumns(const std::vector<std::string>& columns, const std::string& hint, std::size_t width) {
    std::string line = "cimhttp: " + Counted(columns.size(), "column is", "columns are") + " left out" + hint;
    std::string names = "cimhttp: left out: ";
    for (std::size_t count = 1; count <= columns.size() && DisplayWidth(names) <= width; ++count) {
        names += (count == 1 ? "" : ", ") + columns[count - 1];
        const std::size_t left = columns.size() - count;
        const std::string more = left == 0 ? "" : " and " + std::to_string(left) + " more";
        std::string whole = names;
        whole.append(more).append(hint);
        line = DisplayWidth(whole) <= width ? whole : line;
    }
    return line;
}

} // namespace

void SayWhatIsLeftOut(const ListingOmissions& leftOut, const char* wholeForm, const CommandContext& context) {
    const std::string hint = std::string("; -o ") + wholeForm + " shows all";
    context.output.flush(); // on a terminal, the remarks stand below the table
    if (!leftOut.columns.empty()) {
        context.errors << LeftOutColumns(leftOut.columns, hint, context.options.width) << '\n';
    }
    if (leftOut.keys) {
        context.errors << "cimhttp: references lack keys that all rows share" << hint << '\n';
    }
    if (leftOut.digits) {
        context.errors << "cimhttp: numbers that end in … are cut off" << hint << '\n';
    }
    if (leftOut.texts) {
        context.errors << "cimhttp: texts of more than 64 KiB are cut off" << hint << '\n';
    }
}

void WriteCsv(const Listing& listing, bool hasHeadings, const CommandContext& context) {
    const bool isShown = context.options.isOutputTerminal;
    if (context.records != nullptr) {
        AddCsv(listing, isShown, *context.records);
        return;
    }
    if (hasHeadings) {
        WriteHeadings(listing.Columns(), isShown, context.output);
    }
    WriteRecords(listing, isShown, context.output);
}

void WriteCsvHeadings(const std::vector<Column>& columns, const CommandContext& context) {
    WriteHeadings(columns, context.options.isOutputTerminal, context.output);
}

void WriteTexts(const char* heading, const std::vector<std::string>& texts, OutputFormat format,
                const CommandContext& context) {
    const bool isOneOfSeveral = context.records != nullptr; // which is named beside each text
    if (format == OutputFormat::kJson && !isOneOfSeveral) {
        context.output << JsonTexts(texts) << '\n';
    } else if (format == OutputFormat::kJson || format == OutputFormat::kCsv) {
        Listing listing({{heading}});
        for (const std::string& text : texts) {
            listing.AddRow({text});
        }
        WriteListing(listing, format, context);
    } else {
        for (const std::string& text : texts) {
            context.output << Printable(text) << '\n';
        }
    }
}

void WriteListing(const Listing& listing, OutputFormat format, const CommandContext& context, const char* wholeForm) {
    const TextStyle style{context.options.width, context.options.usesColor};
    const bool isForPeople = format != OutputFormat::kJson && format != OutputFormat::kCsv;
    if (context.records != nullptr && isForPeople) {
        context.records->AddRows(listing, wholeForm);
        return;
    }
    switch (format) {
    case OutputFormat::kJson:
        WriteJson(listing, context.output);
        break;
    case OutputFormat::kCsv:
        WriteCsv(listing, true, context);
        break;
    case OutputFormat::kPlain:
        WriteLists(listing, style, context.output);
        break;
    default: {
        const auto leftOut = WriteTable(listing, style, context.output);
        SayWhatIsLeftOut(leftOut, wholeForm, context);
    }
    }
}

} // namespace cimhttp
