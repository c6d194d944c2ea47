#include "http/ResponseReader.h"

#include "errors/Marked.h"
#include "http/HeadRepair.h"

#include <Pegasus/Client/CIMClientException.h>

#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>

#include <algorithm>
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
        // The sink of the body limits what is kept. (No limit at all would be boost::none, which Beast 1.74 takes for
        // zero where there is a Content-Length.)
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
        arrived_ = keepsHeads_ ? input() : std::string_view();
        for (readOneHead(deadline); isInterim(parser_->head().status); readOneHead(deadline)) {
            if (interimAnswers-- == 0) {
                fail<TooMuch>("the server sends one interim answer after the other instead of the one that counts");
            }
        }
        return parser_->head();
    }

    void readBody(const BodySink& sink, const Deadline& deadline) {
        while (!readSome(sink, deadline)) {
        }
    }

    bool readSome(const BodySink& sink, const Deadline& deadline) {
        parser_->deliverTo(sink);
        parser_->eager(true);
        if (!parser_->is_done()) {
            advance(deadline);
        }
        return parser_->is_done();
    }

    bool hasInput() const { return (begin_ != end_ && !starved_) || channel_.hasInput(); }

    void keepHeads() { keepsHeads_ = true; }
    /// As they arrived, before anything in them was repaired.
    std::string headBytes() const {
        return arrived_.substr(0, arrived_.size() - (parser_->is_header_done() ? input().size() : 0));
    }

    const Parser& parser() const { return *parser_; }
    /// Where an answer states its length in two ways, a proxy may have understood the other one.
    bool keepsConnection() const { return parser_->keep_alive() && !ignoresItsLength_; }
    bool hasSurplus() const { return begin_ != end_; }

  private:
    using TooMuch = errors::Marked<CIMClientMalformedHTTPException, ExceedsLimit>;

    void readOneHead(const Deadline& deadline) {
        parser_.emplace();
        hasStatus_ = false;
        headSearched_ = 0;
        ignoresItsLength_ = false;
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
        const bool inHead = !parser_->is_header_done();
        if (inHead) {
            checkForTls();
        }
        const std::size_t ready = inHead ? readyHead() : input().size();
        error_code error;
        const std::size_t parsed = parser_->put({&buffer_[begin_], ready}, error);
        begin_ += parsed;
        starved_ = error == beast::http::error::need_more;
        if (inHead && parsed != 0) {
            hasStatus_ = true;
            headSearched_ = 0;
        }
        if (error && !starved_) {
            failAt(error);
        }
        return parsed;
    }

    void checkForTls() const {
        if (looksLikeTls(input())) {
            fail<errors::Marked<CIMClientMalformedHTTPException, PeerSpeaksTls>>(
                "the server speaks TLS on this port; connect to it with an SSLContext");
        }
    }

    std::string_view input() const { return {&buffer_[begin_], end_ - begin_}; }

    /// How much of a head the parser gets now: its first line as it comes, so that what is no HTTP is noticed at once,
    /// and all of the fields together, once the parser accepts them.
    std::size_t readyHead() {
        if (lacksBlankBehindStatus(input()) && end_ != kBufferBytes) {
            char* const blank = &buffer_[begin_ + kStatusLength];
            std::memmove(blank + 1, blank, end_ - begin_ - kStatusLength);
            *blank = ' ';
            ++end_;
        }
        constexpr std::string_view kEnd = "\r\n\r\n";
        const bool hasNoFields = hasStatus_ && input().substr(0, 2) == kEnd.substr(0, 2);
        const std::size_t end = hasNoFields ? 0 : input().find(kEnd, headSearched_);
        if (end != std::string_view::npos) {
            ignoresItsLength_ = hideOverriddenLength(&buffer_[begin_], std::min(end + kEnd.size(), input().size()));
            return input().size();
        }
        headSearched_ = input().size() - std::min(input().size(), kEnd.size() - 1);
        const std::size_t lineEnd = input().find('\n');
        return hasStatus_ ? 0 : lineEnd == std::string_view::npos ? input().size() : lineEnd + 1;
    }

    /// False at the end of the stream.
    bool receive(const Deadline& deadline) {
        makeRoom();
        try {
            const std::size_t received = channel_.readSome(&buffer_[end_], capacity() - end_, deadline);
            hasBegun_ = hasBegun_ || received > 0;
            if (keepsHeads_ && !parser_->is_header_done()) {
                arrived_.append(&buffer_[end_], received);
            }
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
        } else if (end_ >= capacity()) { // beyond it where a blank was put into a full head
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
    std::string arrived_; // of the heads, where they are kept
    bool keepsHeads_ = false;
    bool hasBegun_ = false;
    bool starved_ = false;         // what the buffer holds is not enough to go on
    bool hasStatus_ = false;       // the parser, of the head that it is given
    std::size_t headSearched_ = 0; // how much of what the buffer holds has no end of a head
    bool ignoresItsLength_ = false;
};

ResponseReader::ResponseReader(Channel& channel, const Endpoint& endpoint)
    : impl_(std::make_unique<Impl>(channel, endpoint)) {}

ResponseReader::~ResponseReader() = default;

const HttpHead& ResponseReader::readHead(const Deadline& deadline, Uint32 interimAnswers) {
    return impl_->readHead(deadline, interimAnswers);
}

void ResponseReader::keepHeads() { impl_->keepHeads(); }

std::string ResponseReader::headBytes() const { return impl_->headBytes(); }

void ResponseReader::readBody(const BodySink& sink, const Deadline& deadline) { impl_->readBody(sink, deadline); }

bool ResponseReader::readSome(const BodySink& sink, const Deadline& deadline) {
    return impl_->readSome(sink, deadline);
}

bool ResponseReader::hasInput() const { return impl_->hasInput(); }

const HttpFields& ResponseReader::trailers() const { return impl_->parser().trailers(); }

bool ResponseReader::keepsConnection() const { return impl_->keepsConnection(); }

bool ResponseReader::hasSurplus() const { return impl_->hasSurplus(); }

} // namespace Pegasus::http
