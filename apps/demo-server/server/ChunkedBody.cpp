#include "server/ChunkedBody.h"

#include "wire/XmlWriter.h"

#include <array>
#include <charconv>

namespace demo {

namespace {

std::string Hexadecimal(std::size_t number) {
    std::array<char, 2 * sizeof(number)> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return {digits.data(), end};
}

} // namespace

void ChunkedBody::Write(std::string_view text) {
    if (text.empty()) {
        return;
    }
    // In one piece, so that it leaves in as few packets as possible.
    frame_.assign(Hexadecimal(text.size())).append("\r\n").append(text).append("\r\n");
    SendOrThrow(frame_);
}

void ChunkedBody::Finish(const Trailers& trailers) {
    frame_.assign("0\r\n");
    for (const auto& [name, value] : trailers) {
        frame_.append(name).append(": ").append(value).append("\r\n");
    }
    frame_.append("\r\n");
    SendOrThrow(frame_);
}

void ChunkedBody::SendOrThrow(std::string_view bytes) {
    if (!send_(bytes)) {
        throw OutputClosed();
    }
}

} // namespace demo
