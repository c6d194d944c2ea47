#include "server/Users.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <sstream>
#include <string>

namespace {

using demo::Users;

/// The hash of "secret" that "openssl passwd -6 -salt salt secret" makes.
constexpr const char* kHash =
    "$6$salt$egUxKNxDs8kPfh8iPMNcosMhb2eWah6d3R44JDm5Rj/j/XWR5E33QPd0YmHXoDHOIDR6kL5D3JcQcz0O8FHE00";

std::string Basic(const std::string& text, const std::string& scheme = "Basic ") {
    std::string encoded(4 * ((text.size() + 2) / 3) + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    encoded.resize(static_cast<std::size_t>(length));
    return scheme + encoded;
}

Users Read(const std::string& text) {
    std::istringstream stream(text);
    return Users::Read(stream, "users.txt");
}

/// The name of the one who is let in, "" for nobody.
std::string Authenticated(const Users& users, const std::string& authorization) {
    return users.Authenticate(authorization).value_or("");
}

std::string ErrorOf(const std::string& text) {
    try {
        Read(text);
        return "";
    } catch (const demo::UsersError& error) {
        return error.what();
    }
}

TEST(Users, AreReadFromLinesOfNameAndPassword) {
    const Users users = Read("# the first one\n\nada:pass word\nbob:with:colon \n#bob:x\nno#comment:p\n");
    EXPECT_EQ(Authenticated(users, Basic("ada:pass word")), "ada");
    EXPECT_EQ(Authenticated(users, Basic("bob:with:colon ")), "bob");
    EXPECT_EQ(Authenticated(users, Basic("no#comment:p")), "no#comment");
    for (const char* const wrong : {"ada:pass wor", "ada:pass word ", "ada:", "ada", "bob:with", "Ada:pass word",
                                    "ada:with:colon ", "eve:pass word", "", ":", "#bob:x", "# the first one"}) {
        EXPECT_EQ(Authenticated(users, Basic(wrong)), "") << wrong;
    }
}

TEST(Users, CanHaveHashedPasswords) {
    const Users users = Read(std::string("ada:") + kHash + "\nbob:secret\n");
    EXPECT_EQ(Authenticated(users, Basic("ada:secret")), "ada");
    EXPECT_EQ(Authenticated(users, Basic("bob:secret")), "bob");
    EXPECT_EQ(Authenticated(users, Basic("ada:secret2")), "");
    EXPECT_EQ(Authenticated(users, Basic("ada:")), "");
    EXPECT_EQ(Authenticated(users, Basic(std::string("ada:") + kHash)), "");
    EXPECT_EQ(Authenticated(users, Basic(std::string("ada:secret\0x", 12))), "");
}

TEST(Users, AddedOneByOneHavePlainPasswords) {
    Users users;
    EXPECT_TRUE(users.IsEmpty());
    users.Add("ada", kHash);
    EXPECT_FALSE(users.IsEmpty());
    EXPECT_EQ(Authenticated(users, Basic(std::string("ada:") + kHash)), "ada");
    EXPECT_EQ(Authenticated(users, Basic("ada:secret")), "");
    users.Add("ada", "new");
    EXPECT_EQ(Authenticated(users, Basic("ada:new")), "ada");
}

TEST(Users, AreCheckedWithAsMuchWorkWhetherTheNameIsKnownOrNot) {
    int hashes = 0;
    std::istringstream lines(std::string("ada:") + kHash + "\nbob:secret\n");
    const Users users = Users::Read(lines, "users.txt", [&](const std::string& hash, const std::string& password) {
        ++hashes;
        return password_hash::HashLike(hash, password);
    });
    for (const char* const attempt : {"ada:secret", "ada:wrong", "bob:secret", "bob:wrong", "eve:secret", ":"}) {
        hashes = 0;
        users.Authenticate(Basic(attempt));
        EXPECT_EQ(hashes, 1) << attempt;
    }
}

TEST(Users, WithUnknownNamesAreNotAuthenticated) {
    for (const Users& users : {Read("bob:secret\n"), Read(std::string("ada:") + kHash + '\n')}) {
        for (const char* const attempt : {"eve:", "eve:secret", ":", ":secret"}) {
            EXPECT_EQ(Authenticated(users, Basic(attempt)), "") << attempt;
        }
    }
}

TEST(Users, AreNotAuthenticatedByAnythingButBasicCredentials) {
    const Users users = Read("ada:pw\n");
    EXPECT_EQ(Authenticated(users, Basic("ada:pw", "bAsIc ")), "ada");
    for (const std::string& wrong :
         {std::string(), std::string("Basic"), std::string("Basic "), Basic("ada:pw", "Bearer "), Basic("ada:pw", ""),
          Basic("ada:pw") + "=", Basic("ada:pw") + "====", std::string("Basic ===="), std::string("Basic !!!!"),
          Basic("ada:pw").substr(0, 13)}) {
        EXPECT_EQ(Authenticated(users, wrong), "") << wrong;
    }
}

TEST(Users, OfAMalformedFileAreRefusedWithItsLine) {
    EXPECT_EQ(ErrorOf("a:b\nc\n"), "users.txt:2: no colon; a line must be name:password");
    EXPECT_EQ(ErrorOf(":b"), "users.txt:1: no name in front of the colon");
    EXPECT_EQ(ErrorOf("#\n\na:"), "users.txt:3: no password behind the colon");
    EXPECT_EQ(ErrorOf("a:b\na:c\n"), "users.txt:2: user a is there already");
    EXPECT_EQ(ErrorOf("a:b\r\n").substr(0, 33), "users.txt:1: a control character,");
    EXPECT_EQ(ErrorOf("a:b\tc\n").substr(0, 33), "users.txt:1: a control character,");
    for (const char* const hash : {"$", "$6$", "$6$salt$", "$6$salt$tooshort", "$nonsense$x$y"}) {
        EXPECT_EQ(ErrorOf(std::string("a:") + hash).substr(0, 61),
                  "users.txt:1: the password begins with $ but is no hash of cry")
            << hash;
    }
    EXPECT_EQ(ErrorOf(""), "users.txt: no users; a line for each is needed, name:password");
    EXPECT_EQ(ErrorOf("# nobody\n"), "users.txt: no users; a line for each is needed, name:password");
}

} // namespace
