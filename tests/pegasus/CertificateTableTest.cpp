// Certificates of many kinds, each shown to the client by a real server, and to the program openssl: both take and
// refuse the same ones.

#include "TlsFixture.h"
#include "support/ProgramRun.h"

#include <openssl/ssl.h>

#include <functional>
#include <system_error>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using Options = IssuedCertificate::Options;

/// What a server shows, and whom the client trusts.
struct Scene {
    IssuedCertificate leaf;
    std::string chain;   // PEM, which the server sends, too
    std::string trusted; // PEM
};

/// A row of the table.
struct Row {
    std::string name;
    std::string host;    // that is connected to
    std::string verdict; // "accepted", or the reason
    std::function<Scene()> make;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

IssuedCertificate newRoot(int validUntilDay = 2) {
    auto options = IssuedCertificate::Authority("root");
    options.validUntilDay = validUntilDay;
    return IssuedCertificate(options);
}

/// A server's certificate that a trusted root has signed.
Scene signedByRoot(const Options& options, const IssuedCertificate& root = newRoot()) {
    return {IssuedCertificate(options, root), "", root.Pem()};
}

Row rootSigned(std::string name, std::string host, std::string verdict, const Options& options) {
    return {std::move(name), std::move(host), std::move(verdict), [options] { return signedByRoot(options); }};
}

/// A server's certificate that an authority between has signed, which the server sends, too.
Row signedBetween(std::string name, std::string verdict, const Options& between) {
    return {std::move(name), "server.test", std::move(verdict), [between] {
                const IssuedCertificate root = newRoot();
                const IssuedCertificate middle(between, root);
                return Scene{IssuedCertificate(serverFor("DNS:server.test"), middle), middle.Pem(), root.Pem()};
            }};
}

Options named(const std::string& commonName, Extensions extensions = {}) {
    Options options;
    options.commonName = commonName;
    options.extensions = std::move(extensions);
    return options;
}

Options valid(int fromDay, int untilDay) {
    Options options = serverFor("DNS:server.test");
    options.validFromDay = fromDay;
    options.validUntilDay = untilDay;
    return options;
}

Options with(IssuedCertificate::Key key, const std::string& digest) {
    Options options = serverFor("DNS:server.test");
    options.key = key;
    options.digest = digest;
    return options;
}

/// An authority that is one only as far as these say.
Options between(Extensions extensions, int validUntilDay = 2) {
    Options options = named("between", std::move(extensions));
    options.validUntilDay = validUntilDay;
    return options;
}

std::vector<Row> namesAndAddresses() {
    const std::string ipv4 = support::LoopbackAddress();
    return {
        rootSigned("Name", "server.test", "accepted", serverFor("DNS:server.test")),
        rootSigned("OneOfSeveralNames", "server.test", "accepted", serverFor("DNS:a.test,DNS:server.test")),
        rootSigned("NameInOtherCase", "SERVER.Test", "accepted", serverFor("DNS:sErVeR.test")),
        rootSigned("OtherName", "server.test", "WRONG_NAME", serverFor("DNS:a.test")),
        rootSigned("NameBelow", "server.test", "WRONG_NAME", serverFor("DNS:a.server.test")),
        rootSigned("HostWithTrailingDot", "server.test.", "WRONG_NAME", serverFor("DNS:server.test")),
        rootSigned("NameWithTrailingDot", "server.test", "WRONG_NAME", serverFor("DNS:server.test.")),
        rootSigned("Wildcard", "a.server.test", "accepted", serverFor("DNS:*.server.test")),
        rootSigned("WildcardForTwoLabels", "a.b.server.test", "WRONG_NAME", serverFor("DNS:*.server.test")),
        rootSigned("WildcardForNoLabel", "server.test", "WRONG_NAME", serverFor("DNS:*.server.test")),
        rootSigned("WildcardForATopDomain", "server.test", "WRONG_NAME", serverFor("DNS:*.test")),
        rootSigned("WildcardForAll", "server.test", "WRONG_NAME", serverFor("DNS:*")),
        rootSigned("WildcardWithin", "a.b.server.test", "WRONG_NAME", serverFor("DNS:a.*.server.test")),
        rootSigned("PartOfALabelWild", "abc.server.test", "accepted", serverFor("DNS:a*.server.test")),
        rootSigned("CommonNameOnly", "server.test", "accepted", named("server.test")),
        rootSigned("CommonNameWithAnAddress", "server.test", "accepted",
                   named("server.test", {{"subjectAltName", "IP:192.0.2.1"}})),
        rootSigned("CommonNameBesideAnotherName", "server.test", "WRONG_NAME",
                   named("server.test", {{"subjectAltName", "DNS:a.test"}})),
        rootSigned("NoName", "server.test", "WRONG_NAME", named("", {{"basicConstraints", "CA:FALSE"}})),
        rootSigned("Ipv4Address", ipv4, "accepted", serverFor("IP:" + ipv4)),
        rootSigned("Ipv6Address", "::1", "accepted", serverFor("IP:::1")),
        rootSigned("OtherAddress", ipv4, "WRONG_NAME", serverFor("IP:192.0.2.1")),
        rootSigned("AddressAsName", ipv4, "WRONG_NAME", serverFor("DNS:" + ipv4)),
        rootSigned("AddressAsCommonName", ipv4, "WRONG_NAME", named(ipv4)),
        rootSigned("NameForAnAddress", ipv4, "WRONG_NAME", serverFor("DNS:server.test")),
    };
}

std::vector<Row> timesAndPurposes() {
    return {
        rootSigned("Expired", "server.test", "EXPIRED", valid(-2, -1)),
        rootSigned("NotYetValid", "server.test", "NOT_YET_VALID", valid(1, 2)),
        rootSigned("ForServers", "server.test", "accepted",
                   serverFor("DNS:server.test", {{"extendedKeyUsage", "serverAuth"}})),
        rootSigned("ForClients", "server.test", "UNSUITABLE",
                   serverFor("DNS:server.test", {{"extendedKeyUsage", "clientAuth"}})),
        rootSigned("ForSigningOthersOnly", "server.test", "UNSUITABLE",
                   serverFor("DNS:server.test", {{"keyUsage", "critical,keyCertSign"}})),
        rootSigned("AnAuthoritysOwn", "server.test", "accepted",
                   serverFor("DNS:server.test", {{"basicConstraints", "critical,CA:TRUE"}})),
        rootSigned("UnknownCriticalExtension", "server.test", "OTHER",
                   serverFor("DNS:server.test", {{"1.2.3.4", "critical,ASN1:UTF8String:x"}})),
        rootSigned("WeakKey", "server.test", "UNSUITABLE", with(IssuedCertificate::Key::kRsa1024, "SHA256")),
        rootSigned("Sha1Signature", "server.test", "UNSUITABLE", with(IssuedCertificate::Key::kEc, "SHA1")),
        {"Md5Signature", "server.test", "UNSUITABLE",
         [] {
             // A small key may sign with MD5; that of the root itself is weak, too.
             auto options = IssuedCertificate::Authority("root");
             options.key = IssuedCertificate::Key::kRsa1024;
             return signedByRoot(with(IssuedCertificate::Key::kEc, "MD5"), IssuedCertificate(options));
         }},
    };
}

std::vector<Row> chains() {
    const std::pair<std::string, std::string> authority("basicConstraints", "critical,CA:TRUE");
    return {
        {"UnknownAuthority", "server.test", "UNKNOWN_ISSUER",
         [] {
             const IssuedCertificate other(IssuedCertificate::Authority("other"));
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), other), "", newRoot().Pem()};
         }},
        {"UnknownAuthoritySent", "server.test", "SELF_SIGNED",
         [] {
             const IssuedCertificate other(IssuedCertificate::Authority("other"));
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), other), other.Pem(), newRoot().Pem()};
         }},
        {"ImpostorOfTheAuthority", "server.test", "UNKNOWN_ISSUER",
         [] {
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), newRoot()), "", newRoot().Pem()};
         }},
        {"SelfSigned", "server.test", "SELF_SIGNED",
         [] {
             return Scene{IssuedCertificate(serverFor("DNS:server.test")), "", newRoot().Pem()};
         }},
        {"SelfSignedAndTrusted", "server.test", "accepted",
         [] {
             const IssuedCertificate self(serverFor("DNS:server.test"));
             return Scene{self, "", self.Pem()};
         }},
        {"SelfSignedAndTrustedForAnother", "server.test", "WRONG_NAME",
         [] {
             const IssuedCertificate self(serverFor("DNS:a.test"));
             return Scene{self, "", self.Pem()};
         }},
        {"ExpiredAuthority", "server.test", "EXPIRED",
         [] { return signedByRoot(serverFor("DNS:server.test"), newRoot(-1)); }},
        signedBetween("IntermediateSent", "accepted", between({authority})),
        {"IntermediateMissing", "server.test", "UNKNOWN_ISSUER",
         [authority] {
             const IssuedCertificate root = newRoot();
             const IssuedCertificate middle(between({authority}), root);
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), middle), "", root.Pem()};
         }},
        {"IntermediateAloneTrusted", "server.test", "UNKNOWN_ISSUER",
         [authority] {
             const IssuedCertificate middle(between({authority}), newRoot());
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), middle), "", middle.Pem()};
         }},
        signedBetween("IntermediateExpired", "EXPIRED", between({authority}, -1)),
        signedBetween("IntermediateThatIsNoAuthority", "UNSUITABLE", between({{"basicConstraints", "CA:FALSE"}})),
        signedBetween("IntermediateThatMayNotSign", "UNSUITABLE",
                      between({authority, {"keyUsage", "critical,digitalSignature"}})),
        signedBetween("IntermediateForClients", "UNSUITABLE", between({authority, {"extendedKeyUsage", "clientAuth"}})),
        signedBetween("NameThatIsPermitted", "accepted",
                      between({authority, {"nameConstraints", "critical,permitted;DNS:test"}})),
        signedBetween("NameThatIsNotPermitted", "UNSUITABLE",
                      between({authority, {"nameConstraints", "critical,permitted;DNS:other.test"}})),
        signedBetween("NameThatIsExcluded", "UNSUITABLE",
                      between({authority, {"nameConstraints", "critical,excluded;DNS:server.test"}})),
        {"ChainThatIsTooLong", "server.test", "UNSUITABLE",
         [authority] {
             const IssuedCertificate root = newRoot();
             const IssuedCertificate upper(between({{"basicConstraints", "critical,CA:TRUE,pathlen:0"}}), root);
             auto options = between({authority});
             options.commonName = "lower";
             const IssuedCertificate lower(options, upper);
             return Scene{IssuedCertificate(serverFor("DNS:server.test"), lower), lower.Pem() + upper.Pem(),
                          root.Pem()};
         }},
    };
}

std::vector<Row> table() {
    std::vector<Row> rows = namesAndAddresses();
    for (const auto& more : {timesAndPurposes(), chains()}) {
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

/// The level up to which OpenSSL takes algorithms for too weak on this system, for TLS.
std::string securityLevel() {
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
    return std::to_string(SSL_CTX_get_security_level(context.get()));
}

class CertificateTableTest : public TlsFixture, public ::testing::WithParamInterface<Row> {
  protected:
    static bool isAddress(const std::string& host) { return Endpoint(host, 0).isAddressLiteral(); }

    /// What the program openssl says.
    support::ProgramRun openSslOn(const Scene& scene) const {
        std::vector<std::string> arguments = {"verify",
                                              "-purpose",
                                              "sslserver",
                                              "-auth_level",
                                              securityLevel(),
                                              "-no-CApath",
                                              "-no-CAstore",
                                              "-CAfile",
                                              write("openssl-trusted.pem", scene.trusted),
                                              isAddress(GetParam().host) ? "-verify_ip" : "-verify_hostname",
                                              GetParam().host};
        if (!scene.chain.empty()) {
            arguments.insert(arguments.end(), {"-untrusted", write("openssl-chain.pem", scene.chain)});
        }
        arguments.push_back(write("openssl-leaf.pem", scene.leaf.Pem()));
        return support::RunProgram(support::FindProgram("openssl"), arguments);
    }

    Outcome clientOn(const Scene& scene) {
        const Endpoint endpoint = serve(scene.leaf, GetParam().host, scene.chain);
        return outcomeOf(endpoint, SSLContext(String(write("trusted.pem", scene.trusted)), nullptr));
    }
};

std::string verdictOf(const Outcome& outcome) {
    static const char* const names[] = {"EXPIRED",    "NOT_YET_VALID",     "UNKNOWN_ISSUER", "SELF_SIGNED",
                                        "WRONG_NAME", "OTHER_FINGERPRINT", "UNSUITABLE",     "OTHER"};
    return outcome.refused ? names[outcome.refused->getReason()] : outcome.text.empty() ? "accepted" : outcome.text;
}

INSTANTIATE_TEST_SUITE_P(Certificate, CertificateTableTest, ::testing::ValuesIn(table()),
                         [](const auto& row) { return row.param.name; });

TEST_P(CertificateTableTest, IsJudgedAsByOpenSsl) {
    const Scene scene = GetParam().make();
    if (!isAddress(GetParam().host)) {
        names_.Answer(GetParam().host, {address_});
    }
    Outcome outcome;
    try {
        outcome = clientOn(scene);
    } catch (const std::system_error& error) {
        GTEST_SKIP() << "no " << GetParam().host << " here: " << error.what();
    }
    EXPECT_EQ(verdictOf(outcome), GetParam().verdict) << outcome.text;
    const support::ProgramRun openSsl = openSslOn(scene);
    ASSERT_TRUE(openSsl.status == 0 || openSsl.status == 2) << openSsl.errors;
    EXPECT_EQ(outcome.text.empty(), openSsl.status == 0) << outcome.text << '\n' << openSsl.output << openSsl.errors;
}

} // namespace
