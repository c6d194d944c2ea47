#include "http/PercentEncoding.h"

#include <gtest/gtest.h>

namespace {

using namespace Pegasus::http;

TEST(PercentEncoding, EncodesAllButUnreservedCharacters) {
    EXPECT_EQ(percentEncoded("aZ09-._~ /%\xc3\xa4"), "aZ09-._~%20%2F%25%C3%A4");
}

TEST(PercentEncoding, DecodesWhatIsEncodedAndLeavesTheRest) {
    EXPECT_EQ(percentDecoded("a%20b%2fc%C3%A4"), "a b/c\xc3\xa4");
    EXPECT_EQ(percentDecoded("100%"), "100%");
    EXPECT_EQ(percentDecoded("%4"), "%4");
    EXPECT_EQ(percentDecoded("%zz%-1%+1"), "%zz%-1%+1");
}

} // namespace
