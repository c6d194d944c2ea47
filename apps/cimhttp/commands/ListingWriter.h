#pragma once

#include "output/OutputFormat.h"
#include "table/Column.h"

#include <string>
#include <vector>

namespace cimhttp {

struct CommandContext;
class Listing;
struct ListingOmissions;

/// Writes a listing to the output as a table, as lists, as JSON or as CSV. When a table lacks columns or keys because
/// the terminal is narrow, a line on the error stream says so.
///
/// JSON is an array with an object for each row, one a line; the members have the headings in lower case as names and
/// the cells' values. CSV (RFC 4180) has the headings as its first record and the cells' texts, where a null value is
/// an empty field and an empty text is "".
///
/// `wholeForm` names the form that shows what a table may lack. What is about one of several servers is handed over to
/// its records, here and below.
void WriteListing(const Listing& listing, OutputFormat format, const CommandContext& context,
                  const char* wholeForm = "plain");

/// Says on the error stream, below what was written, what a table lacks.
void SayWhatIsLeftOut(const ListingOmissions& leftOut, const char* wholeForm, const CommandContext& context);

/// Writes texts in their order: one a line, as a JSON array, or as CSV with this heading. In JSON, those of one of
/// several servers are objects with the heading in lower case as the name of their member.
void WriteTexts(const char* heading, const std::vector<std::string>& texts, OutputFormat format,
                const CommandContext& context);

/// The record of headings that CSV begins with, where it is not about one of several servers.
void WriteCsvHeadings(const std::vector<Column>& columns, const CommandContext& context);

/// The CSV of a listing, with the record of its headings or without.
void WriteCsv(const Listing& listing, bool hasHeadings, const CommandContext& context);

} // namespace cimhttp
