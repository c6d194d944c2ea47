#include "output/OutputGuard.h"

#include "Failure.h"

#include <cerrno>
#include <system_error>

namespace cimhttp {

namespace {

/// Throws when a stream's buffer has failed just now.
void Check(bool isWritten) {
    const int error = errno;
    if (!isWritten) {
        throw Failure(error == EPIPE ? Failure::kClosedPipe : Failure::kOther,
                      "the output could not be written: " + std::generic_category().message(error));
    }
}

} // namespace

OutputGuard::OutputGuard(std::ostream& stream) : stream_(stream), target_(stream.rdbuf(this)) {
    stream_.exceptions(std::ios_base::badbit); // a stream drops its buffer's exceptions otherwise
}

OutputGuard::~OutputGuard() {
    stream_.exceptions(std::ios_base::goodbit);
    stream_.rdbuf(target_);
}

OutputGuard::int_type OutputGuard::overflow(int_type character) {
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        Check(!traits_type::eq_int_type(target_->sputc(traits_type::to_char_type(character)), traits_type::eof()));
    }
    return traits_type::not_eof(character);
}

std::streamsize OutputGuard::xsputn(const char* text, std::streamsize size) {
    Check(target_->sputn(text, size) == size);
    return size;
}

int OutputGuard::sync() {
    Check(target_->pubsync() == 0);
    return 0;
}

} // namespace cimhttp
