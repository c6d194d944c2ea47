#pragma once

#include "server/Connection.h"
#include "server/RequestHead.h"

#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/parser.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace demo {

/// Reads a request from a connection: first its head, then its body.
class RequestReader {
  public:
    /// The longest headers of a request, the longest one of them, their number, and the longest body, in bytes as they
    /// arrive.
    static constexpr std::size_t kMaxHeaderBytes = std::size_t{64} * 1024;
    static constexpr std::size_t kMaxHeaderLine = std::size_t{8} * 1024;
    static constexpr std::ptrdiff_t kMaxHeaderLines = 128;
    static constexpr std::size_t kMaxBodyBytes = std::size_t{4} * 1024 * 1024;

    /// Takes a part of a body.
    using Sink = std::function<void(std::string_view)>;

    /// The connection must outlive the reader.
    explicit RequestReader(Connection& connection);

    /// Reads the head, which lives as long as the reader. Throws Refusal for what is not HTTP or too long, and
    /// ConnectionLost.
    const RequestHead& ReadHead();
    /// Hands the body to the sink as it arrives. Throws as ReadHead() does, and Refusal for a request with trailers;
    /// what the sink throws passes through.
    void ReadBody(const Sink& sink);

    /// Whether all of the request was read and the client wants to send another one.
    bool KeepsConnection() const { return parser_.is_done() && parser_.keep_alive(); }

  private:
    void CheckHead() const;
    static void CheckLength(std::uint64_t bodyBytes);
    std::size_t Parse();

    Connection& connection_;
    boost::beast::http::request_parser<boost::beast::http::buffer_body> parser_;
    /// Whether what has arrived is not enough to go on.
    bool isStarved_ = false;
};

} // namespace demo
