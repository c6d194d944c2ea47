#include "reading/TraceFile.h"

#include <Pegasus/Common/Exception.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <system_error>
#include <utility>

namespace NQORVYX20 {

namespace {

std::uint64_t NextNumber() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

long long MicrosecondsIn(std::chrono::system_clock::duration time) {
    return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

/// In UTC, to the microsecond.
std::string TimeText(TraceFile::Time time) {
    constexpr long long kMicroseconds = 1000000;
    const long long all = MicrosecondsIn(time.time_since_epoch());
    const std::time_t seconds = all / kMicroseconds;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 64> date{};
    const std::size_t length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 16> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%06lldZ", all % kMicroseconds);
    return std::string(date.data(), length) + fraction.data();
}

} // namespace

TraceFile::TraceFile(std::string path) : path_(std::move(path)) {}

TraceFile::~TraceFile() {
    if (file_ >= 0) {
        ::close(file_);
    }
}

void TraceFile::onConnecting(const Pegasus::String& server, Pegasus::Boolean encrypted, Time time) {
    Begin(time);
    AddTitle("connecting to " + std::string(server.view()) + (encrypted ? ", encrypted" : ""), time);
    Write();
}

void TraceFile::onRequest(std::string_view head, std::string_view body, Time time) {
    Begin(time);
    AddTitle("request", time);
    text_.append(head).append(body);
    bodyBytes_ = body.size();
    lastOfBody_ = body.empty() ? '\n' : body.back();
    EndBody();
    AddTitle("end of the request, " + std::to_string(bodyBytes_) + " bytes in its body", time);
    Write();
}

void TraceFile::onAnswerHead(std::string_view head, Time time) {
    AddTitle("answer" + SinceBegin(time), time);
    text_ += head;
    bodyBytes_ = 0;
    lastOfBody_ = '\n';
    isInAnswer_ = true;
}

void TraceFile::onAnswerBody(std::string_view part) {
    text_ += part;
    bodyBytes_ += part.size();
    lastOfBody_ = part.empty() ? lastOfBody_ : part.back();
    if (text_.size() >= kWholeBytes) {
        Write();
    }
}

void TraceFile::onAnswerEnd(std::string_view trailers, Time time) {
    EndBody();
    isInAnswer_ = false;
    text_ += trailers;
    AddTitle("end of the answer, " + std::to_string(bodyBytes_) + " bytes in its body" + SinceBegin(time), time);
    Write();
}

void TraceFile::onFailure(const Pegasus::String& message, Time time) {
    try {
        EndBody();
        if (std::exchange(isInAnswer_, false)) {
            AddTitle("end of what came of the answer, " + std::to_string(bodyBytes_) + " bytes in its body" +
                         SinceBegin(time),
                     time);
        }
        AddTitle("failed" + SinceBegin(time) + ": " + std::string(message.view()), time);
        Write();
    } catch (...) {
        // the operation has failed already, and its exception is the one to be told
    }
}

void TraceFile::Begin(Time time) {
    number_ = NextNumber();
    begin_ = time;
    lastOfBody_ = '\n';
    isInAnswer_ = false;
}

void TraceFile::AddTitle(const std::string& text, Time time) {
    text_ += "=== " + std::to_string(number_) + "  " + TimeText(time) + "  " + text + '\n';
}

std::string TraceFile::SinceBegin(Time time) const {
    constexpr double kMicroseconds = 1e6;
    std::array<char, 64> seconds{};
    std::snprintf(seconds.data(), seconds.size(), " after %.6f s",
                  static_cast<double>(MicrosecondsIn(time - begin_)) / kMicroseconds);
    return seconds.data();
}

/// The next title is to begin a line.
void TraceFile::EndBody() {
    if (lastOfBody_ != '\n') {
        text_ += '\n';
        lastOfBody_ = '\n';
    }
}

void TraceFile::Write() {
    const std::string text = std::exchange(text_, {});
    std::string_view rest = text;
    const int file = OpenFile();
    while (!rest.empty()) {
        const ::ssize_t written = ::write(file, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            Fail();
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

int TraceFile::OpenFile() {
    if (file_ < 0) {
        file_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR);
    }
    if (file_ < 0) {
        Fail();
    }
    return file_;
}

void TraceFile::Fail() const {
    const std::string reason = std::system_category().message(errno);
    throw Pegasus::Exception(Pegasus::String(("the trace file " + path_ + " cannot be written: " + reason).c_str()));
}

} // namespace NQORVYX20
