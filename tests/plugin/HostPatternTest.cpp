#include "provider/HostPattern.h"

#include "provider/HostName.h"

#include <gtest/gtest.h>

#include <string>

using namespace NQORVYX20;

namespace {

bool Matches(const std::string& pattern, const std::string& host) { return HostPattern(pattern).Matches(host); }

} // namespace

TEST(HostPattern, AStarStandsForAnyTextAndAQuestionMarkForOneCharacter) {
    EXPECT_TRUE(Matches("*.storage.example", "array7.storage.example"));
    EXPECT_TRUE(Matches("*.storage.example", "a.b.storage.example"));
    EXPECT_FALSE(Matches("*.storage.example", "storage.example"));
    EXPECT_FALSE(Matches("*.storage.example", "array7.storage.example.org"));
    EXPECT_TRUE(Matches("array?", "array7"));
    EXPECT_FALSE(Matches("array?", "array"));
    EXPECT_FALSE(Matches("array?", "array17"));
    EXPECT_TRUE(Matches("*", ""));
    EXPECT_TRUE(Matches("a*b*c", "a-b-b-c"));
    EXPECT_FALSE(Matches("a*b*c", "a-b-c-d"));
    EXPECT_TRUE(Matches("**", "a"));
    EXPECT_TRUE(Matches("array7", "array7"));
    EXPECT_FALSE(Matches("array7", "array77"));
}

TEST(HostPattern, NothingElseIsSpecial) {
    EXPECT_FALSE(Matches("a.c", "abc"));
    EXPECT_FALSE(Matches("{a,b}", "a"));
    EXPECT_TRUE(Matches("[!a]", "!A"));
}

TEST(HostPattern, TheSpellingOfANameDoesNotMatter) {
    EXPECT_TRUE(Matches("Array7.Storage.Example", "aRRAY7.sTORAGE.eXAMPLE"));
    EXPECT_TRUE(Matches("array7.example", "array7.example."));
    EXPECT_TRUE(Matches("*.example.", "array7.example"));
    EXPECT_TRUE(Matches("array7", "[array7]"));
    EXPECT_TRUE(Matches("localhost", ""));
}

TEST(HostPattern, TheSpellingOfAnAddressDoesNotMatter) {
    for (const char* const address : {"10.0.0.1", "10.1", "0xa.0.0.1", "012.0.0.1", "167772161", "::ffff:10.0.0.1",
                                      "[::FFFF:a00:1]", "10.0.0.1."}) {
        EXPECT_TRUE(Matches("10.0.0.1", address)) << address;
        EXPECT_TRUE(Matches("10.0.0.?", address)) << address;
        EXPECT_TRUE(Matches(address, "10.0.0.1")) << address;
        EXPECT_FALSE(Matches("10.0.0.2", address)) << address;
    }
    for (const char* const address : {"fe80::1", "FE80:0:0:0::1", "[fe80::0001]", "fe80::1%eth0", "[fe80::1%lo]"}) {
        EXPECT_TRUE(Matches("fe80::1", address)) << address;
        EXPECT_TRUE(Matches("[fe80::*]", address)) << address;
        EXPECT_TRUE(Matches(address, "fe80::1")) << address;
        EXPECT_FALSE(Matches("fe80::2", address)) << address;
    }
}

TEST(HostPattern, ManyStarsTakeNoTimeWithoutEnd) {
    std::string pattern;
    for (int i = 0; i < 1000; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(Matches(pattern + "*b", std::string(5000, 'a')));
}

TEST(HostName, WhatResolversMayTakeForAnotherNameIsNotPlain) {
    for (const char* const host : {"", "array7.example", "10.0.0.1", "[fe80::1%eth0]", "\xc3\xa9"}) {
        EXPECT_TRUE(IsPlainHost(host)) << host;
    }
    for (const std::string& host : {std::string("arr\\097y7"), std::string("array7 "), std::string("array7\t"),
                                    std::string("array7\0x", 8), std::string("array7\x7f")}) {
        EXPECT_FALSE(IsPlainHost(host)) << host;
    }
}
