#include "http/Endpoint.h"

#include <gtest/gtest.h>

namespace {

using namespace Pegasus::http;

TEST(Endpoint, PutsAnIpv6LiteralInBrackets) {
    EXPECT_EQ(Endpoint("::1", 5988).text(), "[::1]:5988");
    EXPECT_EQ(Endpoint("[fe80::1%eth0]", 1).text(), "[fe80::1%eth0]:1");
    EXPECT_EQ(Endpoint("10.0.0.1", 5988).text(), "10.0.0.1:5988");
    EXPECT_EQ(Endpoint("", 5988).text(), "localhost:5988");
    EXPECT_EQ(Endpoint("[]", 5988).text(), "[]:5988") << "no literal in there";
}

} // namespace
