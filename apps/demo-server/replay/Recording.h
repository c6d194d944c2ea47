#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// An answer as a server gave it.
struct RecordedAnswer {
    std::string requestId; ///< the message ID of the request
    std::string head;      ///< with its empty line, and with interim answers before it
    std::string body;      ///< without the frames of chunks
    std::string trailers;  ///< whole lines
    bool isWhole = true;   ///< false where the client did not read on, or could not
};

/// The requests and answers of a client and a server, from a file that a client has written (docs/recordings.md). Safe
/// to use from several threads.
class Recording {
  public:
    /// Takes all requests of CIM operations that have answers. An answer that asks for a login counts only where no
    /// other was given to the same request. Throws std::runtime_error when there is none.
    explicit Recording(std::string_view text);

    /// The answer to a request with this meaning (RequestMeaning.h): one after the other if it was asked more than
    /// once, and the last one from then on; the portions of an enumeration that is pulled come again. Null when it was
    /// not asked.
    const RecordedAnswer* Next(const std::string& meaning);

    /// How many answers there are.
    std::size_t Size() const;

  private:
    struct Answers {
        std::vector<RecordedAnswer> all;
        std::size_t next = 0;
    };

    void Add(std::string_view requestBody, RecordedAnswer answer);
    void DropChallenges();

    std::map<std::string, Answers> answers_;
    std::mutex mutex_;
};

} // namespace demo
