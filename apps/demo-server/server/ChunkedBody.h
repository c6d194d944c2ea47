#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace demo {

/// Frames a body for Transfer-Encoding: chunked, with trailers at its end (RFC 9112, 7.1).
class ChunkedBody {
  public:
    /// Sends bytes; false when the connection does not take them any more.
    using Send = std::function<bool(std::string_view)>;
    using Trailers = std::vector<std::pair<std::string, std::string>>;

    explicit ChunkedBody(Send send) : send_(std::move(send)) {}

    // Both throw OutputClosed when the connection does not take the bytes any more.

    /// Sends a chunk; nothing for an empty text, which would end the body.
    void Write(std::string_view text);
    /// Ends the body.
    void Finish(const Trailers& trailers);

  private:
    void SendOrThrow(std::string_view bytes);

    Send send_;
    std::string frame_;
};

} // namespace demo
