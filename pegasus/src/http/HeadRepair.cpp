#include "http/HeadRepair.h"

#include "http/FieldText.h"
#include "text/Ascii.h"

#include <cstring>
#include <string_view>

namespace Pegasus::http {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// The fields of a head that say how long the body is.
struct LengthFields {
    bool isChunked = false;
    bool hasLength = false;
};

/// Calls for each line that can be a field, with its beginning, its name and its value.
template <typename Visit>
void forEachField(char* bytes, std::size_t size, Visit visit) {
    const std::string_view head(bytes, size);
    std::size_t begin = 0;
    for (std::size_t end = head.find(kLineEnd); end != std::string_view::npos; end = head.find(kLineEnd, begin)) {
        const std::string_view line = head.substr(begin, end - begin);
        if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
            visit(bytes + begin, line.substr(0, colon), withoutBlanks(line.substr(colon + 1)));
        }
        begin = end + kLineEnd.size();
    }
}

LengthFields lengthFieldsOf(char* bytes, std::size_t headSize) {
    LengthFields found;
    forEachField(bytes, headSize, [&](char* /*line*/, std::string_view name, std::string_view value) {
        found.isChunked = found.isChunked || (text::equalIgnoringCase(name, "Transfer-Encoding") &&
                                              text::equalIgnoringCase(value, "chunked"));
        found.hasLength = found.hasLength || text::equalIgnoringCase(name, "Content-Length");
    });
    return found;
}

/// Gives the length another name.
void hideLength(char* bytes, std::size_t headSize) {
    constexpr std::string_view kOther = "Ignored-Length";
    forEachField(bytes, headSize, [&](char* line, std::string_view name, std::string_view /*value*/) {
        if (text::equalIgnoringCase(name, "Content-Length")) {
            std::memcpy(line, kOther.data(), kOther.size());
        }
    });
}

} // namespace

bool lacksBlankBehindStatus(std::string_view text) {
    return text.size() > kStatusLength && text.substr(0, 7) == "HTTP/1." && text[8] == ' ' && text::isDigit(text[9]) &&
           text::isDigit(text[10]) && text::isDigit(text[11]) && text[kStatusLength] == '\r';
}

bool hideOverriddenLength(char* head, std::size_t size) {
    const LengthFields fields = lengthFieldsOf(head, size);
    const bool hasBoth = fields.isChunked && fields.hasLength;
    if (hasBoth) {
        hideLength(head, size);
    }
    return hasBoth;
}

} // namespace Pegasus::http
