// How a host says, in the context of AllocateNamespace, in what way connect() reaches a server.

#include "TlsTest.h"
#include "support/ProgramRun.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"

#include <utility>

using namespace NQORVYX20;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Kind = RemoteFailure::Kind;
using Reason = CertificateRefusal::Reason;

namespace {

const std::vector<const char*> kTextKeys{kNamespaceKey, kTrustKey, kFingerprintKey, kClientCertificateKey,
                                         kClientKeyKey};
const std::string kDigits = "0123456789abcdefABCDEF0123456789abcdefABCDEF01234567890123456789";

/// Every pair of the digits followed by a colon, but for the last.
std::string WithColons(const std::string& digits) {
    std::string text;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        text += (i == 0 ? "" : ":") + digits.substr(i, 2);
    }
    return text;
}

class ConnectionOptionsTest : public TlsTest {
  protected:
    static unsigned StatusWith(const TCIMContext& options) {
        return StatusOf([&] { EXPECT_TRUE(Allocated(options)); });
    }

    /// Refused with 14 and one line in the log, which has this text.
    void ExpectRefused(const TCIMContext& options, const std::string& text) {
        log_->Forget();
        EXPECT_EQ(StatusWith(options), TVYXStatusCode::eTypeMismatch) << text;
        EXPECT_THAT(log_->Errors(), ElementsAre(HasSubstr(text)));
        log_->Forget();
    }

    /// Not connected, for this reason, though the options trust this certificate's authority.
    void ExpectCertificateRefused(const support::TestCertificate& certificate, TCIMContext options, Reason reason) {
        const int port = server_.ListenTls(0, certificate);
        options[kTlsKey] = TCIMValue(true);
        EXPECT_EQ(StatusOn(port, std::move(options)), TVYXStatusCode::eRemoteConnectionFailed);
        EXPECT_EQ(FailureKind(), Kind::kTls);
        ASSERT_TRUE(Failure()->refusal) << Failure()->text;
        EXPECT_EQ(Failure()->refusal->reason, reason) << Failure()->text;
        EXPECT_EQ(Failure()->refusal->certificate.fingerprint, FingerprintOf(certificate.CertificateFile()));
    }

    static TCIMContext Trust(const support::TestCertificate& certificate) {
        return {{kTrustKey, TCIMValue(certificate.CaFile())}};
    }
};

// --- The context -------------------------------------------------------------------------------------------------

TEST_F(ConnectionOptionsTest, AnUnknownKeyWithThePluginsPrefixIsRefused) {
    ExpectRefused({{"cimhttp.tsl", TCIMValue(true)}},
                  "TCimHTTPNamespace: there is no context key 'cimhttp.tsl' (did you mean 'cimhttp.tls'?)");
    ExpectRefused({{"cimhttp.fingerprnt", TCIMValue("")}}, "(did you mean 'cimhttp.fingerprint'?)");
    ExpectRefused({{"cimhttp.Reading", TCIMValue("faithful")}}, "(did you mean 'cimhttp.reading'?)");
    ExpectRefused({{"cimhttp.", TCIMValue(1U)}}, "there is no context key 'cimhttp.'");
    ExpectRefused({{"cimhttp.\nsomething else", TCIMValue(1U)}}, "there is no context key 'cimhttp.?something else'");
    ExpectRefused({{"cimhttp." + std::string(100000, 'x'), TCIMValue(1U)}}, "xxx...'");
    ExpectRefused({{kPropertiesKey, TCIMValue("Name")}}, "there is no context key 'cimhttp.properties'");
}

TEST_F(ConnectionOptionsTest, OtherKeysBelongToTheHost) {
    const TCIMContext others{{"tls", TCIMValue("x")},
                             {"cimhttp", TCIMValue(1U)},
                             {"CIMHTTP.tls", TCIMValue()},
                             {" cimhttp.tls", TCIMValue(1.5)},
                             {"", TCIMValue("")}};
    EXPECT_EQ(StatusWith(others), TVYXStatusCode::eSuccess);
}

TEST_F(ConnectionOptionsTest, AValueOfAnotherTypeIsRefused) {
    const TCIMValue texts(TCIMValue::TCIMType(ECIMType::eCIMString), 1, {TCIMValue("x")});
    for (const char* const key : kTextKeys) {
        for (const TCIMValue& value : {TCIMValue(true), TCIMValue(7U), TCIMValue(), texts}) {
            ExpectRefused({{key, value}}, "the context value '" + std::string(key) + "' is not a text");
        }
    }
    for (const TCIMValue& value : {TCIMValue("true"), TCIMValue(1U), TCIMValue(), texts}) {
        ExpectRefused({{kTlsKey, value}}, "the context value 'cimhttp.tls' is neither true nor false");
    }
}

TEST_F(ConnectionOptionsTest, ATextWithoutContentIsRefused) {
    for (const char* const key : kTextKeys) {
        ExpectRefused({{key, TCIMValue("")}}, "'" + std::string(key) + "' is empty");
        ExpectRefused({{key, TCIMValue(std::string("/a\0b", 4))}}, "'" + std::string(key) + "' holds a null character");
    }
}

TEST_F(ConnectionOptionsTest, AFingerprintHas64DigitsWithOrWithoutColons) {
    EXPECT_EQ(StatusWith({{kFingerprintKey, TCIMValue(kDigits)}}), TVYXStatusCode::eSuccess);
    EXPECT_EQ(StatusWith({{kFingerprintKey, TCIMValue(WithColons(kDigits))}}), TVYXStatusCode::eSuccess);
    const std::string colons = WithColons(kDigits);
    for (const std::string& text :
         {kDigits.substr(1), kDigits + '0', colons + ":", ":" + colons, colons.substr(3), "g" + kDigits.substr(1),
          kDigits.substr(0, 63) + ' ', colons.substr(0, 2) + "-" + colons.substr(3), std::string(95, ':')}) {
        ExpectRefused({{kFingerprintKey, TCIMValue(text)}}, "'cimhttp.fingerprint' is '" + text + "', which is not");
    }
}

TEST_F(ConnectionOptionsTest, AKeyWithoutItsCertificateIsRefused) {
    ExpectRefused({{kClientKeyKey, TCIMValue("/key.pem")}}, "cimhttp.client.key is the key of no certificate");
    EXPECT_EQ(StatusWith({{kClientKeyKey, TCIMValue("/key.pem")}, {kClientCertificateKey, TCIMValue("/c.pem")}}),
              TVYXStatusCode::eSuccess);
}

TEST_F(ConnectionOptionsTest, WhatNeedsEncryptionIsRefusedWithoutIt) {
    const TCIMContext texts{{kTrustKey, TCIMValue("/ca.pem")},
                            {kFingerprintKey, TCIMValue(kDigits)},
                            {kClientCertificateKey, TCIMValue("/c.pem")}};
    for (const auto& [key, value] : texts) {
        ExpectRefused({{kTlsKey, TCIMValue(false)}, {key, value}}, key + " cannot be kept where cimhttp.tls is false");
        EXPECT_EQ(StatusWith({{kTlsKey, TCIMValue(true)}, {key, value}}), TVYXStatusCode::eSuccess);
        EXPECT_EQ(StatusWith({{key, value}}), TVYXStatusCode::eSuccess);
    }
}

// --- The port ----------------------------------------------------------------------------------------------------

TEST_F(ConnectionOptionsTest, WithTheTlsKeyAnyPortIsConnectedTo) {
    server_.Stop();
    support::CimServer server(server_.Address());
    server.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", ""));
    server.ListenTls(kHttpPort, Certificate());
    server.Listen(kHttpsPort);
    const int plain = server.Listen(0);
    const int secure = server.ListenTls(0, Certificate());
    for (const int port : {kHttpPort, secure}) {
        EXPECT_TRUE(IsRead(port, {{kTlsKey, TCIMValue(true)}})) << port;
        EXPECT_FALSE(IsRead(port, {{kTlsKey, TCIMValue(false)}})) << port;
    }
    for (const int port : {kHttpsPort, plain}) {
        EXPECT_TRUE(IsRead(port, {{kTlsKey, TCIMValue(false)}})) << port;
    }
}

TEST_F(ConnectionOptionsTest, WithTheTlsKeyAnInvalidPortIsAFailure) {
    constexpr int kPortsInAll = 0x10000;
    for (const bool tls : {false, true}) {
        for (const int port : {-1, 0, kPortsInAll, kPortsInAll + kHttpPort}) {
            log_->Forget();
            EXPECT_EQ(StatusOn(port, {{kTlsKey, TCIMValue(tls)}}), TVYXStatusCode::eRemoteConnectionFailed) << port;
            const std::string text = "a port is a number from 1 to 65535, which " + std::to_string(port) + " is not";
            EXPECT_EQ(FailureKind(), Kind::kOther);
            EXPECT_EQ(Failure()->text, text);
            EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::connect failed: " + text));
        }
    }
    EXPECT_EQ(CountConnections({kHttpPort}), 0U);
}

TEST_F(ConnectionOptionsTest, WhereVerificationIsAskedForNothingIsConnectedPlainly) {
    server_.Listen(kOtherPort);
    const TCIMContext texts{{kTrustKey, TCIMValue(Certificate().CaFile())},
                            {kFingerprintKey, TCIMValue(kDigits)},
                            {kClientCertificateKey, TCIMValue(Certificate().CertificateFile())}};
    for (const auto& [key, value] : texts) {
        for (const int port : {kHttpPort, kOtherPort, 0}) {
            log_->Forget();
            EXPECT_EQ(StatusOn(port, {{key, value}}), TVYXStatusCode::eRemoteConnectionFailed) << key << port;
            const std::string text = key + " is given for a connection that would not be encrypted";
            EXPECT_EQ(FailureKind(), Kind::kOther);
            EXPECT_EQ(Failure()->text, text);
            EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::connect failed: " + text));
        }
    }
    EXPECT_EQ(CountConnections({kHttpPort, kOtherPort}), 0U);
}

// --- Verification ------------------------------------------------------------------------------------------------

TEST_F(ConnectionOptionsTest, AServerOfATrustedAuthorityIsReadFrom) {
    server_.ListenTls(kHttpsPort, Certificate());
    const int port = server_.ListenTls(0, Certificate());
    for (const std::string& trust : {Certificate().CaFile(), Certificate().CaDirectory()}) {
        EXPECT_TRUE(IsRead(kHttpsPort, {{kTrustKey, TCIMValue(trust)}}));
        EXPECT_TRUE(IsRead(port, {{kTlsKey, TCIMValue(true)}, {kTrustKey, TCIMValue(trust)}}));
    }
}

TEST_F(ConnectionOptionsTest, ACertificateThatIsNotTrustedIsRefusedWithTheReason) {
    auto options = support::TestCertificate::For(server_.Address());
    const support::TestCertificate other(options);
    ExpectCertificateRefused(Certificate(), Trust(other), Reason::kUnknownIssuer);
    const support::TestCertificate elsewhere(support::TestCertificate::For("192.0.2.1"));
    ExpectCertificateRefused(elsewhere, Trust(elsewhere), Reason::kWrongName);
    EXPECT_THAT(Failure()->refusal->certificate.names, ElementsAre("192.0.2.1"));
    options.expired = true;
    const support::TestCertificate expired(options);
    ExpectCertificateRefused(expired, Trust(expired), Reason::kExpired);
    options.expired = false;
    options.notYetValid = true;
    const support::TestCertificate early(options);
    ExpectCertificateRefused(early, Trust(early), Reason::kNotYetValid);
    options.notYetValid = false;
    options.selfSigned = true;
    const support::TestCertificate own(options);
    ExpectCertificateRefused(own, Trust(other), Reason::kSelfSigned);
}

TEST_F(ConnectionOptionsTest, ARefusedCertificateIsDescribed) {
    const support::TestCertificate other(support::TestCertificate::Options{});
    ExpectCertificateRefused(Certificate(), Trust(other), Reason::kUnknownIssuer);
    const ServerCertificate& certificate = Failure()->refusal->certificate;
    EXPECT_EQ(certificate.subject, "CN=cimhttp test server");
    EXPECT_EQ(certificate.issuer, "CN=cimhttp test authority");
    EXPECT_THAT(certificate.names, ElementsAre(server_.Address()));
    const std::string pattern = "20[0-9][0-9]-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-5][0-9]Z";
    EXPECT_THAT(certificate.validFrom, testing::MatchesRegex(pattern));
    EXPECT_THAT(certificate.validUntil, testing::MatchesRegex(pattern));
    EXPECT_LT(certificate.validFrom, certificate.validUntil);
    EXPECT_THAT(log_->Debug(), ElementsAre(StartsWith("TCimHTTPNamespace::connect failed: ")));
}

TEST_F(ConnectionOptionsTest, AFingerprintAcceptsItsCertificateAloneWhateverThatIs) {
    auto options = support::TestCertificate::For("192.0.2.1");
    options.expired = true;
    options.selfSigned = true;
    const support::TestCertificate certificate(options);
    const std::string fingerprint = FingerprintOf(certificate.CertificateFile());
    server_.ListenTls(kHttpsPort, certificate);
    EXPECT_TRUE(IsRead(kHttpsPort, {{kFingerprintKey, TCIMValue(fingerprint)}}));
    ExpectCertificateRefused(Certificate(), {{kFingerprintKey, TCIMValue(fingerprint)}}, Reason::kOtherFingerprint);
    TCIMContext both = Trust(Certificate());
    both[kFingerprintKey] = TCIMValue(fingerprint);
    ExpectCertificateRefused(Certificate(), both, Reason::kOtherFingerprint);
    EXPECT_TRUE(IsRead(kHttpsPort, both)) << "the fingerprint decides";
}

TEST_F(ConnectionOptionsTest, ATrustStoreThatIsNotThereIsAFailure) {
    server_.ListenTls(kHttpsPort, Certificate());
    EXPECT_EQ(StatusOn(kHttpsPort, {{kTrustKey, TCIMValue("/no/such/file.pem")}}),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(FailureKind(), Kind::kTls);
    EXPECT_THAT(Failure()->text, HasSubstr("/no/such/file.pem"));
    EXPECT_FALSE(Failure()->refusal) << "no certificate was at fault";
}

TEST_F(ConnectionOptionsTest, AServerThatAsksForACertificateGetsTheClients) {
    const support::TestCertificate client(support::TestCertificate::Options{});
    support::ScriptedServer server(
        [](support::Connection& connection) {
            connection.ReadRequest();
            connection.Write("HTTP/1.1 503 let in\r\nContent-Length: 0\r\n\r\n");
        },
        support::SecondLoopbackAddress());
    const int port = server.ListenTls(
        0, {Certificate().CertificateFile(), Certificate().KeyFile(), support::TlsVersion::kCurrent, client.CaFile()});
    const auto statusWith = [&](TCIMContext options) {
        options[kTlsKey] = TCIMValue(true);
        options[kReadingKey] = TCIMValue(kFaithfulReading);
        const auto nameSpace = Allocated(options);
        StatusOf([&] {
            nameSpace->connect(server.Address(), "", "", port);
            nameSpace->GetClass("TEST_Disk", TCIMContext());
        });
        return nameSpace->LastFailure() ? nameSpace->LastFailure()->httpStatus : 0;
    };
    EXPECT_EQ(statusWith({}), TVYXStatusCode::eSuccess);
    EXPECT_EQ(statusWith({{kClientCertificateKey, TCIMValue(client.CertificateFile())},
                          {kClientKeyKey, TCIMValue(client.KeyFile())}}),
              503U);
    const support::TemporaryDirectory directory;
    const std::string both = directory.WriteFile("both.pem", support::ReadFile(client.CertificateFile()) +
                                                                 support::ReadFile(client.KeyFile()));
    EXPECT_EQ(statusWith({{kClientCertificateKey, TCIMValue(both)}}), 503U);
}

// --- Namespaces --------------------------------------------------------------------------------------------------

TEST_F(ConnectionOptionsTest, ThreeNamespacesOfOneServerAreReadAtOnce) {
    std::vector<boost::shared_ptr<TCimHTTPNamespace>> nameSpaces;
    for (const char* const name : {"root/cimv2", "root/interop", "interop"}) {
        nameSpaces.push_back(Allocated({{kNamespaceKey, TCIMValue(name)}}));
        nameSpaces.back()->connect(server_.Address(), "", "", kHttpPort);
    }
    for (const auto& nameSpace : nameSpaces) {
        EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    }
    std::vector<std::string> asked;
    for (const auto& call : server_.Calls()) {
        if (asked.empty() || asked.back() != call.nameSpace) {
            asked.push_back(call.nameSpace);
        }
    }
    EXPECT_THAT(asked, ElementsAre("root/cimv2", "root/interop", "interop"));
}

} // namespace
