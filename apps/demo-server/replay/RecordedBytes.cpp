#include "replay/RecordedBytes.h"

#include "schema/Names.h"
#include "wire/XmlWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace demo {

namespace {

/// A part of a text.
struct Range {
    std::size_t begin;
    std::size_t size;
};

/// Where the value of a header field stands; of the last head, after those of interim answers.
std::optional<Range> FieldIn(const std::string& head, std::string_view name) {
    const auto before = head.rfind("\r\n\r\n", head.size() < 5 ? 0 : head.size() - 5);
    for (std::size_t line = before == std::string::npos ? 0 : before + 4; line < head.size();) {
        const auto end = head.find("\r\n", line);
        if (end == std::string::npos || end == line) {
            return std::nullopt;
        }
        const auto colon = std::string_view(head).substr(0, end).find(':', line);
        if (colon < end && SameName(std::string_view(head).substr(line, colon - line), name)) {
            const auto begin = std::min(head.find_first_not_of(" \t", colon + 1), end);
            return Range{begin, end - begin};
        }
        line = end + 2;
    }
    return std::nullopt;
}

std::string ValueOf(const std::string& head, std::string_view name) {
    const auto field = FieldIn(head, name);
    return field ? head.substr(field->begin, field->size) : "";
}

bool IsChunked(const RecordedAnswer& answer) { return SameName(ValueOf(answer.head, "Transfer-Encoding"), "chunked"); }

/// The value of the attribute ID of the element MESSAGE.
std::optional<Range> MessageIdIn(const std::string& body) {
    const auto message = body.find("<MESSAGE");
    const auto attribute = message == std::string::npos ? message : body.find(" ID=", message);
    const auto end = message == std::string::npos ? message : body.find('>', message);
    if (attribute == std::string::npos || attribute > end || attribute + 5 >= body.size()) {
        return std::nullopt;
    }
    const std::size_t begin = attribute + 5;
    const auto quote = body.find(body[begin - 1], begin);
    return quote == std::string::npos ? std::nullopt : std::optional(Range{begin, quote - begin});
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    XmlWriter writer([&](std::string_view portion) { escaped += portion; });
    writer.Start("a").Text(text);
    writer.Flush();
    return escaped.substr(escaped.find('>') + 1);
}

/// Where the recorded answer had the ID of another request, it keeps that, so that the fault is played, too.
std::string BodyFor(const RecordedAnswer& answer, const std::string& messageId) {
    const auto id = MessageIdIn(answer.body);
    if (!id || answer.body.compare(id->begin, id->size, Escaped(answer.requestId)) != 0) {
        return answer.body;
    }
    std::string body = answer.body;
    return body.replace(id->begin, id->size, Escaped(messageId));
}

/// Without the last chunk where the end did not arrive.
std::string Chunked(const std::string& body, const RecordedAnswer& answer) {
    return (body.empty() ? "" : fmt::format("{:x}\r\n", body.size()) + body + "\r\n") +
           (answer.isWhole ? "0\r\n" + answer.trailers + "\r\n" : "");
}

/// A length that fitted the recorded body fits the new one.
std::string HeadFor(const RecordedAnswer& answer, std::size_t size) {
    std::string head = answer.head;
    const auto length = FieldIn(head, "Content-Length");
    if (length && head.substr(length->begin, length->size) == std::to_string(answer.body.size())) {
        head.replace(length->begin, length->size, std::to_string(size));
    }
    return head;
}

} // namespace

std::string BytesFor(const RecordedAnswer& answer, const std::string& messageId) {
    const std::string body = BodyFor(answer, messageId);
    return HeadFor(answer, body.size()) + (IsChunked(answer) ? Chunked(body, answer) : body);
}

bool EndsConnection(const RecordedAnswer& answer) {
    return SameName(ValueOf(answer.head, "Connection"), "close") ||
           (IsChunked(answer) ? !answer.isWhole
                              : ValueOf(answer.head, "Content-Length") != std::to_string(answer.body.size()));
}

} // namespace demo
