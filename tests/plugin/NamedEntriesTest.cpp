// The collection in which elements keep their parts by name.

#include "model/NamedEntries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Texts = NamedEntries<std::string>;

Texts::TEntry Text(const std::string& text) { return boost::make_shared<std::string>(text); }

std::vector<std::string> Visited(const Texts& entries) {
    std::vector<std::string> texts;
    entries.Visit([&](const auto& entry) {
        texts.push_back(*entry);
        return true;
    });
    return texts;
}

Texts Three() {
    Texts entries;
    entries.Add("b", Text("second"));
    entries.Add("c", Text("third"));
    entries.Add("a", Text("first"));
    return entries;
}

} // namespace

TEST(NamedEntries, AreFoundByName) {
    const Texts entries = Three();
    EXPECT_EQ(*entries.Find("b"), "second");
    EXPECT_FALSE(entries.Find("B"));
    EXPECT_FALSE(entries.Find(""));
    EXPECT_EQ(entries.Size(), 3U);
}

TEST(NamedEntries, AreWalkedInTheOrderOfTheirNames) {
    EXPECT_THAT(Visited(Three()), ElementsAre("first", "second", "third"));
    EXPECT_THAT(Visited(Texts()), IsEmpty());
    std::string names;
    const Texts entries = Three();
    for (const auto& [name, entry] : entries) {
        names += name;
    }
    EXPECT_EQ(names, "abc");
}

TEST(NamedEntries, AreWalkedInTheOrderOfTheirNamesAlsoWhereTheyAreFoundByHash) {
    HashedEntries<std::string> entries;
    std::vector<std::string> expected;
    for (int i = 0; i < 100; ++i) {
        expected.push_back(std::to_string(100 + i));
        entries.Add(std::to_string(199 - i), Text(std::to_string(199 - i)));
    }
    std::vector<std::string> texts;
    entries.Visit([&](const auto& entry) {
        texts.push_back(*entry);
        return true;
    });
    EXPECT_EQ(texts, expected);
    EXPECT_EQ(entries.Ordered()->size(), 100U);
    EXPECT_EQ(*entries.Find("150"), "150");
}

TEST(NamedEntries, AreFoundByHashInAnyLetterCase) {
    HashedEntries<std::string> entries;
    entries.Add("otherenabledstate", Text("state"));
    EXPECT_EQ(*entries.Find("OtherEnabledState"), "state");
    EXPECT_FALSE(entries.Find("OtherEnabledStat"));
    EXPECT_FALSE(entries.Find("OtherEnabledStatf"));
    EXPECT_FALSE(entries.Add("OTHERENABLEDSTATE", Text("another")));
}

TEST(NamedEntries, HaveAnotherRevisionAfterEachChange) {
    Texts entries;
    std::vector<std::uint64_t> revisions{entries.Revision()};
    const auto note = [&] { revisions.push_back(entries.Revision()); };
    entries.Add("a", Text("1"));
    note();
    entries.Set("a", Text("2"));
    note();
    entries.Remove("a");
    note();
    entries.Clear();
    note();
    EXPECT_EQ(std::set<std::uint64_t>(revisions.begin(), revisions.end()).size(), revisions.size());
    entries.Remove("a");
    EXPECT_EQ(entries.Revision(), revisions.back());
}

TEST(NamedEntries, KeepTheEntryWhoseNameIsTaken) {
    Texts entries = Three();
    EXPECT_FALSE(entries.Add("a", Text("another")));
    EXPECT_THAT(Visited(entries), ElementsAre("first", "second", "third"));
    EXPECT_TRUE(entries.Add("d", Text("fourth")));
    EXPECT_THAT(Visited(entries), ElementsAre("first", "second", "third", "fourth"));
}

TEST(NamedEntries, AreReplacedBySet) {
    Texts entries = Three();
    Visited(entries);
    entries.Set("b", Text("another"));
    entries.Set("aa", Text("new"));
    EXPECT_THAT(Visited(entries), ElementsAre("first", "new", "another", "third"));
    EXPECT_EQ(*entries.Find("b"), "another");
}

TEST(NamedEntries, AreRemovedByName) {
    Texts entries = Three();
    Visited(entries);
    EXPECT_TRUE(entries.Remove("b"));
    EXPECT_FALSE(entries.Remove("b"));
    EXPECT_THAT(Visited(entries), ElementsAre("first", "third"));
    entries.Clear();
    EXPECT_THAT(Visited(entries), IsEmpty());
    EXPECT_EQ(entries.Size(), 0U);
}

TEST(NamedEntries, AreWalkedUntilTheCallbackSaysSo) {
    std::vector<std::string> texts;
    const auto stopAtSecond = [&](const auto& entry) {
        texts.push_back(*entry);
        return *entry != "second";
    };
    EXPECT_FALSE(Three().Visit(stopAtSecond));
    EXPECT_THAT(texts, ElementsAre("first", "second"));
    EXPECT_TRUE(Three().Visit([](const auto&) { return true; }));
}

TEST(NamedEntries, MayBeChangedDuringAWalkWhichDoesNotSeeIt) {
    Texts entries = Three();
    std::vector<std::string> texts;
    entries.Visit([&](const auto& entry) {
        texts.push_back(*entry);
        entries.Clear();
        entries.Add("d", Text("fourth"));
        return true;
    });
    EXPECT_THAT(texts, ElementsAre("first", "second", "third"));
    EXPECT_THAT(Visited(entries), ElementsAre("fourth"));
}

TEST(NamedEntries, HandOutASequenceThatStaysAsItWas) {
    Texts entries = Three();
    const auto ordered = entries.Ordered();
    EXPECT_EQ(entries.Ordered(), ordered) << "it is made once";
    entries.Remove("a");
    EXPECT_EQ(ordered->size(), 3U);
    EXPECT_EQ(entries.Ordered()->size(), 2U);
}
