#pragma once

#include <string>
#include <string_view>

namespace cimhttp {

class TextBuffer;

// CSV as RFC 4180 has it. A null value is an empty field, and an empty text is "".

constexpr const char* kCsvRecordEnd = "\r\n";

/// Appends a field with a text.
void AppendCsvText(std::string_view text, std::string& record);
void AppendCsvText(std::string_view text, TextBuffer& record);

/// Does so for a terminal, if `isShown`, which the text must not steer.
void AppendCsvText(std::string_view text, bool isShown, std::string& record);
void AppendCsvText(std::string_view text, bool isShown, TextBuffer& record);

} // namespace cimhttp
