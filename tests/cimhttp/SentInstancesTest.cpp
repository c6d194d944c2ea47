// What the other tests are measured with: the reader of answers, the comparison with what is shown, and the random
// changes.

#include "SentInstances.h"

#include "AnswerMutation.h"
#include "SchemaServer.h"
#include "support/CimXml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using nlohmann::json;
using testing::HasSubstr;

namespace {

std::string Answer(const std::string& returned) {
    return support::xml::BareMessage("1",
                                     support::xml::Response("EnumerateInstances", support::xml::ReturnValue(returned)));
}

/// An instance of A with the key K.
std::string Instance(const std::string& key, const std::string& properties) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE VALUETYPE=\"string\">" +
           key + "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"A\">" + properties +
           "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

json Record(const std::string& key, const json& properties) {
    return {{"path", "A.K=\"" + key + '"'}, {"class", "A"}, {"properties", properties}};
}

json Property(const std::string& type, const json& value) { return {{"type", type}, {"value", value}}; }

/// The difference between an instance with this property P and one that is shown with other properties.
std::string Difference(const std::string& sent, const json& shown) {
    return DifferenceFromSent(ReadSentInstances(Answer(Instance("1", sent))), json::array({Record("1", shown)}));
}

std::string Scalar(const std::string& type, const std::string& value) {
    return "<PROPERTY NAME=\"P\" TYPE=\"" + type + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

} // namespace

TEST(SentInstancesTest, EqualValuesAreNoDifference) {
    EXPECT_EQ(Difference(Scalar("uint64", " 0xFFFFFFFFFFFFFFFF "), {{"P", Property("uint64", UINT64_MAX)}}), "");
    EXPECT_EQ(Difference(Scalar("sint8", "-128"), {{"P", Property("sint8", -128)}}), "");
    EXPECT_EQ(Difference(Scalar("real32", "0.1"), {{"P", Property("real32", 0.1)}}), "");
    EXPECT_EQ(Difference(Scalar("boolean", "true"), {{"P", Property("boolean", true)}}), "");
    EXPECT_EQ(Difference(Scalar("string", " a<![CDATA[<b>]]>&amp; "), {{"P", Property("string", " a<b>& ")}}), "");
    EXPECT_EQ(Difference("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/>"
                         "</VALUE.ARRAY></PROPERTY.ARRAY>",
                         {{"P", Property("uint8", {1, nullptr})}}),
              "");
    EXPECT_EQ(
        Difference("<PROPERTY.REFERENCE NAME=\"P\"><VALUE.REFERENCE><LOCALINSTANCEPATH><LOCALNAMESPACEPATH>"
                   "<NAMESPACE NAME=\"a\"/><NAMESPACE NAME=\"b\"/></LOCALNAMESPACEPATH><INSTANCENAME CLASSNAME=\"B\">"
                   "<KEYBINDING NAME=\"Y\"><KEYVALUE VALUETYPE=\"numeric\">-1</KEYVALUE></KEYBINDING>"
                   "<KEYBINDING NAME=\"x\"><KEYVALUE>&quot;</KEYVALUE></KEYBINDING></INSTANCENAME>"
                   "</LOCALINSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>",
                   {{"P", Property("reference", "a/b:B.x=\"\\\"\",Y=-1")}}),
        "");
}

TEST(SentInstancesTest, ANullIsANullOfAnyTypeOrNothing) {
    const std::string null = "<PROPERTY NAME=\"P\" TYPE=\"uint8\"/>";
    EXPECT_EQ(Difference(null, {{"P", Property("uint16", nullptr)}}), "");
    EXPECT_EQ(Difference(null, json::object()), "");
    EXPECT_EQ(Difference("", {{"P", Property("uint16", nullptr)}}), "");
    EXPECT_THAT(Difference(null, {{"P", Property("uint8", 0)}}), HasSubstr("sent null, shown 0"));
    EXPECT_THAT(Difference(Scalar("string", ""), {{"P", Property("string", nullptr)}}), HasSubstr("shown null"));
}

TEST(SentInstancesTest, FindsWhatIsOtherThanItWasSent) {
    const std::string sent = Scalar("uint8", "1");
    EXPECT_THAT(Difference(sent, {{"P", Property("uint8", 2)}}), HasSubstr("P: sent 1, shown 2"));
    EXPECT_THAT(Difference(sent, {{"P", Property("uint16", 1)}}), HasSubstr("P: sent as uint8"));
    EXPECT_THAT(Difference(sent, {{"P", Property("uint8", {1})}}), HasSubstr("P: sent 1, shown [1]"));
    EXPECT_THAT(Difference(sent, json::object()), HasSubstr("P: not shown"));
    EXPECT_THAT(Difference("", {{"P", Property("uint8", 0)}}), HasSubstr("P: not sent"));
    EXPECT_THAT(Difference(sent + sent, {{"P", Property("uint8", 1)}}), HasSubstr("sent twice: P"));
}

TEST(SentInstancesTest, LooksIntoEmbeddedObjects) {
    const std::string sent = "<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>&lt;INSTANCE "
                             "CLASSNAME='B'&gt;&lt;PROPERTY NAME='Q' TYPE='uint8'&gt;&lt;VALUE&gt;1&lt;/VALUE&gt;"
                             "&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;</VALUE></PROPERTY>";
    const auto difference = [&](const json& object) {
        return Difference(sent, {{"P", {{"type", "string"}, {"value", "instance of B {...};"}, {"object", object}}}});
    };
    EXPECT_EQ(difference({{"class", "B"}, {"properties", {{"Q", 1}}}}), "");
    EXPECT_NE(difference({{"class", "B"}, {"properties", {{"Q", 2}}}}), "");
    EXPECT_NE(difference({{"class", "B"}, {"properties", json::object()}}), "");
    EXPECT_NE(difference({{"class", "B"}, {"properties", {{"Q", 1}, {"R", 1}}}}), "");
    EXPECT_NE(difference({{"class", "A"}, {"properties", {{"Q", 1}}}}), "");
    EXPECT_NE(difference(nullptr), "");
    EXPECT_NE(Difference(sent, {{"P", Property("string", "something else")}}), "");
}

TEST(SentInstancesTest, FindsInstancesThatAreMissingDoubledOrOfAnotherClass) {
    const auto sent = ReadSentInstances(Answer(Instance("1", "") + Instance("2", "")));
    const json one = Record("1", json::object());
    const json two = Record("2", json::object());
    EXPECT_EQ(DifferenceFromSent(sent, {two, one}), "");
    EXPECT_NE(DifferenceFromSent(sent, json::array({one})), "");
    EXPECT_NE(DifferenceFromSent(sent, {one, one}), "");
    EXPECT_NE(DifferenceFromSent(sent, {one, two, Record("3", json::object())}), "");
    EXPECT_NE(DifferenceFromSent(sent, {one, Record("3", json::object())}), "");
    const auto doubled = ReadSentInstances(Answer(Instance("1", "") + Instance("1", "")));
    EXPECT_NE(DifferenceFromSent(doubled, json::array({one})), "");
    EXPECT_NE(DifferenceFromSent(doubled, {one, one}), "");
    json other = two;
    other["class"] = "B";
    EXPECT_THAT(DifferenceFromSent(sent, {one, other}), HasSubstr("sent as one of A"));
}

TEST(SentInstancesTest, RefusesWhatNobodyCanRead) {
    for (const std::string& property :
         {Scalar("uint8", "256"), Scalar("uint8", "x"), Scalar("uint8", ""), Scalar("uint9", "1"),
          Scalar("boolean", "maybe"), Scalar("char16", "ab"), Scalar("datetime", "now"), Scalar("real64", "1.5x"),
          std::string("<BOGUS NAME=\"P\"/>"),
          std::string("<PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY/></PROPERTY>"),
          std::string("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTY.ARRAY>")}) {
        EXPECT_THROW(ReadSentInstances(Answer(Instance("1", property))), UnreadableAnswer) << property;
    }
    const std::string whole = Answer(Instance("1", ""));
    EXPECT_THROW(ReadSentInstances(whole.substr(0, whole.size() - 1)), UnreadableAnswer);
    EXPECT_THROW(ReadSentInstances("<CIM/>"), UnreadableAnswer);
}

TEST(AnswerMutationTest, MakesReadableAnswersOfThoseThatAreToBeShownAndChangesNearlyAll) {
    const SchemaServer server;
    const std::string body = server.Answer("EnumerateInstances", "WH_Sample", true);
    constexpr unsigned kSeeds = 200;
    for (unsigned mutation = 0; mutation <= static_cast<unsigned>(Mutation::kCut); ++mutation) {
        unsigned changed = 0;
        for (unsigned seed = 0; seed < kSeeds; ++seed) {
            std::mt19937 random(seed);
            const MutatedAnswer mutated = Mutate(body, static_cast<Mutation>(mutation), random);
            changed += mutated.sent.body != body ? 1 : 0;
            if (mutated.expectation == MutatedAnswer::Expectation::kShown) {
                EXPECT_NO_THROW(ReadSentInstances(mutated.sent.body)) << mutation << ' ' << mutated.what;
            }
        }
        EXPECT_GT(changed, kSeeds * 4 / 5) << mutation;
    }
}
