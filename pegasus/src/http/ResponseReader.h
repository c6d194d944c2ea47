#pragma once

#include "http/Channel.h"
#include "http/Deadline.h"
#include "http/Endpoint.h"
#include "http/HttpHead.h"

#include <Pegasus/Client/ClientLimits.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Pegasus::http {

/// The most bytes that one header block, one trailer block or the line before a chunk may have.
constexpr std::size_t kMaxHeaderBytes = 65536;

/// Takes the body of an answer, cut anywhere.
using BodySink = std::function<void(std::string_view)>;

/// Reads HTTP/1.x answers from a channel, one after the other: of each first its head, then its body, whatever way it
/// is delimited.
///
/// Either step throws CIMClientMalformedHTTPException for an answer that is not HTTP, passes a limit or breaks off, and
/// ConnectionTimeoutException. The reader is then of no further use, nor is the channel.
class ResponseReader {
  public:
    /// Channel and endpoint must outlive the reader.
    ResponseReader(Channel& channel, const Endpoint& endpoint);
    ~ResponseReader();

    /// Begins the next answer. Skips interim ones (1xx), up to `interimAnswers`. Throws ConnectionLost when the
    /// connection ends before the first byte of an answer.
    const HttpHead& readHead(const Deadline& deadline, Uint32 interimAnswers = ClientLimits::kInterimAnswers);

    /// From the next answer on, the bytes of heads are kept.
    void keepHeads();
    /// The bytes of the head that was read last, after those of interim answers; after a failure, the bytes that had
    /// arrived.
    std::string headBytes() const;

    /// Hands the body to the sink as it arrives, then reads the trailers. What the sink throws passes through. To be
    /// called once, after the head was read.
    void readBody(const BodySink& sink, const Deadline& deadline);

    /// Reads on in the body, after waiting for more of it where that is needed, and hands to the sink what was read; in
    /// place of readBody(). True when the body and the trailers are read, after which it is not to be called again.
    bool readSome(const BodySink& sink, const Deadline& deadline);

    /// Whether something was received that is not read yet, or can be received without waiting.
    bool hasInput() const;

    /// The fields after a chunked body. To be called after the body was read.
    const HttpFields& trailers() const;

    /// Whether the peer leaves the connection open for another request. To be called after the head was read.
    bool keepsConnection() const;

    /// Whether the peer sent more than its answer. To be called after the body was read.
    bool hasSurplus() const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Pegasus::http
