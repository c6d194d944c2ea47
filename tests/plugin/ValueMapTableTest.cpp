// A value map as a compatible namespace makes it of the qualifiers of a declaration.

#include "display/ValueMapTable.h"

#include "PropertyTest.h"
#include "display/DisplayQualifiers.h"

using namespace NQORVYX20;

namespace {

using Strings = std::vector<std::string>;

class ValueMapTableTest : public PropertyTest {
  protected:
    boost::shared_ptr<const ValueMapTable> Make(const Qualifiers& qualifiers) {
        return MakeValueMapTable(TCimHTTPPropertyDecl::DisplayQualifiersOf(Declare(Uint32(0), qualifiers)));
    }
};

std::string TextFor(const ValueMapTable& table, std::uint64_t number) {
    const std::string* const text = table.Find(number);
    return text == nullptr ? "nothing" : *text;
}

} // namespace

TEST_F(ValueMapTableTest, FindsTheFirstRowThatCoversANumber) {
    const ValueMapTable table({{3, 3, "three"}, {0, 4, "few"}, {2, 2, "two"}}, "many");
    EXPECT_EQ(TextFor(table, 3), "three");
    EXPECT_EQ(TextFor(table, 2), "few");
    EXPECT_EQ(TextFor(table, 5), "nothing") << "the default is for the caller to choose";
    EXPECT_EQ(table.DefaultText(), "many");
    EXPECT_EQ(table.Rows().size(), 3U);
}

TEST_F(ValueMapTableTest, HasARowForEachEntryWithTheTextOfItsPlace) {
    const auto table =
        Make({{"ValueMap", ArrayOf(Strings{"1", "2", ".."})}, {"Values", ArrayOf(Strings{"On", "Off", "?"})}});
    ASSERT_TRUE(table);
    EXPECT_EQ(TextFor(*table, 1), "On");
    EXPECT_EQ(TextFor(*table, 2), "Off");
    EXPECT_EQ(TextFor(*table, 3), "nothing");
    EXPECT_EQ(table->DefaultText(), "?");
}

TEST_F(ValueMapTableTest, GivesAnEntryWithoutATextTheEmptyOne) {
    const auto table = Make({{"ValueMap", ArrayOf(Strings{"1", "2"})}, {"Values", ArrayOf(Strings{"On"})}});
    ASSERT_TRUE(table);
    EXPECT_EQ(TextFor(*table, 2), "");
}

TEST_F(ValueMapTableTest, NeedsBothQualifiersAndEntriesThatFitTogether) {
    EXPECT_FALSE(Make({}));
    EXPECT_FALSE(Make({{"Values", ArrayOf(Strings{"On"})}}));
    EXPECT_FALSE(Make({{"ValueMap", ArrayOf(Strings{"1"})}}));
    EXPECT_FALSE(Make({{"ValueMap", ArrayOf(Strings{"1..", ".."})}, {"Values", ArrayOf(Strings{"On", "Off"})}}));
}
