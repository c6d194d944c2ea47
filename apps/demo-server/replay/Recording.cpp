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

/// The line above or below a part of a conversation: "=== 7  2026-11-22T10:11:12.123456Z  request".
struct Title {
    std::string_view number;
    std::string_view text;
};

/// The line that begins somewhere, without its end.
std::string_view LineAt(std::string_view text, std::size_t begin) {
    return text.substr(begin, text.find('\n', begin) - begin);
}

/// Takes a word with the two blanks behind it.
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

/// A title within a body looks like one that ends it; the one that counts the bytes right is meant.
std::optional<Message> Divided(std::string_view message, std::size_t bodyBytes) {
    const std::size_t begin = EndOfHead(message);
    if (bodyBytes > message.size() - begin) {
        return std::nullopt;
    }
    Message result{message.substr(0, begin), message.substr(begin, bodyBytes), message.substr(begin + bodyBytes)};
    if (!result.body.empty() && result.body.back() != '\n') {
        if (result.rest.empty() || result.rest.front() != '\n') {
            return std::nullopt;
        }
        result.rest.remove_prefix(1); // the end of a line that is there for the next title
    }
    return IsFields(result.rest) ? std::optional(result) : std::nullopt;
}

/// Goes through the parts of a file.
class Parts {
  public:
    explicit Parts(std::string_view text) : text_(text) {}

    /// The next title that begins a part.
    std::optional<Title> Next() {
        while (position_ < text_.size()) {
            const auto line = LineAt(text_, position_);
            position_ = std::min(position_ + line.size() + 1, text_.size());
            if (const auto title = ReadTitle(line)) {
                return title;
            }
        }
        return std::nullopt;
    }

    /// What stands between a title and the one that ends its part. Nothing where that is missing.
    std::optional<Message> Content(std::string_view number, std::string_view endText) {
        const std::size_t begin = position_;
        for (std::size_t line = begin; line < text_.size(); line = NextLine(line)) {
            const auto title = ReadTitle(LineAt(text_, line));
            const auto bytes = title && title->number == number ? BytesIn(title->text, endText) : std::nullopt;
            const auto message = bytes ? Divided(text_.substr(begin, line - begin), *bytes) : std::nullopt;
            if (message) {
                position_ = NextLine(line);
                return message;
            }
        }
        return std::nullopt;
    }

  private:
    std::size_t NextLine(std::size_t line) const {
        const auto end = text_.find('\n', line);
        return end == std::string_view::npos ? text_.size() : end + 1;
    }

    std::string_view text_;
    std::size_t position_ = 0;
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
            const auto request = parts.Content(title->number, "end of the request, ");
            requests[title->number] = request ? request->body : std::string_view();
        } else if (title->text.substr(0, 6) == "answer") {
            const auto answer = parts.Content(title->number, "end of the answer, ");
            const auto request = requests.find(title->number);
            if (answer && request != requests.end()) {
                Add(request->second,
                    {"", std::string(answer->head), std::string(answer->body), std::string(answer->rest)});
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
    const std::size_t index = std::min(answers.next, answers.all.size() - 1);
    ++answers.next;
    return &answers.all[index];
}

std::size_t Recording::Size() const {
    std::size_t size = 0;
    for (const auto& [meaning, answers] : answers_) {
        size += answers.all.size();
    }
    return size;
}

} // namespace demo
