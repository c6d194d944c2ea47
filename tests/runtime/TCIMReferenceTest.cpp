#include "host/TCIMReference.h"

#include "host/TCIMChar16.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"
#include "runtime/ExpectStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace NQORVYX20 {
namespace {

using testing::ElementsAre;
using TType = TCIMValue::TCIMType;

TCIMReference Make(const std::string& className, const std::vector<std::pair<std::string, TCIMValue>>& keys) {
    TCIMReference reference({}, {});
    reference.SetClassName(className);
    for (const auto& [name, value] : keys) {
        reference.AddKeyValue(name, value);
    }
    return reference;
}

std::vector<std::string> KeyNamesOf(const TCIMReference& reference, std::size_t limit = 99) {
    std::vector<std::string> names;
    reference.EnumerateKeyValues([&](const std::string& name, const TCIMValue&) {
        names.push_back(name);
        return names.size() < limit;
    });
    return names;
}

TEST(TCIMReference, HasTheKeysOfTheContextFirst) {
    TCIMReference reference({}, {{"b", 1}, {"a", 2}});
    reference.AddKeyValue("A0", 3);
    EXPECT_THAT(KeyNamesOf(reference), ElementsAre("a", "b", "A0"));
    EXPECT_EQ(reference.GetClassName(), "");
    EXPECT_FALSE(reference.GetNamespace());
}

TEST(TCIMReference, StopsTheEnumerationWhenTheCallbackSaysSo) {
    EXPECT_THAT(KeyNamesOf(Make("C", {{"a", 1}, {"b", 2}}), 1), ElementsAre("a"));
}

TEST(TCIMReference, FindsKeysWithoutRegardToCase) {
    const TCIMReference reference = Make("C", {{"Name", "x"}});
    EXPECT_EQ(reference.GetKeyValue("NAME"), TCIMValue("x"));
    EXPECT_TRUE(reference.GetKeyValue("Nam").IsNull());
}

TEST(TCIMReference, FindsAndReplacesKeysAlsoAmongMany) {
    constexpr int kCount = 100;
    const auto name = [](int i) { return "Key" + std::to_string(i); };
    TCIMContext first{{"key0", "in another spelling"}};
    for (int i = 0; i < kCount / 2; ++i) {
        first.emplace(name(i), i);
    }
    TCIMReference reference({}, first);
    for (int i = 0; i < kCount; ++i) {
        reference.AddKeyValue("KEY" + std::to_string(i), 2 * i);
    }
    EXPECT_EQ(KeyNamesOf(reference, 2 * kCount).size(), kCount + 1U);
    const TCIMReference copy = reference;
    for (int i = 0; i < kCount; ++i) {
        ASSERT_EQ(reference.GetKeyValue(name(i)), TCIMValue(2 * i));
        ASSERT_EQ(copy.GetKeyValue(name(i)), TCIMValue(2 * i));
    }
    EXPECT_TRUE(reference.GetKeyValue("Key100").IsNull());
}

TEST(TCIMReference, ReplacesTheValueOfAKeyInItsPlace) {
    const TCIMReference reference = Make("C", {{"Name", "x"}, {"Id", 1}, {"name", "y"}});
    EXPECT_THAT(KeyNamesOf(reference), ElementsAre("Name", "Id"));
    EXPECT_EQ(reference.GetKeyValue("Name"), TCIMValue("y"));
}

TEST(TCIMReference, WritesKeysInTheOrderOfTheirNormalisedNames) {
    EXPECT_EQ(Make("Class", {{"key2", 3}, {"Key1", "text"}}).GetPath(), "Class.Key1=\"text\",key2=3");
    EXPECT_EQ(Make("Class", {{"b", 1}, {"A", 2}, {"C", 3}}).GetPath(), "Class.A=2,b=1,C=3");
}

TEST(TCIMReference, WritesNumbersAndBooleansBareAndTextQuoted) {
    EXPECT_EQ(Make("C", {{"k", -1}}).GetPath(), "C.k=-1");
    EXPECT_EQ(Make("C", {{"k", true}}).GetPath(), "C.k=true");
    EXPECT_EQ(Make("C", {{"k", 0.5}}).GetPath(), "C.k=0.5");
    EXPECT_EQ(Make("C", {{"k", "-1"}}).GetPath(), "C.k=\"-1\"");
    EXPECT_EQ(Make("C", {{"k", "a\"b\\c"}}).GetPath(), R"(C.k="a\"b\\c")");
    EXPECT_EQ(Make("C", {{"k", "\"\"ab\\\\"}}).GetPath(), R"(C.k="\"\"ab\\\\")");
    EXPECT_EQ(Make("C", {{"k", ""}}).GetPath(), "C.k=\"\"");
    EXPECT_EQ(Make("C", {{"k", TCIMDateTime()}}).GetPath(), "C.k=\"00000000000000.000000:000\"");
    EXPECT_EQ(Make("C", {{"k", TCIMChar16("65")}}).GetPath(), "C.k=\"A\"");
}

TEST(TCIMReference, WritesAReferenceAsAQuotedPath) {
    TCIMReference inner = Make("In", {{"k", "x"}});
    EXPECT_EQ(Make("Out", {{"r", inner}}).GetPath(), R"(Out.r="In.k=\"x\"")");
}

TEST(TCIMReference, TellsNullsAndArraysFromTexts) {
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMString, 0)}}).GetPath(), "C.k=NULL");
    EXPECT_EQ(Make("C", {{"k", ""}}).GetPath(), "C.k=\"\"");
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMStringArray, 0)}}).GetPath(), "C.k=NULL");
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMString, 0, {})}}).GetPath(), "C.k={}");
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMString, 0, {"a", "b"})}}).GetPath(), "C.k={\"a\",\"b\"}");
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMString, 0, {"a, b"})}}).GetPath(), "C.k={\"a, b\"}");
    EXPECT_EQ(Make("C", {{"k", TCIMValue(TType::eCIMSint32, 0, {1, 2})}}).GetPath(), "C.k={1,2}");
}

TEST(TCIMReference, WritesWhatItHasWhenSomethingIsMissing) {
    EXPECT_EQ(Make("", {}).GetPath(), "");
    EXPECT_EQ(Make("C", {}).GetPath(), "C");
    EXPECT_EQ(Make("", {{"k", 1}, {"l", 2}}).GetPath(), "k=1,l=2");
}

TEST(TCIMReference, EqualsAnotherInWhateverOrderKeysWereAdded) {
    const TCIMReference reference = Make("C", {{"a", 1}, {"b", "x"}});
    EXPECT_EQ(reference, Make("C", {{"b", "x"}, {"a", 1}}));
    EXPECT_NE(reference, Make("C", {{"b", "x"}, {"a", 2}}));
    EXPECT_NE(reference, Make("D", {{"b", "x"}, {"a", 1}}));
    EXPECT_TRUE(reference < Make("D", {}));
    EXPECT_FALSE(reference < reference);
}

TEST(TCIMChar16, TakesTheCodeAsDigits) {
    EXPECT_EQ(TCIMChar16("65").GetCode(), 65);
    EXPECT_EQ(TCIMChar16("0").GetCode(), 0);
    EXPECT_EQ(TCIMChar16("65535").GetCode(), 65535);
    for (const char* const malformed : {"", "A", "65 ", " 65", "+65", "-1", "0x41", "65536", "99999999999999999999"}) {
        EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMChar16(malformed));
    }
}

TEST(TCIMChar16, IsWrittenAsUtf8) {
    EXPECT_EQ(TCIMChar16("0").ToString(), std::string(1, '\0'));
    EXPECT_EQ(TCIMChar16("127").ToString(), "\x7F");
    EXPECT_EQ(TCIMChar16("128").ToString(), "\xC2\x80");
    EXPECT_EQ(TCIMChar16("2047").ToString(), "\xDF\xBF");
    EXPECT_EQ(TCIMChar16("2048").ToString(), "\xE0\xA0\x80");
    EXPECT_EQ(TCIMChar16("65533").ToString(), "\xEF\xBF\xBD");
    EXPECT_EQ(TCIMChar16("55296").ToString(), "\xEF\xBF\xBD"); // half of a surrogate pair
    EXPECT_EQ(TCIMChar16("57343").ToString(), "\xEF\xBF\xBD");
    EXPECT_EQ(TCIMChar16("57344").ToString(), "\xEE\x80\x80");
}

TEST(TVYXException, HasTheTextOfItsStatus) {
    EXPECT_EQ(TVYXException(TVYXStatusCode::eNotFound).GetStatusCode().GetCode(), TVYXStatusCode::eNotFound);
    EXPECT_STREQ(TVYXException(TVYXStatusCode::eNotFound).what(),
                 TVYXStatusCode(TVYXStatusCode::eNotFound).TranslateStatusCode());
}

TEST(TVYXStatusCode, HasASentenceOfItsOwnForEveryCode) {
    std::vector<std::string> sentences;
    for (const std::uint32_t code : {0U, 1U, 14U, 15U, 16U, 25U, 28U, 31U, 32U, 42U, 4711U}) {
        const std::string sentence = TVYXStatusCode(code).TranslateStatusCode();
        EXPECT_EQ(sentence.back(), '.');
        EXPECT_THAT(sentences, testing::Not(testing::Contains(sentence))) << code;
        sentences.push_back(sentence);
    }
}

TEST(TCIMReference, HasHostAndNamespaceBeforeItsClass) {
    TCIMReference reference = Make("Fan", {{"Name", "a"}});
    reference.SetNamespaceName("root/interop");
    EXPECT_EQ(reference.GetPath(), "root/interop:Fan.Name=\"a\"");
    reference.SetHost("server:5988");
    EXPECT_EQ(reference.GetPath(), "//server:5988/root/interop:Fan.Name=\"a\"");
    EXPECT_EQ(reference.GetHost(), "server:5988");
    EXPECT_EQ(reference.GetNamespaceName(), "root/interop");
    EXPECT_NE(reference, Make("Fan", {{"Name", "a"}}));
    EXPECT_EQ(TCIMReference(reference), reference);
}

TEST(TCIMReference, WritesAKeyWithoutANameAfterTheClass) { EXPECT_EQ(Make("Fan", {{"", "a"}}).GetPath(), "Fan=\"a\""); }

} // namespace
} // namespace NQORVYX20
