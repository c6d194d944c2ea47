#include "http/ResponseReader.h"

#include "model/Marked.h"

#include <Pegasus/Client/CIMClientException.h>
#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace Pegasus::http {

namespace {

namespace beast = boost::beast;
using boost::system::error_code;

constexpr unsigned kSwitchingProtocols = 101;

/// How much of a body is read at once; the more it is, the less often an object is cut.
constexpr std::size_t kBufferBytes = std::size_t{256} << 10U;

/// The least that follows where the parser asks for more of a body: the end of its chunks, "0\r\n\r\n". Beast asserts
/// that it is not given less once it has seen the zero.
constexpr std::size_t kShortestRest = 5;

/// Beast's parser, delivering straight into our own structures and to the sink: the body is never copied.
class Parser final : public beast::http::basic_parser<false> {
  public:
    Parser() {
        header_limit(kMaxHeaderBytes);
        // Whoever takes the body limits what is kept. (No limit at all would be boost::none, which Beast 1.74 takes
        // for zero where there is a Content-Length.)
        body_limit(std::numeric_limits<std::uint64_t>::max());
    }

    const HttpHead& head() const { return head_; }
    const HttpFields& trailers() const { return trailers_; }
    /// The sink must outlive the body.
    void deliverTo(const BodySink& sink) { sink_ = std::cref(sink); }

  private:
    using string_view = beast::string_view;

    static std::string_view standard(string_view text) { return {text.data(), text.size()}; }

    std::size_t deliver(string_view part) {
        sink_(standard(part));
        return part.size();
    }

    void on_request_impl(beast::http::verb, string_view, string_view, int, error_code&) override {}
    void on_response_impl(int status, string_view reason, int, error_code&) override {
        head_.status = static_cast<unsigned>(status);
        head_.reason = standard(reason);
    }
    void on_field_impl(beast::http::field, string_view name, string_view value, error_code&) override {
        (is_header_done() ? trailers_ : head_.fields).add(standard(name), standard(value));
    }
    void on_header_impl(error_code&) override {}
    void on_body_init_impl(const boost::optional<std::uint64_t>&, error_code&) override {}
    std::size_t on_body_impl(string_view part, error_code&) override { return deliver(part); }
    void on_chunk_header_impl(std::uint64_t, string_view, error_code&) override {}
    std::size_t on_chunk_body_impl(std::uint64_t, string_view part, error_code&) override { return deliver(part); }
    void on_finish_impl(error_code&) override {}

    HttpHead head_;
    HttpFields trailers_;
    BodySink sink_;
};

/// Whether bytes begin like a TLS record that carries an alert or a handshake message.
bool looksLikeTls(std::string_view bytes) {
    return bytes.size() >= 2 && (bytes[0] == 0x15 || bytes[0] == 0x16) && bytes[1] == 0x03;
}

} // namespace

class ResponseReader::Impl {
  public:
    Impl(Channel& channel, const Endpoint& endpoint) : channel_(channel), endpoint_(endpoint) {}

    const HttpHead& readHead(const Deadline& deadline, Uint32 interimAnswers) {
        hasBegun_ = false;
        headBytes_.clear();
        for (readOneHead(deadline); isInterim(parser_->head().status); readOneHead(deadline)) {
            if (interimAnswers-- == 0) {
                fail<TooMuch>("the server sends one interim answer after the other instead of the one that counts");
            }
        }
        return parser_->head();
    }

    void readBody(const BodySink& sink, const Deadline& deadline) {
        parser_->deliverTo(sink);
        parser_->eager(true);
        while (!parser_->is_done()) {
            advance(deadline);
        }
    }

    void keepHeads() { keepsHeads_ = true; }
    const std::string& headBytes() const { return headBytes_; }

    const Parser& parser() const { return *parser_; }
    bool hasSurplus() const { return begin_ != end_; }

  private:
    using TooMuch = detail::Marked<CIMClientMalformedHTTPException, ExceedsLimit>;

    void readOneHead(const Deadline& deadline) {
        parser_.emplace();
        std::size_t size = 0;
        while (!parser_->is_header_done()) {
            size += advance(deadline);
            if (size > kMaxHeaderBytes) {
                failAtLimit();
            }
        }
    }

    bool isInterim(unsigned status) const {
        if (status == kSwitchingProtocols) {
            fail("the server switches to another protocol, unasked");
        }
        return status / 100 == 1;
    }

    /// Parses what has arrived, after receiving more where that did not suffice. Returns the number of bytes parsed.
    std::size_t advance(const Deadline& deadline) {
        if ((begin_ == end_ || starved_) && !receive(deadline)) {
            finishAtEnd();
            return 0;
        }
        if (starved_ && parser_->is_header_done() && end_ - begin_ < kShortestRest) {
            return 0;
        }
        const std::string_view input(&buffer_[begin_], end_ - begin_);
        if (!parser_->is_header_done() && looksLikeTls(input)) {
            headBytes_ = keepsHeads_ ? input : std::string_view();
            fail<detail::Marked<CIMClientMalformedHTTPException, PeerSpeaksTls>>(
                "the server speaks TLS on this port; connect to it with an SSLContext");
        }
        error_code error;
        const bool isOfHead = !parser_->is_header_done();
        const std::size_t parsed = parser_->put({input.data(), input.size()}, error);
        begin_ += parsed;
        starved_ = error == beast::http::error::need_more;
        if (isOfHead && keepsHeads_) {
            headBytes_ += error && !starved_ ? input : input.substr(0, parsed);
        }
        if (error && !starved_) {
            failAt(error);
        }
        return parsed;
    }

    /// False at the end of the stream.
    bool receive(const Deadline& deadline) {
        makeRoom();
        try {
            const std::size_t received = channel_.readSome(&buffer_[end_], capacity() - end_, deadline);
            hasBegun_ = hasBegun_ || received > 0;
            end_ += received;
            return received > 0;
        } catch (const ConnectionLost& lost) {
            if (hasBegun_) {
                fail("the connection was lost in the middle of the answer: " + lost.reason);
            }
            throw;
        }
    }

    /// What the parser takes only as a whole, all but a plain body, is limited by what the buffer may hold of it.
    std::size_t capacity() const {
        return parser_->is_header_done() && !parser_->chunked() ? kBufferBytes : kMaxHeaderBytes;
    }

    void makeRoom() {
        if (begin_ == end_) {
            begin_ = end_ = 0;
        } else if (end_ == capacity()) {
            if (begin_ == 0) {
                failAtLimit();
            }
            std::memmove(&buffer_[0], &buffer_[begin_], end_ - begin_);
            end_ -= begin_;
            begin_ = 0;
        }
    }

    /// An answer without a length is complete at the end of the stream, any other is cut off.
    void finishAtEnd() {
        if (!hasBegun_) {
            throw ConnectionLost{"the server closed the connection without an answer"};
        }
        error_code error = beast::http::error::partial_message;
        if (parser_->got_some()) {
            parser_->put_eof(error);
        }
        if (error) {
            fail("the server closed the connection in the middle of the answer");
        }
    }

    [[noreturn]] void failAt(const error_code& error) const {
        if (error == beast::http::error::header_limit) {
            failAtLimit();
        }
        fail("the answer is not valid HTTP: " + error.message());
    }

    [[noreturn]] void failAtLimit() const {
        fail<TooMuch>("a header block of the answer is longer than " + std::to_string(kMaxHeaderBytes) + " bytes");
    }

    template <typename Failure = CIMClientMalformedHTTPException>
    [[noreturn]] void fail(const std::string& what) const {
        throw Failure(String(endpoint_.text() + ": " + what));
    }

    Channel& channel_;
    const Endpoint& endpoint_;
    std::optional<Parser> parser_;
    const std::unique_ptr<char[]> buffer_{new char[kBufferBytes]}; // its content: [begin_, end_)
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::string headBytes_;
    bool keepsHeads_ = false;
    bool hasBegun_ = false;
    bool starved_ = false; // what the buffer holds is not enough to go on
};

ResponseReader::ResponseReader(Channel& channel, const Endpoint& endpoint)
    : impl_(std::make_unique<Impl>(channel, endpoint)) {}

ResponseReader::~ResponseReader() = default;

const HttpHead& ResponseReader::readHead(const Deadline& deadline, Uint32 interimAnswers) {
    return impl_->readHead(deadline, interimAnswers);
}

void ResponseReader::keepHeads() { impl_->keepHeads(); }

const std::string& ResponseReader::headBytes() const { return impl_->headBytes(); }

void ResponseReader::readBody(const BodySink& sink, const Deadline& deadline) { impl_->readBody(sink, deadline); }

const HttpFields& ResponseReader::trailers() const { return impl_->parser().trailers(); }

bool ResponseReader::keepsConnection() const { return impl_->parser().keep_alive(); }

bool ResponseReader::hasSurplus() const { return impl_->hasSurplus(); }

} // namespace Pegasus::http
