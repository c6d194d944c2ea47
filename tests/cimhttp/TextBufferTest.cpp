#include "text/TextBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using cimhttp::TextBuffer;

TEST(TextBuffer, HoldsAllPartsInTheirOrderHoweverLongTheyAre) {
    TextBuffer buffer;
    std::string expected;
    EXPECT_EQ(buffer.Text(), "");
    for (const std::size_t size : {0U, 1U, 63U, 64U, 65U, 5000U, 3U}) {
        const std::string part(size, static_cast<char>('a' + size % 26));
        buffer.Add(part);
        buffer.Add('|');
        expected += part + '|';
        EXPECT_EQ(buffer.Text(), expected);
        EXPECT_EQ(buffer.Size(), expected.size());
    }
}

TEST(TextBuffer, AddsAPartOfItselfAgainAlsoWhenItHasToGrow) {
    TextBuffer buffer;
    buffer.Add("0123456789");
    std::string expected(buffer.Text());
    for (int i = 0; i < 10; ++i) {
        buffer.AddAgain(2, buffer.Size());
        expected += expected.substr(2);
        ASSERT_EQ(buffer.Text(), expected);
    }
}

TEST(TextBuffer, TakesWhatIsWrittenIntoItsRoom) {
    TextBuffer buffer;
    buffer.Add("a");
    char* const room = buffer.Room(1000);
    buffer.Take(std::fill_n(room, 3, 'b'));
    EXPECT_EQ(buffer.Text(), "abbb");
    buffer.Clear();
    EXPECT_EQ(buffer.Text(), "");
}
