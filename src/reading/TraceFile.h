#pragma once

#include <Pegasus/Client/ExchangeObserver.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace NQORVYX20 {

/// Writes what a client and its server send to each other to a file that people read: requests and answers as on the
/// wire, each under a line with its time and number. Numbers count through all files of the process.
///
/// The file is opened when there is something to write, made with rights for its owner alone, and never truncated:
/// several of these may write to one file. A request is written as a whole, and so is an answer up to kWholeBytes.
///
/// What cannot be written ends the operation with a Pegasus::Exception that names the file.
class TraceFile : public Pegasus::ExchangeObserver {
  public:
    static constexpr std::size_t kWholeBytes = std::size_t{1} << 20U;

    explicit TraceFile(std::string path);
    ~TraceFile() override;
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    void onConnecting(const Pegasus::String& server, Pegasus::Boolean encrypted, Time time) override;
    void onRequest(std::string_view head, std::string_view body, Time time) override;
    void onAnswerHead(std::string_view head, Time time) override;
    void onAnswerBody(std::string_view part) override;
    void onAnswerEnd(std::string_view trailers, Time time) override;
    /// Throws nothing: the failure that it reports is the one to be told.
    void onFailure(const Pegasus::String& message, Time time) override;

  private:
    void Begin(Time time);
    void AddTitle(const std::string& text, Time time);
    std::string SinceBegin(Time time) const;
    void EndBody();
    void Write();
    int OpenFile();
    [[noreturn]] void Fail() const;

    const std::string path_;
    int file_ = -1;
    std::string text_; // not written yet
    std::uint64_t number_ = 0;
    Time begin_;
    std::uint64_t bodyBytes_ = 0;
    char lastOfBody_ = '\n';
    bool isInAnswer_ = false;
};

} // namespace NQORVYX20
