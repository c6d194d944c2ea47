// A recording for the demo server: it is refused with a reason, or what is in it is played, each time in the same way.
// And the bytes as the body of a recorded answer are played as they are, whatever they look like.

#include "Cost.h"
#include "Require.h"
#include "replay/RecordedBytes.h"
#include "replay/Recording.h"
#include "replay/RequestMeaning.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

using demo::BytesFor;
using demo::CimRequest;
using demo::RecordedAnswer;
using demo::Recording;

namespace {

constexpr std::string_view kEmptyLine = "\r\n\r\n";
constexpr std::string_view kEndOfPart = "\n=== ";

/// Its ID is 7.
constexpr const char* kRequest =
    R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="7" PROTOCOLVERSION="1.0"><SIMPLEREQ>)"
    R"(<IMETHODCALL NAME="EnumerateClassNames"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/></LOCALNAMESPACEPATH>)"
    R"(</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

/// The requests in a text: behind an empty line, as far as a line that looks like the end of a part.
std::vector<CimRequest> RequestsIn(std::string_view text) {
    std::vector<CimRequest> requests;
    for (auto head = text.find(kEmptyLine); head != std::string_view::npos;) {
        const auto begin = head + kEmptyLine.size();
        const auto end = text.find(kEndOfPart, begin);
        try {
            requests.push_back(demo::ReadRequest(text.substr(begin, end - begin)));
        } catch (const demo::HttpError&) { // an answer, mostly
        }
        head = end == std::string_view::npos ? end : text.find(kEmptyLine, end);
    }
    return requests;
}

bool IsSame(const RecordedAnswer& left, const RecordedAnswer& right) {
    return left.requestId == right.requestId && left.head == right.head && left.body == right.body &&
           left.trailers == right.trailers && left.isWhole == right.isWhole;
}

/// To the ID of its own request an answer has the bytes that were recorded.
void CheckBytes(const RecordedAnswer& answer, std::string_view recording) {
    Require(recording.find(answer.head + answer.body) != std::string_view::npos, "an answer is in the recording");
    const std::string bytes = BytesFor(answer, answer.requestId);
    Require(bytes.compare(0, answer.head.size(), answer.head) == 0, "an answer is played with its head");
    Require(bytes.find(answer.body, answer.head.size()) != std::string::npos, "an answer is played with its body");
}

void Play(Recording& recording, Recording& again, std::string_view text) {
    for (const CimRequest& request : RequestsIn(text)) {
        const std::string meaning = MeaningOf(request);
        const RecordedAnswer* const answer = recording.Next(meaning);
        const RecordedAnswer* const same = again.Next(meaning);
        Require((answer == nullptr) == (same == nullptr), "a recording has the same requests each time");
        if (answer == nullptr) {
            Require(!ShortTextOf(request).empty(), "a request has a name");
            continue;
        }
        Require(IsSame(*answer, *same), "a recording is played in the same way each time");
        CheckBytes(*answer, text);
    }
}

/// Null when it is refused.
std::unique_ptr<Recording> Read(std::string_view text) {
    try {
        return std::make_unique<Recording>(text);
    } catch (const std::runtime_error& error) {
        Require(typeid(error) == typeid(std::runtime_error) && *error.what() != '\0', "a refusal has a reason");
        return nullptr;
    }
}

void CheckRecording(std::string_view text) {
    const auto recording = Read(text);
    const auto again = Read(text);
    Require((recording == nullptr) == (again == nullptr), "a recording is refused each time or never");
    if (recording) {
        Require(recording->Size() > 0 && recording->Size() == again->Size(),
                "a recording has answers, as many each time");
        Play(*recording, *again, text);
    }
}

std::string Part(const std::string& begin, const std::string& end, const std::string& head, const std::string& body) {
    const std::string title = "=== own  2026-11-22T10:11:12.123456Z  ";
    return title + begin + '\n' + head + body + (body.empty() || body.back() == '\n' ? "" : "\n") + title + end +
           std::to_string(body.size()) + " bytes in its body\n";
}

std::string Head(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
}

/// Only a body that has titles of its own exchange could be taken for a shorter one.
void CheckBody(const std::string& text) {
    if (text.find("=== own ") != std::string::npos) {
        return;
    }
    const std::string body = R"(<MESSAGE ID="7">)" + text;
    Recording recording(Part("request", "end of the request, ", "POST / HTTP/1.1\r\n\r\n", kRequest) +
                        Part("answer", "end of the answer, ", Head(body), body));
    const RecordedAnswer* const answer = recording.Next(MeaningOf(demo::ReadRequest(kRequest)));
    Require(answer != nullptr && answer->body == body, "a request is answered with the body that was recorded");
    Require(BytesFor(*answer, "7") == Head(body) + body, "the answer is played as it was recorded");
    const std::string other = R"(<MESSAGE ID="&lt;another&gt;">)" + text;
    Require(BytesFor(*answer, "<another>") == Head(other) + other, "to another request it has another ID and length");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckRecording(text);
    CheckBody(text);
    return 0;
}
