// Where an answer ends, and what its head says: each form that HTTP/1.x has, and the malformed ones.

#include "HttpConnectionFixture.h"
#include "http/ResponseReader.h"

#include <Pegasus/Client/CIMClientException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using ::testing::HasSubstr;

/// One good answer and how it is to be understood.
struct GoodAnswer {
    const char* form;
    std::string bytes;
    std::string body;
    std::string trailer;  ///< the value of the trailer "A"
    bool keepsConnection; ///< for the next exchange
};

std::string OneByteChunks(std::string_view body) {
    std::string chunks;
    for (const char byte : body) {
        chunks += std::string("1\r\n") + byte + "\r\n";
    }
    return chunks + "0\r\n\r\n";
}

std::vector<GoodAnswer> goodAnswers() {
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    const std::string sixteen = "0123456789abcdef";
    return {
        {"length", ok + "Content-Length: 5\r\n\r\nhello", "hello", "", true},
        {"length of zero", ok + "Content-Length: 0\r\n\r\n", "", "", true},
        {"length with leading zeros", ok + "Content-Length: 0000000005\r\n\r\nhello", "hello", "", true},
        {"length twice, the same", ok + "Content-Length: 5\r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"name in odd case", ok + "cOnTeNt-LENGTH: 5\r\n\r\nhello", "hello", "", true},
        {"no blank", ok + "Content-Length:5\r\n\r\nhello", "hello", "", true},
        {"white space around", ok + "Content-Length: \t 5 \t\r\n\r\nhello", "hello", "", true},
        {"folded", ok + "Content-Length:\r\n 5\r\n\r\nhello", "hello", "", true},
        {"folded neighbour", ok + "X: a\r\n\tb\r\n c\r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"empty field", ok + "X:\r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"bytes beyond ASCII", ok + "X: \xC3\xA4\xFF\r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"no reason", "HTTP/1.1 200 \r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"neither reason nor blank", "HTTP/1.1 200\r\nContent-Length: 5\r\n\r\nhello", "hello", "", true},
        {"no reason in HTTP/1.0", "HTTP/1.0 200\r\n\r\nhello", "hello", "", false},
        {"chunks behind a length",
         ok + "Content-Length: 9\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n", "hello", "", false},
        {"length behind chunks",
         ok + "transfer-encoding:\tCHUNKED \r\nCONTENT-LENGTH: 3\r\n\r\n5\r\nhello\r\n0\r\n\r\n", "hello", "", false},
        {"chunks", chunked + "3\r\nhel\r\n2\r\nlo\r\n0\r\n\r\n", "hello", "", true},
        {"no chunk", chunked + "0\r\n\r\n", "", "", true},
        {"last chunk of many zeros", chunked + "5\r\nhello\r\n000\r\n\r\n", "hello", "", true},
        {"one-byte chunks", chunked + OneByteChunks("hello"), "hello", "", true},
        {"chunk sizes in lower case", chunked + "a\r\n0123456789\r\n6\r\nabcdef\r\n0\r\n\r\n", sixteen, "", true},
        {"chunk sizes in upper case", chunked + "0A\r\n0123456789\r\n6\r\nabcdef\r\n0\r\n\r\n", sixteen, "", true},
        {"chunk extensions", chunked + "5;a;b=c;d=\"e;\\\"f\"\r\nhello\r\n0;g=h\r\n\r\n", "hello", "", true},
        {"chunk with a blank", chunked + "5 ;a=b\r\nhello\r\n0\r\n\r\n", "hello", "", true},
        {"coding in odd case", ok + "transfer-encoding: CHUNKED\r\n\r\n5\r\nhello\r\n0\r\n\r\n", "hello", "", true},
        {"trailer", chunked + "5\r\nhello\r\n0\r\nA: b\r\n\r\n", "hello", "b", true},
        {"trailer in odd case, folded", chunked + "5\r\nhello\r\n0\r\nX: y\r\na:\r\n b \r\n\r\n", "hello", "b", true},
        {"trailer without chunks", chunked + "0\r\nA: b\r\n\r\n", "", "b", true},
        {"connection's end", ok + "\r\nhello", "hello", "", false},
        {"connection's end, no bytes", ok + "X: y\r\n\r\n", "", "", false},
        {"another coding", ok + "Transfer-Encoding: identity\r\n\r\nhello", "hello", "", false},
        {"connection's end, announced", ok + "Connection: Close\r\n\r\nhello", "hello", "", false},
        {"length, then close", ok + "Connection: x, close\r\nContent-Length: 5\r\n\r\nhello", "hello", "", false},
        {"chunks, then close", ok + "connection: close\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n",
         "hello", "", false},
        {"HTTP/1.0", "HTTP/1.0 200 OK\r\n\r\nhello", "hello", "", false},
        {"HTTP/1.0 with length", "HTTP/1.0 200 OK\r\nContent-Length: 5\r\n\r\nhello", "hello", "", false},
        {"HTTP/1.0 kept alive", "HTTP/1.0 200 OK\r\nConnection: Keep-Alive\r\nContent-Length: 5\r\n\r\nhello", "hello",
         "", true},
        {"no content", "HTTP/1.1 204 No Content\r\nContent-Length: 5\r\n\r\n", "", "", true},
        {"after interim answers",
         "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 102 Processing\r\nX: y\r\n\r\nHTTP/1.1 103 Early Hints\r\n\r\n" + ok +
             "Content-Length: 5\r\n\r\nhello",
         "hello", "", true},
        {"after an interim answer with a length",
         "HTTP/1.1 100 Continue\r\nContent-Length: 7\r\n\r\n" + ok + "Content-Length: 5\r\n\r\nhello", "hello", "",
         true},
    };
}

/// One malformed answer and what the error says.
struct BadAnswer {
    std::string bytes;
    const char* error;
};

std::vector<BadAnswer> badAnswers() {
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    constexpr auto kInvalid = "not valid HTTP";
    constexpr auto kCutOff = "in the middle of the answer";
    constexpr auto kTls = "speaks TLS on this port";
    return {
        {ok + "Content-Length: 5\r\nContent-Length: 6\r\n\r\nhello!", kInvalid},
        {ok + "Content-Length: 5, 6\r\n\r\nhello!", kInvalid},
        {ok + "Content-Length: 5\r\nTransfer-Encoding: gzip, chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n", kInvalid},
        {ok + "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n\r\nhello", kCutOff},
        {ok + "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n", kInvalid},
        {ok + "Content-Length:\r\n\r\n", kInvalid},
        {ok + "Content-Length: -5\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: +5\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: 0x5\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: 5 6\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: five\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: 18446744073709551616\r\n\r\nhello", kInvalid},
        {ok + "Content-Length: 18446744073709551615\r\n\r\nhello", kCutOff},
        {ok + "Content-Length: 6\r\n\r\nhello", kCutOff},
        {ok + "Content-Length : 5\r\n\r\nhello", kInvalid},
        {ok + "X Y: 5\r\n\r\nhello", kInvalid},
        {ok + ": 5\r\n\r\nhello", kInvalid},
        {ok + "no colon\r\n\r\nhello", kInvalid},
        {ok + "X: a\rb\r\n\r\nhello", kInvalid},
        {ok + std::string("X: a\0b\r\n\r\nhello", 15), kInvalid},
        {chunked + "\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "5\r\nhello!\r\n0\r\n\r\n", kInvalid},
        {chunked + "5\r\nhell\r\n0\r\n\r\n", kInvalid},
        {chunked + "-5\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "0x5\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "5 5\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "g\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "10000000000000005\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "ffffffffffffffff\r\nhello\r\n0\r\n\r\n", kCutOff},
        {chunked + "5\r\nhello\r\nfffffffffffffffe\r\nhello\r\n0\r\n\r\n", kInvalid},
        {chunked + "5\r\nhello\r\n0\r\nno colon\r\n\r\n", kInvalid},
        {chunked + "5\r\nhello\r\n0\r\nContent-Length: 5\r\n\r\n", kInvalid},
        {chunked + "5\r\nhello\r\n", kCutOff},
        {chunked + "5\r\nhello\r\n0\r\n", kCutOff},
        {chunked + "5\r\nhello\r\n0\r\nA: b\r\n", kCutOff},
        {"HTTP/1.1 20 OK\r\n\r\n", kInvalid},
        {"HTTP/1.1 2000 OK\r\n\r\n", kInvalid},
        {"HTTP/1.1 -20 OK\r\n\r\n", kInvalid},
        {"HTTP/1.1\r\n\r\n", kInvalid},
        {"HTTP/1.2 200 OK\r\n\r\n", kInvalid},
        {"HTTP/2 200 OK\r\n\r\n", kInvalid},
        {"http/1.1 200 OK\r\n\r\n", kInvalid},
        {" HTTP/1.1 200 OK\r\n\r\n", kInvalid},
        {"220 mail server ready\r\n\r\n", kInvalid},
        {std::string("\x15\x03\x01\x00\x02\x02\x46", 7), kTls},
        {std::string("\x16\x03\x03\x00\x04\r\n\r\n", 9), kTls},
        {"HTTP/1.1 100 Continue\r\n\r\nmore\r\n\r\n", kInvalid},
        {"HTTP/1.1 100 Continue\r\n\r\n", kCutOff},
        {"HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n", "another protocol"},
    };
}

/// Gives out prepared pieces, one with each call, then the end of the stream.
class PreparedChannel : public Channel {
  public:
    explicit PreparedChannel(std::vector<std::string_view> pieces) : pieces_(std::move(pieces)) {}

    void write(std::string_view, const Deadline&) override {}

    std::size_t readSome(char* buffer, std::size_t size, const Deadline&) override {
        EXPECT_LE(size, kLongestRead);
        while (next_ < pieces_.size() && pieces_[next_].empty()) {
            ++next_;
        }
        if (next_ == pieces_.size()) {
            return 0;
        }
        const std::size_t count = pieces_[next_].copy(buffer, size);
        pieces_[next_].remove_prefix(count);
        return count;
    }

    bool isClosedByPeer() override { return next_ == pieces_.size(); }
    bool hasInput() override { return true; }

  private:
    static constexpr std::size_t kLongestRead = std::size_t{256} << 10U; // no reader has more room than that
    std::vector<std::string_view> pieces_;
    std::size_t next_ = 0;
};

/// Body and trailer of an answer that arrives in these pieces; the error's text where it ends in one.
std::string understandingOf(std::vector<std::string_view> pieces) {
    const Endpoint endpoint("server", 5988);
    const Deadline deadline(kAmple);
    PreparedChannel channel(std::move(pieces));
    ResponseReader reader(channel, endpoint);
    try {
        reader.readHead(deadline);
        std::string body;
        reader.readBody([&](std::string_view part) { body += part; }, deadline);
        const std::string* trailer = reader.trailers().find("A");
        return body + '|' + (trailer != nullptr ? *trailer : "");
    } catch (const CIMClientMalformedHTTPException& error) {
        return std::string(error.getMessage().view());
    }
}

std::vector<std::string_view> singleBytes(std::string_view text) {
    std::vector<std::string_view> bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes.push_back(text.substr(i, 1));
    }
    return bytes;
}

using AnswerFraming = HttpConnectionTest;

TEST_F(AnswerFraming, TellsTheBodyTheTrailersAndWhetherTheConnectionGoesOn) {
    for (const GoodAnswer& answer : goodAnswers()) {
        SCOPED_TRACE(answer.form);
        auto connection = connectionTo(serve([answer](support::Connection& peer) {
            while (peer.ReadRequest() && peer.Write(answer.bytes) && answer.keepsConnection) {
            }
        }));
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(exchange(connection), answer.body);
            const std::string* trailer = trailers_.find("a");
            EXPECT_EQ(trailer != nullptr ? *trailer : "", answer.trailer);
        }
        EXPECT_EQ(connectionCount(), answer.keepsConnection ? 1U : 2U);
    }
}

TEST_F(AnswerFraming, RefusesWhatIsMalformedOrCutOff) {
    for (const BadAnswer& answer : badAnswers()) {
        EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(answer.bytes), HasSubstr(answer.error)) << answer.bytes;
    }
}

TEST(AnswerInPieces, IsUnderstoodWhereverItIsCut) {
    for (const GoodAnswer& answer : goodAnswers()) {
        const std::string_view bytes = answer.bytes;
        const std::string expected = answer.body + '|' + answer.trailer;
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
            ASSERT_EQ(understandingOf({bytes.substr(0, cut), bytes.substr(cut)}), expected) << answer.form << cut;
        }
        EXPECT_EQ(understandingOf(singleBytes(bytes)), expected) << answer.form;
    }
}

TEST(AnswerInPieces, IsRefusedWhereverItIsCut) {
    for (const BadAnswer& answer : badAnswers()) {
        const std::string_view bytes = answer.bytes;
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
            ASSERT_THAT(understandingOf({bytes.substr(0, cut), bytes.substr(cut)}), HasSubstr(answer.error))
                << answer.bytes << cut;
        }
        EXPECT_THAT(understandingOf(singleBytes(bytes)), HasSubstr(answer.error)) << answer.bytes;
    }
}

TEST(AnswerInPieces, IsRefusedWhereverItEnds) {
    for (const GoodAnswer& answer : goodAnswers()) {
        if (answer.bytes.find("Content-Length: 5\r\n\r\nhello") == std::string::npos &&
            answer.bytes.find("\r\n0\r\n") == std::string::npos) {
            continue; // its end is the connection's
        }
        const std::string_view bytes = answer.bytes;
        for (std::size_t size = 1; size < bytes.size(); ++size) {
            ASSERT_THAT(understandingOf({bytes.substr(0, size)}), HasSubstr("in the middle of the answer"))
                << answer.form << size;
        }
    }
}

// ---- The head, at its limit

std::string headOf(std::size_t size) {
    const std::string begin = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nX: ";
    const std::string end = "\r\n\r\n";
    return begin + std::string(size - begin.size() - end.size(), 'x') + end;
}

TEST_F(AnswerFraming, TakesAHeadUpToItsLimitAndNoByteMore) {
    EXPECT_EQ(bodyOf(headOf(kMaxHeaderBytes) + "hello"), "hello");
    EXPECT_EQ(bodyOf("HTTP/1.1 100 Continue\r\n\r\n" + headOf(kMaxHeaderBytes) + "hello"), "hello")
        << "an interim answer has a head of its own";
    EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(headOf(kMaxHeaderBytes + 1) + "hello"),
                HasSubstr("a header block of the answer is longer than 65536 bytes"));
}

TEST(AnswerInPieces, FillTheBufferAndLeaveRoomForABlankThatIsMissing) {
    const std::string full = "HTTP/1.1 200\r\nX: " + std::string(2 * kMaxHeaderBytes, 'x');
    EXPECT_THAT(understandingOf({full}), HasSubstr("longer than 65536 bytes"));
    const std::string head = "HTTP/1.1 200\r\nTransfer-Encoding: chunked\r\n\r\n";
    const std::string chunk = "1000\r\n" + std::string(0x1000, 'x') + "\r\n";
    std::string chunked = head;
    for (int i = 0; i < 40; ++i) {
        chunked += chunk;
    }
    EXPECT_EQ(understandingOf({chunked + "0\r\n\r\n"}), std::string(40 * 0x1000, 'x') + '|');
}

TEST_F(AnswerFraming, TakesTrailersUpToTheSameLimit) {
    const auto answer = [](std::size_t size) {
        const std::string begin = "\r\n0\r\nA: ";
        return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello" + begin +
               std::string(size - begin.size() - 4, 'x') + "\r\n\r\n";
    };
    EXPECT_EQ(bodyOf(answer(kMaxHeaderBytes)), "hello");
    EXPECT_EQ(trailers_.find("A")->size(), kMaxHeaderBytes - 12);
    EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(answer(kMaxHeaderBytes + 1)),
                HasSubstr("longer than 65536 bytes"));
}

} // namespace
