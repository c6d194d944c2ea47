#pragma once

#include "server/Connection.h"

#include <boost/asio/buffer.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/system/error_code.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace demo {

/// A connection as Beast and Asio write to it (SyncWriteStream). Small pieces wait for each other, so that a short
/// answer leaves in one packet. Writing throws ConnectionLost.
class AnswerStream {
  public:
    /// The connection must outlive the stream.
    explicit AnswerStream(Connection& connection) : connection_(connection) {}

    template <typename Buffers>
    std::size_t write_some(const Buffers& buffers) {
        for (const boost::asio::const_buffer buffer : boost::beast::buffers_range_ref(buffers)) {
            Write({static_cast<const char*>(buffer.data()), buffer.size()});
        }
        return boost::asio::buffer_size(buffers);
    }
    template <typename Buffers>
    std::size_t write_some(const Buffers& buffers, boost::system::error_code& /*error*/) {
        return write_some(buffers);
    }

    /// Sends what is waiting.
    void Flush();

  private:
    void Write(std::string_view bytes);

    Connection& connection_;
    std::string waiting_;
};

} // namespace demo
