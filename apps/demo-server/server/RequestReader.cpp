#include "server/RequestReader.h"

#include "server/Refusal.h"

#include <boost/beast/http/error.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>

namespace demo {

namespace http = boost::beast::http;
using http::status;

namespace {

/// How much of a body is handed over at once.
constexpr std::size_t kPortion = std::size_t{16} * 1024;

/// The least that follows where the parser asks for more of a body: the end of its chunks, "0\r\n\r\n". Beast asserts
/// that it is not given less once it has seen the zero.
constexpr std::size_t kShortestRest = 5;

std::ptrdiff_t CountOf(const RequestHead& head) { return std::distance(head.begin(), head.end()); }

/// The length of a header as it arrives.
std::size_t LengthOf(const http::fields::value_type& header) {
    constexpr std::size_t kSeparator = 2;
    return header.name_string().size() + kSeparator + header.value().size();
}

} // namespace

RequestReader::RequestReader(Connection& connection) : connection_(connection) {
    parser_.header_limit(kMaxHeaderBytes);
    // The length of the body counts only after other errors.
    parser_.body_limit(std::numeric_limits<std::uint64_t>::max());
}

const RequestHead& RequestReader::ReadHead() {
    std::size_t size = 0;
    while (!parser_.is_header_done()) {
        size += Parse();
        if (size > kMaxHeaderBytes) {
            throw Refusal(status::request_header_fields_too_large);
        }
    }
    connection_.EndHeaders();
    CheckHead();
    return parser_.get();
}

void RequestReader::CheckHead() const {
    const RequestHead& head = parser_.get();
    if (head.target().size() > kMaxHeaderLine) {
        throw Refusal(status::uri_too_long);
    }
    const bool hasLongLine =
        std::any_of(head.begin(), head.end(), [](const auto& header) { return LengthOf(header) > kMaxHeaderLine; });
    if (hasLongLine || CountOf(head) > kMaxHeaderLines) {
        throw Refusal(status::request_header_fields_too_large);
    }
    if (head.count(http::field::transfer_encoding) != 0 && !parser_.chunked()) {
        throw Refusal(status::bad_request); // where the body ends cannot be known
    }
}

void RequestReader::ReadBody(const Sink& sink) {
    CheckLength(parser_.content_length().value_or(0));
    if (!parser_.is_done() && AwaitsContinue(parser_.get())) {
        connection_.Write("HTTP/1.1 100 Continue\r\n\r\n");
    }
    std::array<char, kPortion> portion; // NOLINT(cppcoreguidelines-pro-type-member-init): filled before it is read
    auto& body = parser_.get().body();
    const std::ptrdiff_t headers = CountOf(parser_.get());
    std::size_t arrived = 0;
    while (!parser_.is_done()) {
        body.data = portion.data();
        body.size = portion.size();
        arrived += Parse();
        CheckLength(arrived);
        sink({portion.data(), portion.size() - body.size});
    }
    if (CountOf(parser_.get()) != headers) { // the parser puts trailers among the headers, where they would count
        throw Refusal(status::bad_request);
    }
}

void RequestReader::CheckLength(std::uint64_t bodyBytes) {
    if (bodyBytes > kMaxBodyBytes) {
        throw Refusal(status::payload_too_large);
    }
}

/// Parses what has arrived, after receiving more where that did not suffice. Returns the number of bytes parsed.
std::size_t RequestReader::Parse() {
    if (isStarved_ || connection_.Arrived().empty()) {
        connection_.Receive();
    }
    const auto arrived = connection_.Arrived();
    if (isStarved_ && parser_.is_header_done() && arrived.size() < kShortestRest) {
        return 0;
    }
    boost::system::error_code error;
    const std::size_t parsed = parser_.put({arrived.data(), arrived.size()}, error);
    connection_.Take(parsed);
    isStarved_ = error == http::error::need_more;
    if (isStarved_ && parser_.is_header_done() && connection_.Arrived().size() > kMaxHeaderLine) {
        throw Refusal(status::bad_request); // the line before a chunk, or the trailers
    }
    if (error && !isStarved_ && error != http::error::need_buffer) {
        throw Refusal(error == http::error::header_limit ? status::request_header_fields_too_large
                                                         : status::bad_request);
    }
    return parsed;
}

} // namespace demo
