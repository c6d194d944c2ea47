#include "provider/PolicyDocument.h"

#include "cimhttp/ContextKeys.h"
#include "provider/PolicyFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace {

using Value = ConnectionOptions::Value;

constexpr std::uint64_t kLargest = 18446744073709551615U;

std::string WithEntry(const std::string& members) { return R"({"servers": [{)" + members + "}]}"; }

/// An entry for all servers.
std::string Forcing(const std::string& options) { return WithEntry(R"("match": "*", "force": {)" + options + "}"); }

std::string FaultOf(const std::string& text) {
    try {
        const PolicyDocument document(text);
        ADD_FAILURE() << "it was understood: " << text.substr(0, 200);
    } catch (const PolicyFault& fault) {
        return fault.what();
    }
    return {};
}

} // namespace

TEST(PolicyDocument, HasEntriesWithPatternsAndOptions) {
    const PolicyDocument document(R"({"servers": [
        {"match": "*.storage.example", "force": {"tls": true, "trust": "/etc/ssl/storage.pem"},
         "default": {"timeout": 30000, "namespace": "root/emc"}},
        {"match": ["10.0.0.*", "array7"]}]})");
    ASSERT_THAT(document.Entries(), SizeIs(2));
    const PolicyEntry& first = document.Entries().front();
    ASSERT_THAT(first.patterns, SizeIs(1));
    EXPECT_EQ(first.patterns.front().Text(), "*.storage.example");
    EXPECT_THAT(first.forced.All(),
                ElementsAre(Pair(kTlsKey, Value(true)), Pair(kTrustKey, Value("/etc/ssl/storage.pem"))));
    EXPECT_THAT(first.defaults.All(),
                ElementsAre(Pair(kNamespaceKey, Value("root/emc")), Pair(kTimeoutKey, Value(std::uint64_t{30000}))));
    const PolicyEntry& second = document.Entries().back();
    ASSERT_THAT(second.patterns, SizeIs(2));
    EXPECT_EQ(second.patterns.back().Text(), "array7");
    EXPECT_THAT(second.forced.All(), IsEmpty());
    EXPECT_THAT(second.defaults.All(), IsEmpty());
}

TEST(PolicyDocument, KnowsEveryOptionOfAConnection) {
    const PolicyDocument document(
        Forcing(R"("namespace": "interop", "tls": true, "trust": "/a", "fingerprint": ")" + std::string(64, '0') +
                R"(", "client.certificate": "/b", "client.key": "/c", "connect.timeout": 4294967295, "timeout": 1,
           "limit.objects": 18446744073709551615, "limit.bytes": 2, "limit.elements": 3)"));
    const ConnectionOptions& options = document.Entries().front().forced;
    EXPECT_EQ(options.All().size(), 11U);
    EXPECT_EQ(options.Number(kLimitObjectsKey), kLargest);
    EXPECT_EQ(options.Number(kLimitElementsKey), 3U);
    EXPECT_EQ(options.Text(kClientKeyKey), "/c");
}

TEST(PolicyDocument, MayHaveNoEntries) {
    EXPECT_THAT(PolicyDocument(R"({"servers": []})").Entries(), IsEmpty());
    EXPECT_THAT(PolicyDocument("{}").Entries(), IsEmpty());
}

TEST(PolicyDocument, WhatIsNoJsonIsRefusedWithItsLine) {
    EXPECT_THAT(FaultOf(""), HasSubstr("is no JSON: parse error at line 1, column 1"));
    EXPECT_THAT(FaultOf("{\n  \"servers\": [\n  oops"), HasSubstr("line 3"));
    EXPECT_THAT(FaultOf("{\"servers\": []} {}"), HasSubstr("line 1, column 17"));
    EXPECT_THAT(FaultOf("{\"servers\": [], // a remark\n}"), HasSubstr("line 1"));
    EXPECT_THAT(FaultOf("{\"servers\": [],}"), HasSubstr("line 1"));
    EXPECT_THAT(FaultOf(WithEntry("\"match\": \"\xff\"")), HasSubstr("is no JSON"));
    EXPECT_THAT(FaultOf(Forcing("\"timeout\": 1e999")), HasSubstr("is no JSON"));
}

TEST(PolicyDocument, AMemberThatThereIsNotIsRefusedWithTheNearestOne) {
    EXPECT_EQ(FaultOf(R"({"server": []})"),
              "the document has a member that there is not: 'server' (did you mean 'servers'?)");
    EXPECT_EQ(FaultOf(WithEntry(R"("match": "*", "forced": {})")),
              "entry 1 has a member that there is not: 'forced' (did you mean 'force'?)");
    EXPECT_EQ(FaultOf(Forcing(R"("tsl": true)")),
              "entry 1, force has a member that there is not: 'tsl' (did you mean 'tls'?)");
    EXPECT_EQ(FaultOf(WithEntry(R"("match": "*", "default": {"reading": "faithful"})")),
              "entry 1, default has a member that there is not: 'reading'");
    EXPECT_THAT(FaultOf(Forcing(R"("cimhttp.tls": true)")), HasSubstr("'cimhttp.tls'"));
    EXPECT_THAT(FaultOf(Forcing(R"("a\nb": true)")), HasSubstr("'a?b'"));
}

TEST(PolicyDocument, AMemberThatIsThereTwiceIsRefused) {
    EXPECT_EQ(FaultOf(Forcing(R"("tls": true, "trust": "/a", "tls": false)")),
              "has the member 'tls' twice in one object");
    EXPECT_EQ(FaultOf(R"({"servers": [], "servers": []})"), "has the member 'servers' twice in one object");
    const PolicyDocument same(WithEntry(R"("match": "*", "force": {"tls": true}, "default": {"tls": true})"));
    EXPECT_THAT(same.Entries(), SizeIs(1)) << "these are two objects";
}

TEST(PolicyDocument, AValueOfAnotherTypeIsRefused) {
    EXPECT_EQ(FaultOf("[]"), "the document is not an object");
    EXPECT_EQ(FaultOf("null"), "the document is not an object");
    EXPECT_EQ(FaultOf(R"({"servers": {}})"), "'servers' is not a list");
    EXPECT_EQ(FaultOf(R"({"servers": [{"match": "*"}, 7]})"), "entry 2 is not an object");
    EXPECT_EQ(FaultOf(WithEntry(R"("match": "*", "force": [])")), "entry 1, force is not an object");
    EXPECT_EQ(FaultOf(WithEntry(R"("match": "*", "default": null)")), "entry 1, default is not an object");
    EXPECT_EQ(FaultOf(Forcing(R"("tls": "true")")), "entry 1, force: tls is neither true nor false");
    EXPECT_EQ(FaultOf(Forcing(R"("trust": ["/a"])")), "entry 1, force: trust is not a text");
    EXPECT_EQ(FaultOf(Forcing(R"("namespace": null)")), "entry 1, force: namespace is not a text");
    for (const char* const number : {"0", "-1", "1.5", "1e3", "\"7\"", "true", "null", "4294967296"}) {
        EXPECT_EQ(FaultOf(Forcing("\"timeout\": " + std::string(number))),
                  "entry 1, force: timeout is not an unsigned number from 1 to 4294967295");
    }
    EXPECT_THAT(FaultOf(Forcing(R"("limit.bytes": 18446744073709551616)")), HasSubstr("limit.bytes is not"));
}

TEST(PolicyDocument, AValueThatMakesNoSenseIsRefused) {
    EXPECT_EQ(FaultOf(Forcing(R"("trust": "")")), "entry 1, force: trust is empty");
    EXPECT_EQ(FaultOf(Forcing(R"("trust": "ssl/ca.pem")")), "entry 1, force: trust is not an absolute path");
    EXPECT_EQ(FaultOf(Forcing(R"("client.certificate": "c.pem")")),
              "entry 1, force: client.certificate is not an absolute path");
    EXPECT_EQ(FaultOf(Forcing(R"("trust": "/a\u0000b")")), "entry 1, force: trust holds a null character");
    EXPECT_THAT(FaultOf(Forcing(R"("fingerprint": "AB:CD")")), HasSubstr("fingerprint is 'AB:CD', which is not"));
    EXPECT_THAT(FaultOf(Forcing(R"("namespace": "no name")")), HasSubstr("which is no name of a namespace"));
    EXPECT_THAT(FaultOf(Forcing(R"("client.key": "/c")")), HasSubstr("is the key of no certificate"));
    EXPECT_THAT(FaultOf(Forcing(R"("tls": false, "trust": "/a")")), HasSubstr("cannot be kept where"));
}

TEST(PolicyDocument, AnEntryThatCanMatchNothingIsRefused) {
    EXPECT_THAT(FaultOf(WithEntry("")), HasSubstr("entry 1 has a 'match' that is neither a pattern nor a list"));
    EXPECT_THAT(FaultOf(WithEntry(R"("match": 7)")), HasSubstr("neither a pattern nor a list"));
    EXPECT_THAT(FaultOf(WithEntry(R"("match": ["a", ["b"]])")), HasSubstr("neither a pattern nor a list"));
    EXPECT_EQ(FaultOf(WithEntry(R"("match": [])")), "entry 1 matches nothing");
    for (const char* const pattern : {"", "https://array7", "array7 ", "a\\\\b", "a\\nb"}) {
        EXPECT_THAT(FaultOf(WithEntry("\"match\": [\"a\", \"" + std::string(pattern) + "\"]")),
                    HasSubstr("entry 1 matches no host: '"))
            << pattern;
    }
}

TEST(PolicyDocument, ADeepOneIsRefusedHoweverDeepItIs) {
    const std::string deep(std::size_t{1} << 20U, '[');
    EXPECT_EQ(FaultOf(deep), "is nested too deeply for a policy");
    EXPECT_EQ(FaultOf("{\"servers\": " + deep), "is nested too deeply for a policy");
}
