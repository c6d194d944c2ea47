#include "output/CsvText.h"

#include "text/TerminalText.h"
#include "text/TextBuffer.h"

#include <algorithm>
#include <array>

namespace cimhttp {

namespace {

/// Bytes for which a field has to be quoted.
constexpr auto kIsSpecial = [] {
    std::array<bool, 256> isSpecial{};
    for (const unsigned char byte : {',', '"', '\r', '\n'}) {
        isSpecial[byte] = true;
    }
    return isSpecial;
}();

bool IsSpecial(char byte) { return kIsSpecial[static_cast<unsigned char>(byte)]; }

} // namespace

void AppendCsvText(std::string_view text, TextBuffer& record) {
    const bool isBare =
        !text.empty() && std::none_of(text.begin(), text.end(), IsSpecial) && text.front() != ' ' && text.back() != ' ';
    if (isBare) {
        record.Add(text);
        return;
    }
    record.Add('"');
    for (std::size_t end = text.find('"'); end != std::string_view::npos; end = text.find('"')) {
        record.Add(text.substr(0, end + 1));
        record.Add('"');
        text.remove_prefix(end + 1);
    }
    record.Add(text);
    record.Add('"');
}

void AppendCsvText(std::string_view text, bool isShown, TextBuffer& record) {
    if (isShown) {
        AppendCsvText(PrintableLines(text), record);
    } else {
        AppendCsvText(text, record);
    }
}

void AppendCsvText(std::string_view text, std::string& record) {
    TextBuffer buffer;
    AppendCsvText(text, buffer);
    record += buffer.Text();
}

void AppendCsvText(std::string_view text, bool isShown, std::string& record) {
    TextBuffer buffer;
    AppendCsvText(text, isShown, buffer);
    record += buffer.Text();
}

} // namespace cimhttp
