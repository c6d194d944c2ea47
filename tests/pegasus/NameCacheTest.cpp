#include "cimxml/NameCache.h"

#include "xml/DecodingError.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Pegasus;
using cimxml::NameCache;

/// Whether two names are one text in memory.
bool share(const CIMName& a, const CIMName& b) { return a.getString().view().data() == b.getString().view().data(); }

TEST(NameCache, GivesOneNameForOneText) {
    NameCache names;
    const CIMName first = names.get("Caption");
    EXPECT_EQ(first.getString(), String("Caption"));
    EXPECT_TRUE(share(names.get(std::string("Caption")), first));
    EXPECT_FALSE(share(names.get("caption"), first)) << "as the server writes it";
}

TEST(NameCache, StaysRightHoweverManyNamesThereAre) {
    NameCache names;
    for (std::size_t i = 0; i < 3 * cimxml::kMaxCachedNames; ++i) {
        const std::string text = "Name" + std::to_string(i);
        ASSERT_EQ(names.get(text).getString(), String(text));
    }
    EXPECT_EQ(names.get("Name0").getString(), String("Name0"));
}

TEST(NameCache, LeavesWhiteSpaceAroundANameOut) {
    NameCache names;
    EXPECT_EQ(names.get(" \tCaption\r\n").getString(), String("Caption"));
}

TEST(NameCache, RefusesWhatIsNoNameEachTimeAndKeepsWhatItHad) {
    NameCache names;
    for (const char* text : {"", " ", "1st", "a b", "a-b"}) {
        for (int i = 0; i < 2; ++i) {
            try {
                names.get(text);
                ADD_FAILURE() << text;
            } catch (const xml::DecodingError& error) {
                EXPECT_EQ(error.kind, xml::DecodingError::Kind::Content);
                EXPECT_EQ(error.what, "not a name: \"" + std::string(text) + '"');
            }
        }
    }
    EXPECT_EQ(names.get("Caption").getString(), String("Caption"));
}

} // namespace
