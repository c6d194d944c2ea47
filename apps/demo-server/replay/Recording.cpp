#include "replay/Recording.h"

#include "replay/RequestMeaning.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

namespace demo {

namespace {

constexpr std::string_view kMark = "=== ";
constexpr std::string_view kEmptyLine = "\r\n\r\n";
constexpr std::size_t kMaxTrailers = 65536;

// How many bytes reading may look at for each byte of a file, and how many a title counts for.
constexpr std::size_t kMaxEffort = 256;
constexpr std::size_t kEffortOfTitle = 64;

/// The line above or below a part of a conversation: "=== 7  2026-11-22T10:11:12.123456Z  request".
struct Title {
    std::string_view number;
    std::string_view text;
};

/// The line that begins somewhere, without its end.
std::string_view LineAt(std::string_view text, std::size_t begin) {
    return text.substr(begin, text.find('\n', begin) - begin);
}

/// Takes a word with the two blanks after it.
std::optional<std::string_view> TakeWord(std::string_view& line) {
    const auto end = line.find("  ");
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto word = line.substr(0, end);
    line.remove_prefix(end + 2);
    return word;
}

std::optional<Title> ReadTitle(std::string_view line) {
    if (line.substr(0, kMark.size()) != kMark) {
        return std::nullopt;
    }
    line.remove_prefix(kMark.size());
    const auto number = TakeWord(line);
    const auto time = TakeWord(line);
    return number && time ? std::optional(Title{*number, line}) : std::nullopt;
}

/// The number of bytes in "end of the answer, 312 bytes in its body after 0.1 s".
std::optional<std::size_t> BytesIn(std::string_view text, std::string_view begin) {
    std::size_t bytes = 0;
    if (text.substr(0, begin.size()) != begin) {
        return std::nullopt;
    }
    text.remove_prefix(begin.size());
    const auto result = std::from_chars(text.data(), text.data() + text.size(), bytes);
    return result.ec == std::errc() ? std::optional(bytes) : std::nullopt;
}

/// Where a head ends, with those of interim answers before it.
std::size_t EndOfHead(std::string_view message) {
    std::size_t begin = 0;
    for (;;) {
        const auto end = message.find(kEmptyLine, begin);
        if (end == std::string_view::npos) {
            return message.size();
        }
        const auto line = LineAt(message, begin);
        begin = end + kEmptyLine.size();
        if (line.substr(0, 5) != "HTTP/" || line.substr(line.find(' ') + 1, 1) != "1") {
            return begin;
        }
    }
}

/// A request or an answer.
struct Message {
    std::string_view head;
    std::string_view body;
    std::string_view rest; ///< trailers
    bool isWhole = true;
};

/// Whether a text is nothing, or whole lines like "Name: value".
bool IsFields(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find("\r\n");
        if (end == std::string_view::npos || text.substr(0, end).find(':') == std::string_view::npos) {
            return false;
        }
        text.remove_prefix(end + 2);
    }
    return true;
}

/// A title within a body looks like one that ends it; the one whose number of bytes is right counts.
std::optional<Message> Divided(std::string_view message, std::size_t headBytes, std::size_t bodyBytes) {
    if (bodyBytes > message.size() - headBytes) {
        return std::nullopt;
    }
    Message result{message.substr(0, headBytes), message.substr(headBytes, bodyBytes),
                   message.substr(headBytes + bodyBytes)};
    if (!result.body.empty() && result.body.back() != '\n') {
        if (result.rest.empty() || result.rest.front() != '\n') {
            return std::nullopt;
        }
        result.rest.remove_prefix(1); // the end of a line that is there for the next title
    }
    return result.rest.size() <= kMaxTrailers && IsFields(result.rest) ? std::optional(result) : std::nullopt;
}

/// How the title that ends a part begins: of one that is whole, and of one of which that is not known.
struct EndTexts {
    std::string_view whole;
    std::string_view partial;
};

constexpr EndTexts kEndsOfRequest{"end of the request, ", "end of the request, "};
constexpr EndTexts kEndsOfAnswer{"end of the answer, ", "end of what came of the answer, "};

/// Goes through the parts of a file.
class Parts {
  public:
    explicit Parts(std::string_view text) : text_(text), effort_(text.size() * kMaxEffort) {
        for (std::size_t line = 0; line < text.size();) {
            const auto end = std::min(text.find('\n', line), text.size() - 1) + 1;
            if (const auto title = ReadTitle(LineAt(text, line))) {
                places_[title->number].push_back(titles_.size());
                titles_.push_back({*title, line, end});
            }
            line = end;
        }
    }

    /// The next title that begins a part.
    std::optional<Title> Next() {
        return next_ < titles_.size() ? std::optional(titles_[next_++].title) : std::nullopt;
    }

    /// What stands between the title that came last and the one that ends its part. Nothing where that is missing.
    std::optional<Message> Content(const EndTexts& ends) {
        const Line& first = titles_[next_ - 1];
        const auto& places = places_.find(first.title.number)->second;
        for (auto place = std::lower_bound(places.begin(), places.end(), next_); place != places.end(); ++place) {
            if (auto message = ContentTo(titles_[*place], first.end, ends)) {
                next_ = *place + 1;
                return message;
            }
        }
        return std::nullopt;
    }

  private:
    struct Line {
        Title title;
        std::size_t begin;
        std::size_t end;
    };

    std::optional<Message> ContentTo(const Line& last, std::size_t begin, const EndTexts& ends) {
        Spend(kEffortOfTitle);
        const auto whole = BytesIn(last.title.text, ends.whole);
        const auto bytes = whole ? whole : BytesIn(last.title.text, ends.partial);
        if (!bytes) {
            return std::nullopt;
        }
        const auto text = text_.substr(begin, last.begin - begin);
        const std::size_t headBytes = EndOfHead(text);
        Spend(headBytes + std::min(text.size() - headBytes, kMaxTrailers));
        auto message = Divided(text, headBytes, *bytes);
        if (message) {
            message->isWhole = whole.has_value();
        }
        return message;
    }

    /// Titles without ends are looked for again and again, each as far as the end of the file.
    void Spend(std::size_t effort) {
        if (effort > effort_) {
            throw std::runtime_error("too many of its parts have no end");
        }
        effort_ -= effort;
    }

    const std::string_view text_;
    std::vector<Line> titles_;
    std::map<std::string_view, std::vector<std::size_t>> places_; // of titles, by their numbers
    std::size_t next_ = 0;                                        // title
    std::size_t effort_;                                          // that is left
};

/// The operation in the body of a request, if it is one.
std::optional<CimRequest> ReadOperation(std::string_view body) {
    try {
        return ReadRequest(body);
    } catch (const HttpError&) {
        return std::nullopt;
    }
}

bool AsksForLogin(const RecordedAnswer& answer) {
    const auto blank = answer.head.find(' ');
    return blank != std::string::npos && answer.head.compare(blank + 1, 3, "401") == 0;
}

} // namespace

Recording::Recording(std::string_view text) {
    Parts parts(text);
    std::map<std::string_view, std::string_view> requests; // the bodies, by number; it begins anew with each run
    while (const auto title = parts.Next()) {
        if (title->text == "request") {
            const auto request = parts.Content(kEndsOfRequest);
            requests[title->number] = request ? request->body : std::string_view();
        } else if (title->text.substr(0, 6) == "answer") {
            const auto answer = parts.Content(kEndsOfAnswer);
            const auto request = requests.find(title->number);
            if (answer && request != requests.end()) {
                Add(request->second, {"", std::string(answer->head), std::string(answer->body),
                                      std::string(answer->rest), answer->isWhole});
                requests.erase(request);
            }
        }
    }
    DropChallenges();
    if (answers_.empty()) {
        throw std::runtime_error("there is no request with its answer in it; is it a recording?");
    }
}

void Recording::Add(std::string_view requestBody, RecordedAnswer answer) {
    if (const auto request = ReadOperation(requestBody)) {
        answer.requestId = request->messageId;
        answers_[MeaningOf(*request)].all.push_back(std::move(answer));
    }
}

void Recording::DropChallenges() {
    for (auto& [meaning, answers] : answers_) {
        auto& all = answers.all;
        if (!std::all_of(all.begin(), all.end(), AsksForLogin)) {
            all.erase(std::remove_if(all.begin(), all.end(), AsksForLogin), all.end());
        }
    }
}

const RecordedAnswer* Recording::Next(const std::string& meaning) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = answers_.find(meaning);
    if (found == answers_.end()) {
        return nullptr;
    }
    Answers& answers = found->second;
    const auto& all = answers.all;
    if (answers.next == all.size()) {
        // After its last portion, only a client that has opened the enumeration again pulls it.
        answers.next = meaning.compare(0, 4, "pull") == 0 ? 0 : all.size() - 1;
    }
    return &all[answers.next++];
}

std::size_t Recording::Size() const {
    std::size_t size = 0;
    for (const auto& [meaning, answers] : answers_) {
        size += answers.all.size();
    }
    return size;
}

} // namespace demo
