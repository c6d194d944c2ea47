#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace cimhttp {

/// Where a SinkStream writes to.
class SinkBuffer : public std::streambuf {
  public:
    using Sink = std::function<void(std::string_view)>;

    SinkBuffer(Sink sink, std::function<void()> flush) : sink_(std::move(sink)), flush_(std::move(flush)) {}

  private:
    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            const char written = traits_type::to_char_type(character);
            sink_(std::string_view(&written, 1));
        }
        return traits_type::not_eof(character);
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override {
        sink_(std::string_view(text, static_cast<std::size_t>(size)));
        return size;
    }

    int sync() override {
        if (flush_) {
            flush_();
        }
        return 0;
    }

    Sink sink_;
    std::function<void()> flush_;
};

/// A stream that passes on what is written to it, as it comes and in pieces of any size.
class SinkStream : private SinkBuffer, public std::ostream {
  public:
    using Sink = SinkBuffer::Sink;

    /// `flush` is called where the stream is flushed.
    explicit SinkStream(Sink sink, std::function<void()> flush = {})
        : SinkBuffer(std::move(sink), std::move(flush)),
          std::ostream(static_cast<std::streambuf*>(static_cast<SinkBuffer*>(this))) {
        exceptions(std::ios_base::badbit); // what the sink throws goes through
    }
};

/// A sink for several streams, each of one thread: what is written to one of them at once stays together.
inline SinkStream::Sink SharedSink(std::ostream& target) {
    return [&target, mutex = std::make_shared<std::mutex>()](std::string_view text) {
        const std::lock_guard<std::mutex> lock(*mutex);
        target << text << std::flush;
    };
}

} // namespace cimhttp
