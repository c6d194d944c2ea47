// Whom a client trusts: files and folders of certificates.

#include "TlsFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class TrustStoreTest : public TlsFixture {
  protected:
    TrustStoreTest() { std::filesystem::create_directory(folder_); }

    std::string addToFolder(const std::string& name, const std::string& content) const {
        return write("store/" + name, content);
    }

    /// Of a handshake of who trusts what is at this path with a server of the authority.
    std::string textOf(const std::string& trustStore) {
        return outcomeOf(serve(certificate_, "server.test"), SSLContext(String(trustStore), nullptr)).text;
    }

    std::string errorOf(const std::string& trustStore) const {
        return outcomeOf(Endpoint(address_, 1), SSLContext(String(trustStore), nullptr)).text;
    }

    const std::string folder_ = (directory_.Path() / "store").string();
    const IssuedCertificate certificate_{serverFor("DNS:server.test"), authority_};
    const IssuedCertificate other_{IssuedCertificate::Authority("another authority")};
};

TEST_F(TrustStoreTest, MayBeAFileOfSeveralCertificates) {
    EXPECT_EQ(textOf(write("all.pem", "a comment\n" + other_.Pem() + authority_.Pem())), "");
}

TEST_F(TrustStoreTest, MayBeAFolderOfPemFiles) {
    for (const char* name : {"a.pem", "a.crt", "a.cer"}) {
        addToFolder("z.pem", other_.Pem());
        const std::string path = addToFolder(name, authority_.Pem());
        EXPECT_EQ(textOf(folder_), "") << name;
        std::filesystem::remove(path);
        EXPECT_THAT(textOf(folder_), HasSubstr("CN=test authority is not trusted")) << name;
    }
}

TEST_F(TrustStoreTest, ReadsOnlyThoseFilesOfAFolderThatAreNamedAsCertificates) {
    addToFolder("a.pem", other_.Pem());
    addToFolder("notes.txt", authority_.Pem());
    EXPECT_THAT(textOf(folder_), HasSubstr("CN=test authority is not trusted"));
}

TEST_F(TrustStoreTest, MayBeAFolderOfHashedNames) {
    addToFolder(other_.HashedName(), other_.Pem());
    EXPECT_THAT(textOf(folder_), HasSubstr("CN=test authority is not trusted"));
    addToFolder(authority_.HashedName(), authority_.Pem());
    EXPECT_EQ(textOf(folder_), "");
}

TEST_F(TrustStoreTest, LooksForHashedNamesAloneWhereThereAreAny) {
    addToFolder(other_.HashedName(), other_.Pem());
    addToFolder("a.pem", authority_.Pem());
    EXPECT_THAT(textOf(folder_), HasSubstr("CN=test authority is not trusted"));
}

TEST_F(TrustStoreTest, SkipsFilesOfAFolderThatHoldOtherThings) {
    addToFolder("key.pem", authority_.KeyPem());
    addToFolder("locked.pem", authority_.EncryptedKeyPem("secret"));
    addToFolder("z.pem", authority_.Pem());
    EXPECT_EQ(textOf(folder_), "");
}

TEST_F(TrustStoreTest, IsAnErrorWhenItHoldsNoCertificate) {
    const std::string empty = write("empty.pem", "");
    const std::string key = write("key.pem", authority_.KeyPem());
    for (const std::string& path : {empty, key, folder_}) {
        EXPECT_EQ(errorOf(path), "cannot use the trust store " + path + ": it holds no certificate");
    }
    addToFolder("key.pem", authority_.KeyPem());
    EXPECT_EQ(errorOf(folder_), "cannot use the trust store " + folder_ + ": it holds no certificate");
    addToFolder("0123abcd.0", authority_.KeyPem());
    EXPECT_EQ(errorOf(folder_), "cannot use the trust store " + folder_ + ": it holds no certificate");
}

TEST_F(TrustStoreTest, IsAnErrorWhenItCannotBeRead) {
    EXPECT_EQ(errorOf("/no/such/store"), "cannot read the trust store /no/such/store: No such file or directory");
    std::filesystem::create_symlink("nowhere", folder_ + "/dangling.pem");
    EXPECT_EQ(errorOf(folder_), "cannot read the trust store " + folder_ + "/dangling.pem: No such file or directory");
    std::filesystem::remove(folder_ + "/dangling.pem");
    std::filesystem::create_directory(folder_ + "/folder.pem");
    EXPECT_EQ(errorOf(folder_), "cannot read the trust store " + folder_ + "/folder.pem: Is a directory");
}

TEST_F(TrustStoreTest, IsAnErrorWhenACertificateInItIsBroken) {
    const std::string whole = authority_.Pem();
    const std::string path = addToFolder("broken.pem", whole.substr(0, 100) + "!" + whole.substr(101));
    addToFolder("good.pem", whole);
    EXPECT_THAT(errorOf(path), StartsWith("cannot read the trust store " + path + ": "));
    EXPECT_THAT(errorOf(folder_), StartsWith("cannot read the trust store " + path + ": "));
}

} // namespace
