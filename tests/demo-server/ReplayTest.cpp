#include "HttpExchange.h"
#include "replay/RecordedBytes.h"
#include "replay/Recording.h"
#include "replay/ReplayListener.h"
#include "replay/RequestMeaning.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using exchange::ClassName;
using exchange::OperationBody;
using testing::ElementsAre;
using testing::HasSubstr;

// A recording as a client writes it.

std::string Title(int number, const std::string& text) {
    return "=== " + std::to_string(number) + "  2026-11-22T10:11:12.123456Z  " + text + '\n';
}

std::string Part(int number, const std::string& begin, const std::string& end, const std::string& head,
                 const std::string& body, const std::string& trailers = "") {
    const std::string lineEnd = body.empty() || body.back() == '\n' ? "" : "\n";
    return Title(number, begin) + head + body + lineEnd + trailers +
           Title(number, end + std::to_string(body.size()) + " bytes in its body after 0.1 s");
}

std::string Request(int number, const std::string& body) {
    return Part(number, "request", "end of the request, ", "POST /cimom HTTP/1.1\r\nHost: device\r\n\r\n", body);
}

std::string Answer(int number, const std::string& head, const std::string& body, const std::string& trailers = "") {
    return Part(number, "answer after 0.1 s", "end of the answer, ", head, body, trailers);
}

std::string Head(const std::string& body) {
    return "HTTP/1.1 200\r\nX-Device: a\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
}

std::string Message(const std::string& id, const std::string& content) {
    return "<CIM><MESSAGE ID=\"" + id + "\" PROTOCOLVERSION=\"1.0\">" + content + "</MESSAGE></CIM>";
}

std::string Exchange(int number, const std::string& request, const std::string& content) {
    const std::string body = Message("7", content);
    return Title(number, "connecting to device:5988") + Request(number, request) + Answer(number, Head(body), body);
}

std::string Enumeration(const std::string& name) { return OperationBody("EnumerateInstances", ClassName(name)); }

std::string MeaningOf(const std::string& body) { return demo::MeaningOf(demo::ReadRequest(body)); }

/// What stands in the answers that a recording gives to a request, one after the other.
std::vector<std::string> Next(demo::Recording& recording, const std::string& request, int count) {
    std::vector<std::string> bodies;
    for (int i = 0; i < count; ++i) {
        const auto* const answer = recording.Next(MeaningOf(request));
        bodies.push_back(answer ? answer->body : "none");
    }
    return bodies;
}

TEST(RequestMeaning, IsThatOfTheOperationItsObjectAndItsParameters) {
    const std::string flag = "<IPARAMVALUE NAME=\"DeepInheritance\"><VALUE>TRUE</VALUE></IPARAMVALUE>";
    const std::string lower = "<IPARAMVALUE NAME=\"deepinheritance\">\n<VALUE>true</VALUE></IPARAMVALUE>";
    const std::string count = "<IPARAMVALUE NAME=\"MaxObjectCount\"><VALUE>7</VALUE></IPARAMVALUE>";
    const std::string none = "<IPARAMVALUE NAME=\"PropertyList\"/>";
    const auto meaning = [](const std::string& parameters, const std::string& nameSpace = "root/cimv2") {
        return MeaningOf(OperationBody("EnumerateInstances", parameters, nameSpace));
    };
    const std::string one = meaning(ClassName("CIM_Fan") + flag);
    EXPECT_EQ(meaning(lower + none + count + ClassName("cim_FAN"), "ROOT/cimv2"), one);
    EXPECT_NE(meaning(ClassName("CIM_Fan")), one);
    EXPECT_NE(meaning(ClassName("CIM_Fan2") + flag), one);
    EXPECT_NE(meaning(ClassName("CIM_Fan") + flag, "root/other"), one);
    EXPECT_NE(MeaningOf(OperationBody("EnumerateInstanceNames", ClassName("CIM_Fan") + flag)), one);

    const auto listed = [&](const std::string& names) {
        return meaning("<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY>" + names + "</VALUE.ARRAY></IPARAMVALUE>");
    };
    EXPECT_EQ(listed("<VALUE>A</VALUE><VALUE>b</VALUE>"), listed("<VALUE>B</VALUE><VALUE>a</VALUE>"));
    EXPECT_NE(listed("<VALUE>A</VALUE><VALUE>b</VALUE>"), listed("<VALUE>A;1 b</VALUE>"));
}

TEST(RequestMeaning, GrowsNoFasterThanThePathsThatAreNestedInIt) {
    const std::string quotes(1000, '"');
    std::string path = "<KEYVALUE>" + quotes + "</KEYVALUE>";
    const auto meaning = [&](const std::string& key) {
        std::string value = path;
        for (int i = 0; i < 8; ++i) {
            value = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"" + key + "\">" +
                    (i == 0 ? value : "<VALUE.REFERENCE>" + value + "</VALUE.REFERENCE>") +
                    "</KEYBINDING></INSTANCENAME>";
        }
        return MeaningOf(
            OperationBody("GetInstance", "<IPARAMVALUE NAME=\"InstanceName\">" + value + "</IPARAMVALUE>"));
    };
    const std::string one = meaning("Key");
    EXPECT_LT(one.size(), quotes.size() + 500);
    EXPECT_EQ(meaning("KEY"), one);
    EXPECT_NE(meaning("Other"), one);
    path = "<KEYVALUE>" + quotes + "2</KEYVALUE>";
    EXPECT_NE(meaning("Key"), one);
}

TEST(RequestMeaning, HasAShortTextWithoutAnythingThatSteersATerminal) {
    EXPECT_EQ(demo::ShortTextOf(demo::ReadRequest(Enumeration("CIM_Fan"))),
              "EnumerateInstances of CIM_Fan in root/cimv2");
    EXPECT_EQ(demo::ShortTextOf(demo::ReadRequest(Enumeration("A\x1b[2J"))),
              "EnumerateInstances of A?[2J in root/cimv2");
    EXPECT_EQ(demo::ShortTextOf(demo::ReadRequest(OperationBody("EnumerateQualifiers"))),
              "EnumerateQualifiers in root/cimv2");
}

TEST(Recording, GivesTheAnswersOfARequestInTheirOrderAndThenTheLast) {
    demo::Recording recording(Exchange(1, Enumeration("A"), "a1") + Exchange(2, Enumeration("B"), "b") +
                              Exchange(3, Enumeration("A"), "a2"));
    EXPECT_EQ(recording.Size(), 3U);
    EXPECT_THAT(Next(recording, Enumeration("A"), 3),
                ElementsAre(Message("7", "a1"), Message("7", "a2"), Message("7", "a2")));
    EXPECT_THAT(Next(recording, Enumeration("B"), 2), ElementsAre(Message("7", "b"), Message("7", "b")));
    EXPECT_THAT(Next(recording, Enumeration("C"), 1), ElementsAre("none"));
}

TEST(Recording, GoesOnWithTheNumbersOfAnotherRunAndWithPartsThatAreMixed) {
    const std::string body = Message("7", "later");
    demo::Recording recording(Exchange(1, Enumeration("A"), "a") + Request(1, Enumeration("B")) +
                              Request(2, Enumeration("C")) + Answer(2, Head(body), body) + Answer(1, Head(""), ""));
    EXPECT_THAT(Next(recording, Enumeration("C"), 1), ElementsAre(body));
    EXPECT_THAT(Next(recording, Enumeration("B"), 1), ElementsAre(""));
}

TEST(Recording, TakesAnswersThatLookLikeARecordingThemselves) {
    const std::string nasty = "a\n" + Title(1, "end of the answer, 3 bytes in its body") + Title(1, "request") + "b";
    demo::Recording recording(Exchange(1, Enumeration("A"), nasty) + Exchange(2, Enumeration("B"), "b"));
    EXPECT_THAT(Next(recording, Enumeration("A"), 1), ElementsAre(Message("7", nasty)));
    EXPECT_EQ(recording.Size(), 2U);
}

TEST(Recording, LeavesOutWhatHasNoAnswerAndAskingForALoginUnlessThatWasAll) {
    const std::string challenge = "HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n";
    demo::Recording recording(
        Request(1, Enumeration("A")) + Answer(1, challenge, "") + Exchange(2, Enumeration("A"), "a") +
        Request(3, Enumeration("B")) + Answer(3, challenge, "") + Request(4, Enumeration("C")) +
        Title(4, "failed after 20.0 s: the server did not answer") + Request(5, "no XML") + Answer(5, Head(""), ""));
    EXPECT_EQ(recording.Size(), 2U);
    EXPECT_THAT(Next(recording, Enumeration("A"), 1), ElementsAre(Message("7", "a")));
    ASSERT_NE(recording.Next(MeaningOf(Enumeration("B"))), nullptr);
    EXPECT_EQ(recording.Next(MeaningOf(Enumeration("B")))->head, challenge);
}

TEST(Recording, KeepsTheBytesThatArrivedOfAFailedAnswer) {
    const auto partial = [](int number, const std::string& head, const std::string& body) {
        return Part(number, "answer after 0.1 s", "end of what came of the answer, ", head, body) +
               Title(number, "failed after 0.1 s: the server closed the connection in the middle of the answer");
    };
    demo::Recording recording(
        Request(1, Enumeration("A")) + partial(1, "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", "<a>") +
        Request(2, Enumeration("B")) + partial(2, "HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n", "<b>\n"));
    ASSERT_EQ(recording.Size(), 2U);
    const auto& chunked = *recording.Next(MeaningOf(Enumeration("A")));
    EXPECT_EQ(demo::BytesFor(chunked, "1"), "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\n<a>\r\n");
    EXPECT_TRUE(demo::EndsConnection(chunked));
    const auto& cut = *recording.Next(MeaningOf(Enumeration("B")));
    EXPECT_EQ(demo::BytesFor(cut, "1"), "HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n<b>\n");
    EXPECT_TRUE(demo::EndsConnection(cut));
}

TEST(Recording, GivesThePortionsOfAPulledEnumerationToEachClientAnew) {
    const std::string pull = OperationBody("PullInstancesWithPath",
                                           "<IPARAMVALUE NAME=\"EnumerationContext\"><VALUE>c</VALUE></IPARAMVALUE>");
    demo::Recording recording(Exchange(1, pull, "a1") + Exchange(2, pull, "a2"));
    EXPECT_THAT(Next(recording, pull, 4),
                ElementsAre(Message("7", "a1"), Message("7", "a2"), Message("7", "a1"), Message("7", "a2")));
}

TEST(Recording, KeepsOnlyOneAnswerToEachRequest) {
    const demo::Recording recording(Exchange(1, Enumeration("A"), "a") + Answer(1, Head("b"), "b"));
    EXPECT_EQ(recording.Size(), 1U);
}

TEST(Recording, WithoutTheEndsOfItsPartsIsRefusedInLinearTime) {
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        text += Title(1, "request");
    }
    for (int i = 0; i < 20000; ++i) {
        text += Title(1, "end of the request, 99999999 bytes in its body");
    }
    try {
        const demo::Recording recording(text);
        FAIL() << "it is one";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "too many of its parts have no end");
    }
}

TEST(Recording, IsRefusedWhereTheFileIsMalformed) {
    for (const std::string text : {"", "hello\n", "=== \n=== 1  x  request\n", "\0\0"}) {
        EXPECT_THROW(demo::Recording{text}, std::runtime_error) << text;
    }
    // Whatever is cut off, nothing breaks.
    const std::string first = Exchange(1, Enumeration("A"), "a");
    const std::string whole = first + Exchange(2, Enumeration("B"), "b");
    for (std::size_t size = 0; size < whole.size(); size += 3) {
        try {
            EXPECT_GE(demo::Recording(whole.substr(0, size)).Size(), 1U);
        } catch (const std::runtime_error&) {
            EXPECT_LT(size, first.size());
        }
    }
}

TEST(RecordedBytes, AreThoseOfTheAnswerWithTheMessageIdOfTheRequest) {
    const auto bytes = [](demo::RecordedAnswer answer) { return demo::BytesFor(answer, "a<1"); };
    EXPECT_EQ(bytes({"7", Head(Message("7", "x")), Message("7", "x"), ""}),
              Head(Message("a&lt;1", "x")) + Message("a&lt;1", "x"));
    // A length that was wrong stays so, and the ID of another request, too.
    EXPECT_EQ(bytes({"7", "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n", Message("8", "x"), ""}),
              "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n" + Message("8", "x"));
    const std::string chunked = "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\ntransfer-encoding: Chunked\r\n\r\n";
    EXPECT_EQ(bytes({"7", chunked, "<MESSAGE ID='7'/>", "CIMStatusCode: 6\r\n"}),
              chunked + "16\r\n<MESSAGE ID='a&lt;1'/>\r\n0\r\nCIMStatusCode: 6\r\n\r\n");
    EXPECT_EQ(bytes({"7", "HTTP/1.0 500\r\n\r\n", "", ""}), "HTTP/1.0 500\r\n\r\n");
}

TEST(RecordedBytes, EndTheConnectionWhereTheServerDid) {
    const std::string body = "<a/>";
    EXPECT_FALSE(demo::EndsConnection({"7", Head(body), body, ""}));
    EXPECT_FALSE(demo::EndsConnection({"7", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", body, ""}));
    EXPECT_TRUE(
        demo::EndsConnection({"7", "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 4\r\n\r\n", body, ""}));
    EXPECT_TRUE(demo::EndsConnection({"7", "HTTP/1.0 200 OK\r\n\r\n", body, ""}));
}

TEST(RecordedBytes, AreMadeOfAHeadWithoutColonsInLinearTime) {
    std::string head = "HTTP/1.1 200 OK\r\n";
    for (int i = 0; i < 600000; ++i) {
        head += "a\r\n";
    }
    head += std::string(std::size_t{4} << 20, 'a') + "\r\n\r\n"; // each line would be searched as far as this
    const demo::RecordedAnswer answer{"7", head, "b", ""};
    EXPECT_TRUE(demo::BytesFor(answer, "8") == head + "b");
    EXPECT_TRUE(demo::EndsConnection(answer));
}

TEST(Replay, AnswersAsRecordedAndSaysWhatIsNot) {
    demo::Recording recording(Exchange(1, Enumeration("A"), "<x/>"));
    std::vector<std::string> unknown;
    const demo::ReplayListener listener(
        recording, [&](const std::string& request) { unknown.push_back(request); }, support::LoopbackAddress(), 5988,
        nullptr);
    EXPECT_EQ(listener.Url(), "http://" + support::LoopbackAddress() + ":5988");
    const auto ask = [](const std::string& body) {
        return exchange::Send(exchange::Post(exchange::OperationHeaders("EnumerateInstances"), body));
    };
    auto headers = exchange::OperationHeaders("EnumerateInstances");
    headers["Connection"] = "keep-alive";
    exchange::Session session;
    const std::string request = exchange::Post(headers, Enumeration("a"));
    EXPECT_EQ(session.Send(request).body, Message("7", "<x/>"));
    EXPECT_EQ(session.Send(request).body, Message("7", "<x/>")) << "on the same connection";
    EXPECT_THAT(unknown, testing::IsEmpty());
    const auto refused = ask(Enumeration("B"));
    EXPECT_EQ(refused.status, 501);
    EXPECT_THAT(refused.headers.at("pgerrordetail"), HasSubstr("not%20recorded%3A%20EnumerateInstances%20of%20B"));
    EXPECT_THAT(unknown, ElementsAre("EnumerateInstances of B in root/cimv2"));
    EXPECT_EQ(ask("no XML").status, 400);
}

TEST(Replay, ServesOnAfterARequestThatCannotBeAnswered) {
    demo::Recording recording(Exchange(1, Enumeration("A"), "<x/>"));
    const demo::ReplayListener listener(
        recording, [](const std::string& /*request*/) { throw std::bad_alloc(); }, support::LoopbackAddress(), 5988,
        nullptr);
    const auto ask = [](const std::string& body) {
        return exchange::Send(exchange::Post(exchange::OperationHeaders("EnumerateInstances"), body));
    };
    EXPECT_EQ(ask(Enumeration("B")).status, 500);
    EXPECT_EQ(ask(Enumeration("A")).body, Message("7", "<x/>"));
}

} // namespace
