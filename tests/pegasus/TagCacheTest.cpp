#include "xml/TagCache.h"

#include "xml/TagFacts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Pegasus::xml;

/// A tag with one attribute, of views of its text.
class TagText {
  public:
    explicit TagText(const std::string& value) : text_("<P N='" + value + "'>") {
        const std::string_view view(text_);
        tag_.element = view.substr(1, 1);
        tag_.attributes.reset(tag_.element);
        tag_.attributes.add(view.substr(3, 1), view.substr(6, value.size()));
    }

    CachedTag* findOrAddTo(TagCache& cache) const { return cache.findOrAdd(tag_, text_); }
    const StartTag& tag() const { return tag_; }

  private:
    const std::string text_;
    StartTag tag_;
};

void fill(TagCache& cache) {
    for (std::size_t i = 0; i < kMaxCachedTags; ++i) {
        TagText(std::to_string(i)).findOrAddTo(cache);
    }
}

TEST(TagCache, FindsTheTagOfAnEqualText) {
    TagCache cache;
    const CachedTag* const first = TagText("a").findOrAddTo(cache);
    const CachedTag* const other = TagText("b").findOrAddTo(cache);
    EXPECT_EQ(TagText("a").findOrAddTo(cache), first);
    EXPECT_NE(other, first);
    EXPECT_EQ(first->number, 1U);
    EXPECT_EQ(other->number, 2U);
}

TEST(TagCache, KeepsTextOfItsOwn) {
    TagCache cache;
    const CachedTag* const tag = TagText("value").findOrAddTo(cache); // whose text is gone now
    EXPECT_EQ(tag->text, "<P N='value'>");
    EXPECT_EQ(tag->element, "P");
    EXPECT_EQ(tag->attributes.find("N"), "value");
    EXPECT_EQ(tag->element.data(), tag->text.data() + 1) << "a view of the text";
}

TEST(TagCache, HasNoRoomForATagThatIsTooLong) {
    TagCache cache;
    const std::string longest(kMaxCachedTagBytes - std::string_view("<P N=''>").size(), 'x');
    EXPECT_NE(TagText(longest).findOrAddTo(cache), nullptr);
    EXPECT_EQ(TagText(longest + "x").findOrAddTo(cache), nullptr);
}

TEST(TagCache, TakesNoMoreThanItsLimitAndStillFindsWhatItHas) {
    TagCache cache;
    fill(cache);
    EXPECT_TRUE(cache.isFull());
    EXPECT_EQ(TagText("one more").findOrAddTo(cache), nullptr);
    ASSERT_NE(TagText("0").findOrAddTo(cache), nullptr);
    EXPECT_EQ(TagText("0").findOrAddTo(cache)->number, 1U);
}

TEST(TagCache, HasRoomAgainAfterItWasCleared) {
    TagCache cache;
    fill(cache);
    cache.clear();
    EXPECT_FALSE(cache.isFull());
    const CachedTag* const tag = TagText("one more").findOrAddTo(cache);
    ASSERT_NE(tag, nullptr);
    EXPECT_EQ(tag->number, 1U);
    EXPECT_EQ(tag->firstChild, nullptr);
    EXPECT_EQ(tag->nextSibling, nullptr);
}

TEST(TagFacts, AreDecodedOnceForATagOfACacheAndEachTimeForAnother) {
    TagFacts<std::string> facts;
    int decoded = 0;
    const auto decode = [&](const StartTag& tag) {
        ++decoded;
        return std::string(tag.attributes.get("N"));
    };
    TagCache cache;
    const CachedTag* const a = TagText("a").findOrAddTo(cache);
    const CachedTag* const b = TagText("b").findOrAddTo(cache);
    EXPECT_EQ(facts.get(*b, decode), "b");
    EXPECT_EQ(facts.get(*a, decode), "a");
    EXPECT_EQ(facts.get(*b, decode), "b");
    EXPECT_EQ(decoded, 2);
    const TagText first("c");
    const TagText second("d");
    EXPECT_EQ(facts.get(first.tag(), decode), "c");
    EXPECT_EQ(facts.get(second.tag(), decode), "d");
    EXPECT_EQ(decoded, 4);
    facts.clear();
    EXPECT_EQ(facts.get(*a, decode), "a");
    EXPECT_EQ(decoded, 5);
}

} // namespace
