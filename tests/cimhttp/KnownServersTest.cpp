// The servers that the user knows by their certificates, and the form of fingerprints.

#include "connection/KnownServers.h"

#include "Failure.h"
#include "connection/TlsSettings.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <future>
#include <vector>

using cimhttp::Failure;
using cimhttp::KnownServer;
using cimhttp::KnownServers;
using cimhttp::NormalFingerprint;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// A fingerprint that has one digit only, in its usual form.
std::string Fingerprint(char digit) { return NormalFingerprint(std::string(64, digit)).value_or(""); }

class KnownServersTest : public testing::Test {
  protected:
    std::string ComplaintAbout(const std::string& content) const {
        const std::string path = folder_.WriteFile("known_servers.json", content);
        try {
            KnownServers(path).Find("server:5989");
            return "none";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Status(), Failure::kUsage);
            EXPECT_THAT(failure.what(), StartsWith(path));
            return failure.what();
        }
    }

    static mode_t ModeOf(const std::string& path) {
        struct stat status {};
        ::stat(path.c_str(), &status);
        return status.st_mode & 07777U;
    }

    support::TemporaryDirectory folder_;
    const KnownServers servers_{(folder_.Path() / "cimhttp" / "known_servers.json").string()};
};

} // namespace

TEST(Fingerprint, IsTheSameInAnyCaseWithAndWithoutColons) {
    const std::string bare = "00112233445566778899aabbccddeeff00112233445566778899aabbccddeeff";
    const std::string usual =
        "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF:00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF";
    EXPECT_EQ(NormalFingerprint(bare), usual);
    EXPECT_EQ(NormalFingerprint(usual), usual);
}

TEST(Fingerprint, OfAnotherFormIsNone) {
    const std::string usual = Fingerprint('a');
    for (const std::string& text :
         {std::string(), std::string(63, 'a'), std::string(65, 'a'), std::string(64, 'g'), std::string(95, 'a'),
          usual.substr(1) + 'A', usual + ':', "SHA256:" + std::string(57, 'a')}) {
        EXPECT_FALSE(NormalFingerprint(text)) << text;
    }
}

TEST_F(KnownServersTest, AreKeptInAFileForTheOwnerAlone) {
    EXPECT_THAT(servers_.Read(), IsEmpty());
    servers_.Keep("server:5989", {Fingerprint('a'), "2026-11-22T08:00:00+01:00", "CN=server"});
    EXPECT_EQ(ModeOf(servers_.Path()), 0600U);
    EXPECT_EQ(ModeOf((folder_.Path() / "cimhttp").string()), 0700U);
    const auto server = servers_.Find("server:5989");
    ASSERT_TRUE(server);
    EXPECT_EQ(server->fingerprint, Fingerprint('a'));
    EXPECT_EQ(server->since, "2026-11-22T08:00:00+01:00");
    EXPECT_EQ(server->subject, "CN=server");
}

TEST_F(KnownServersTest, AreKnownByHostAndPortInAnyCase) {
    servers_.Keep("Server.Example:5989", {Fingerprint('a'), "", ""});
    EXPECT_TRUE(servers_.Find("sERVER.example:5989"));
    EXPECT_FALSE(servers_.Find("server.example:443"));
    EXPECT_FALSE(servers_.Find("server:5989"));
    servers_.Keep("server.example:5989", {Fingerprint('b'), "", ""});
    EXPECT_EQ(servers_.Read().size(), 1U);
    EXPECT_EQ(servers_.Find("server.example:5989").value_or(KnownServer()).fingerprint, Fingerprint('b'));
}

TEST_F(KnownServersTest, AreForgottenOneByOne) {
    servers_.Keep("a:5989", {Fingerprint('a'), "", ""});
    servers_.Keep("b:5989", {Fingerprint('b'), "", ""});
    EXPECT_TRUE(servers_.Forget("A:5989"));
    EXPECT_FALSE(servers_.Forget("a:5989"));
    EXPECT_FALSE(servers_.Find("a:5989"));
    EXPECT_TRUE(servers_.Find("b:5989"));
}

TEST_F(KnownServersTest, ThatAreKeptAtTheSameTimeAreAllKept) {
    constexpr std::size_t kCount = 16;
    std::vector<std::future<void>> keepers;
    for (std::size_t i = 0; i < kCount; ++i) {
        keepers.push_back(std::async(std::launch::async, [this, name = "server" + std::to_string(i) + ":5989"] {
            servers_.Keep(name, {Fingerprint('a'), "", ""});
        }));
    }
    for (auto& keeper : keepers) {
        keeper.get();
    }
    EXPECT_EQ(servers_.Read().size(), kCount);
}

TEST_F(KnownServersTest, AFileThatCannotBeReadMakesNobodyUnknown) {
    EXPECT_THAT(ComplaintAbout("{"), HasSubstr("line 1"));
    EXPECT_THAT(ComplaintAbout("[]"), HasSubstr("not a list of servers"));
    EXPECT_THAT(ComplaintAbout(R"({"server:5989": "AB"})"), HasSubstr("server 'server:5989' is not an object"));
    EXPECT_THAT(ComplaintAbout(R"({"server:5989": {}})"), HasSubstr("names no sha256"));
    EXPECT_THAT(ComplaintAbout(R"({"server:5989": {"sha256": "AB"}})"), HasSubstr("is no SHA-256 fingerprint"));
    EXPECT_THAT(ComplaintAbout(R"({"other:5989": {"sha256": 7}})"), HasSubstr("sha256 is not a text"));
    EXPECT_THAT(ComplaintAbout(R"({"server:5989": {"trust": true}})"), HasSubstr("unknown setting 'trust'"));
}
