#include "server/ResponseWriter.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http/chunk_encode.hpp>
#include <boost/beast/http/serializer.hpp>
#include <boost/beast/http/write.hpp>

namespace demo {

namespace http = boost::beast::http;

void ResponseWriter::Write(Whole answer) {
    answer.keep_alive(!endsConnection_);
    answer.content_length(answer.body().size());
    status_ = static_cast<int>(answer.result_int());
    http::write(stream_, answer);
}

void ResponseWriter::WriteHead(Head head) {
    head.keep_alive(!endsConnection_);
    head.chunked(true);
    status_ = static_cast<int>(head.result_int());
    http::response_serializer<http::empty_body> serializer(head);
    http::write_header(stream_, serializer);
}

void ResponseWriter::WriteChunk(std::string_view text) {
    if (!text.empty()) {
        boost::asio::write(stream_, http::make_chunk(boost::asio::buffer(text)));
    }
}

void ResponseWriter::WriteLastChunk(const Trailers& trailers) {
    boost::asio::write(stream_, http::make_chunk_last(trailers));
}

} // namespace demo
