#pragma once

#include "server/AnswerStream.h"
#include "server/Connection.h"

#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/fields.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

#include <string_view>

namespace demo {

/// Writes the answer to a request: a whole one, or one in chunks. Each function throws ConnectionLost.
class ResponseWriter {
  public:
    using Whole = boost::beast::http::response<boost::beast::http::string_body>;
    using Head = boost::beast::http::response<boost::beast::http::empty_body>;
    using Trailers = boost::beast::http::fields;

    /// The connection must outlive the writer.
    explicit ResponseWriter(Connection& connection) : stream_(connection) {}

    /// Writes an answer with its length.
    void Write(Whole answer);

    /// Writes the head of an answer in chunks.
    void WriteHead(Head head);
    /// Writes a chunk; nothing for an empty text, which would end the body.
    void WriteChunk(std::string_view text);
    void WriteLastChunk(const Trailers& trailers);

    /// Sends what is not on its way yet.
    void Flush() { stream_.Flush(); }

    /// The status of the answer, 0 before its head.
    int Status() const { return status_; }

    /// Says that the connection ends after this answer; so does the head from now on.
    void EndConnection() { endsConnection_ = true; }
    bool EndsConnection() const { return endsConnection_; }

  private:
    AnswerStream stream_;
    int status_ = 0;
    bool endsConnection_ = false;
};

} // namespace demo
