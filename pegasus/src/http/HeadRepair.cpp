#include "http/HeadRepair.h"

#include "http/HttpHead.h"

#include <cstring>
#include <string_view>

namespace Pegasus::http {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// "HTTP/1.1 200", and no more.
bool isStatusAlone(std::string_view line) {
    return line.size() == 12 && line.substr(0, 7) == "HTTP/1." && line[8] == ' ' && isDigit(line[9]) &&
           isDigit(line[10]) && isDigit(line[11]);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

/// The fields of a head that say how long the body is.
struct LengthFields {
    bool isChunked = false;
    bool hasLength = false;
};

/// Calls for each line that begins a field, with its beginning, its name and its value.
template <typename Visit>
void forEachField(char* bytes, std::size_t headSize, Visit visit) {
    const std::string_view head(bytes, headSize);
    for (std::size_t end = head.find(kLineEnd); end != std::string_view::npos;) {
        const std::size_t begin = end + kLineEnd.size();
        end = head.find(kLineEnd, begin);
        const std::string_view line = head.substr(begin, end == std::string_view::npos ? end : end - begin);
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos) {
            visit(bytes + begin, line.substr(0, colon), trimmed(line.substr(colon + 1)));
        }
    }
}

LengthFields lengthFieldsOf(char* bytes, std::size_t headSize) {
    LengthFields found;
    forEachField(bytes, headSize, [&](char* /*line*/, std::string_view name, std::string_view value) {
        found.isChunked =
            found.isChunked || (equalsNoCase(name, "Transfer-Encoding") && equalsNoCase(value, "chunked"));
        found.hasLength = found.hasLength || equalsNoCase(name, "Content-Length");
    });
    return found;
}

/// Gives the length another name.
void hideLength(char* bytes, std::size_t headSize) {
    constexpr std::string_view kOther = "Ignored-Length";
    forEachField(bytes, headSize, [&](char* line, std::string_view name, std::string_view /*value*/) {
        if (equalsNoCase(name, "Content-Length")) {
            std::memcpy(line, kOther.data(), kOther.size());
        }
    });
}

} // namespace

HeadRepair repairHead(char* bytes, std::size_t headSize, std::size_t size) {
    const LengthFields fields = lengthFieldsOf(bytes, headSize);
    const bool hasBoth = fields.isChunked && fields.hasLength;
    if (hasBoth) {
        hideLength(bytes, headSize);
    }
    const std::string_view head(bytes, headSize);
    const std::size_t statusEnd = head.find(kLineEnd);
    if (isStatusAlone(head.substr(0, statusEnd))) {
        std::memmove(bytes + statusEnd + 1, bytes + statusEnd, size - statusEnd);
        bytes[statusEnd] = ' ';
        ++size;
    }
    return {size, hasBoth};
}

} // namespace Pegasus::http
