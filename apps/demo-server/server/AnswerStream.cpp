#include "server/AnswerStream.h"

namespace demo {

namespace {

constexpr std::size_t kWaitingBytes = std::size_t{32} * 1024;

} // namespace

void AnswerStream::Flush() {
    connection_.Write(waiting_);
    waiting_.clear();
}

void AnswerStream::Write(std::string_view bytes) {
    if (waiting_.size() + bytes.size() > kWaitingBytes) {
        Flush();
    }
    if (bytes.size() >= kWaitingBytes) {
        connection_.Write(bytes);
    } else {
        waiting_.append(bytes);
    }
}

} // namespace demo
