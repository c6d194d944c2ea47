#include "cimxml/QualifierCache.h"

#include "cimxml/Limits.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace Pegasus;
using cimxml::kMaxCachedQualifierBytes;
using cimxml::QualifierCache;

QualifierCache::Entry entry(const std::string& text, const char* value = "x", std::size_t nodes = 2) {
    return {text, CIMQualifier(CIMName("Q"), CIMValue(String(value))), nodes};
}

TEST(QualifierCache, FindsAQualifierByTheWholeTextOfItsElement) {
    QualifierCache cache;
    cache.add(entry("<QUALIFIER a>", "first", 3));
    cache.add(entry("<QUALIFIER b>", "second", 5));
    const auto* const found = cache.find("<QUALIFIER b>");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->qualifier.getValue(), CIMValue(String("second")));
    EXPECT_EQ(found->nodes, 5U);
    EXPECT_EQ(cache.find("<QUALIFIER"), nullptr);
    EXPECT_EQ(cache.find("<QUALIFIER a> "), nullptr);
    EXPECT_EQ(cache.find(""), nullptr);
}

TEST(QualifierCache, FindsNoOtherQualifierWhoseTextHasTheSameHash) {
    QualifierCache cache([](std::string_view text) { return text.size(); });
    cache.add(entry("<QUALIFIER a>", "first"));
    EXPECT_EQ(cache.find("<QUALIFIER b>"), nullptr);
    cache.add(entry("<QUALIFIER b>", "second"));
    EXPECT_EQ(cache.find("<QUALIFIER b>"), nullptr) << "of two, the first one is kept";
    EXPECT_EQ(cache.find("<QUALIFIER a>")->qualifier.getValue(), CIMValue(String("first")));
}

TEST(QualifierCache, SharesTheQualifier) {
    QualifierCache cache;
    const auto added = entry("text");
    cache.add(added);
    EXPECT_TRUE(cache.find("text")->qualifier.identical(added.qualifier));
}

TEST(QualifierCache, KeepsTheFirstOfTwoWithOneText) {
    QualifierCache cache;
    cache.add(entry("text", "first"));
    cache.add(entry("text", "second"));
    EXPECT_EQ(cache.find("text")->qualifier.getValue(), CIMValue(String("first")));
}

TEST(QualifierCache, IsFullOnceATextFindsNoRoomAndTakesNoneAfterIt) {
    QualifierCache cache;
    const std::string all(kMaxCachedQualifierBytes, 'x');
    cache.add(entry(all));
    EXPECT_FALSE(cache.isFull());
    cache.add(entry("y"));
    EXPECT_TRUE(cache.isFull());
    EXPECT_EQ(cache.find("y"), nullptr);
    EXPECT_NE(cache.find(all), nullptr);
    cache.add(entry(""));
    EXPECT_EQ(cache.find(""), nullptr) << "it stays full, so that it is cleared before the next answer";
}

TEST(QualifierCache, HasAllItsRoomAgainAfterItWasCleared) {
    QualifierCache cache;
    const std::string all(kMaxCachedQualifierBytes, 'x');
    cache.add(entry(all));
    cache.add(entry("y"));
    cache.clear();
    EXPECT_FALSE(cache.isFull());
    EXPECT_EQ(cache.find(all), nullptr);
    cache.add(entry(all));
    EXPECT_FALSE(cache.isFull());
    EXPECT_NE(cache.find(all), nullptr);
}

} // namespace
