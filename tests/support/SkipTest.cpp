#include "support/SkipTest.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace support {

namespace {

void Record(const std::string& reason) { GTEST_SKIP() << reason; }

} // namespace

void SkipTest(const std::string& reason) {
    Record(reason);
    // GoogleTest takes this exception for one whose cause it knows already.
    throw testing::AssertionException(
        testing::TestPartResult(testing::TestPartResult::kSkip, __FILE__, __LINE__, reason.c_str()));
}

void SkipTestWithout(const std::string& path) {
    if (!std::filesystem::exists(path)) {
        SkipTest("there is no " + path + " here");
    }
}

} // namespace support
