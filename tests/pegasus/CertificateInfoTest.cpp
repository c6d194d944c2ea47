// What a callback is told of a server's certificate, in real handshakes. The program openssl makes the certificates,
// and says what is in them.

#include "TlsFixture.h"
#include "support/ProgramRun.h"

#include <Pegasus/Common/SSLContext.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/x509_vfy.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace Pegasus::http {

namespace {

using ::testing::HasSubstr;

std::vector<SSLCertificateInfo> shown;

/// A callback has no object of its own.
Boolean takeNote(SSLCertificateInfo& info) {
    shown.push_back(info);
    return true;
}

std::string text(const String& string) { return std::string(string.view()); }

/// `2026-11-22 15:05:29Z` as a CIM datetime.
std::string asDateTime(std::string time) {
    time.erase(std::remove_if(time.begin(), time.end(), [](unsigned char c) { return std::isdigit(c) == 0; }),
               time.end());
    return time + ".000000+000";
}

class CertificateInfoTest : public TlsFixture {
  protected:
    CertificateInfoTest() {
        shown.clear();
        write("openssl.cnf", "oid_section = oids\n[oids]\nbadge = 1.3.6.1.4.1.99999.1\n"
                             "[req]\ndistinguished_name = dn\n[dn]\n");
    }

    std::string path(const std::string& name) const { return (directory_.Path() / name).string(); }

    static std::string openSsl(const std::vector<std::string>& arguments) {
        const support::ProgramRun run = support::RunProgram(support::FindProgram("openssl"), arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    /// Makes the certificate that the server shows, which signs itself.
    void make(const std::string& subject, const std::string& serial, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {
            "req",   "-x509",           "-newkey",           "ec",     "-pkeyopt", "ec_paramgen_curve:P-256",
            "-utf8", "-config",         path("openssl.cnf"), "-nodes", "-days",    "2",
            "-subj", subject,           "-set_serial",       serial,   "-keyout",  path("server.key"),
            "-out",  path("server.pem")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        openSsl(arguments);
    }

    /// What openssl says for an option that prints NAME=VALUE.
    std::string told(const std::string& option) const {
        const std::string line = openSsl(
            {"x509", "-in", path("server.pem"), "-noout", option, "-nameopt", "compat", "-dateopt", "iso_8601"});
        return line.substr(line.find('=') + 1, line.find('\n') - line.find('=') - 1);
    }

    /// What a callback, which is asked first about what is wrong, is told in a handshake that it lets succeed.
    SSLCertificateInfo infoOf(const SSLContext& tls = SSLContext(String(), &takeNote)) {
        server_ = std::make_unique<support::ScriptedServer>([](support::Connection& peer) {
            for (std::string bytes; !(bytes = peer.ReadSome()).empty();) {
                peer.Write(bytes);
            }
        });
        const auto port = server_->ListenTls(
            0, {path("server.pem"), path("server.key"), support::TlsVersion::kCurrent, std::string()});
        EXPECT_EQ(outcomeOf(Endpoint(server_->Address(), port), tls).text, "");
        return shown.at(0);
    }
};

TEST_F(CertificateInfoTest, NamesReadAsOpenSslsWithSlashes) {
    make("/C=AT/O=Example Ltd/OU=Storage/badge=7/CN=server.test", "1");
    const SSLCertificateInfo info = infoOf();
    EXPECT_EQ(text(info.getSubjectName()), "/C=AT/O=Example Ltd/OU=Storage/1.3.6.1.4.1.99999.1=7/CN=server.test");
    EXPECT_EQ(text(info.getSubjectName()), told("-subject"));
    EXPECT_EQ(text(info.getIssuerName()), told("-issuer"));
}

TEST_F(CertificateInfoTest, NamesAreUtf8AndShowControlCharacters) {
    make("/O=gr\xC3\xBCn/CN=a\nb", "1");
    EXPECT_EQ(text(infoOf().getSubjectName()), "/O=gr\xC3\xBCn/CN=a\\0Ab");
}

TEST_F(CertificateInfoTest, TheIssuerIsNotTheSubject) {
    const IssuedCertificate server({}, authority_);
    write("server.pem", server.Pem());
    write("server.key", server.KeyPem());
    const SSLCertificateInfo info = infoOf();
    EXPECT_EQ(text(info.getSubjectName()), "/CN=cimhttp test server");
    EXPECT_EQ(text(info.getIssuerName()), "/CN=test authority");
}

TEST_F(CertificateInfoTest, ItIsValidFromAndUntilWhatOpenSslSays) {
    make("/CN=a", "1");
    const SSLCertificateInfo info = infoOf();
    EXPECT_EQ(text(info.getNotBefore().toString()), asDateTime(told("-startdate")));
    EXPECT_EQ(text(info.getNotAfter().toString()), asDateTime(told("-enddate")));
    EXPECT_EQ(CIMDateTime::getDifference(info.getNotBefore(), info.getNotAfter()), 2 * 86400 * Sint64(1000000));
}

TEST_F(CertificateInfoTest, ASerialNumberIsTheNumberThatItIs) {
    make("/CN=a", "0x1267");
    EXPECT_EQ(infoOf().getSerialNumber(), std::stol(told("-serial"), nullptr, 16));
    EXPECT_EQ(shown[0].getSerialNumber(), 4711);
}

TEST_F(CertificateInfoTest, ASerialNumberThatALongDoesNotHoldIsMinusOne) {
    make("/CN=a", "0x8000000000000000");
    EXPECT_EQ(infoOf().getSerialNumber(), -1);
    make("/CN=a", "0x7FFFFFFFFFFFFFFF");
    shown.clear();
    EXPECT_EQ(infoOf().getSerialNumber(), 0x7FFFFFFFFFFFFFFFL);
}

TEST_F(CertificateInfoTest, TheVersionIsTheOneThatPeopleSay) {
    make("/CN=a", "1");
    EXPECT_THAT(openSsl({"x509", "-in", path("server.pem"), "-noout", "-text"}), HasSubstr("Version: 1 "));
    EXPECT_EQ(infoOf().getVersionNumber(), 1U);
    make("/CN=a", "1", {"-addext", "subjectAltName=DNS:a"});
    EXPECT_THAT(openSsl({"x509", "-in", path("server.pem"), "-noout", "-text"}), HasSubstr("Version: 3 "));
    shown.clear();
    EXPECT_EQ(infoOf().getVersionNumber(), 3U);
}

TEST_F(CertificateInfoTest, TheFirstQuestionIsWhatIsWrongAndTheLastIsTheServersOwn) {
    make("/CN=a", "1");
    const SSLCertificateInfo first = infoOf();
    EXPECT_EQ(first.getErrorCode(), X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT);
    EXPECT_EQ(text(first.getErrorString()), X509_verify_cert_error_string(X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT));
    EXPECT_EQ(first.getResponseCode(), 0U);
    EXPECT_EQ(shown.back().getErrorDepth(), 0U);
}

TEST_F(CertificateInfoTest, EachCertificateOfAGoodChainIsShownWithItsDepth) {
    const IssuedCertificate server(serverFor("IP:" + address_), authority_);
    write("server.pem", server.Pem());
    write("server.key", server.KeyPem());
    infoOf({String(write("trusted.pem", authority_.Pem())), &takeNote});
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(text(shown[0].getSubjectName()), "/CN=test authority");
    EXPECT_EQ(shown[0].getErrorDepth(), 1U);
    EXPECT_EQ(text(shown[1].getSubjectName()), "/CN=cimhttp test server");
    EXPECT_EQ(shown[1].getErrorDepth(), 0U);
    EXPECT_EQ(shown[1].getErrorCode(), 0);
    EXPECT_EQ(shown[1].getResponseCode(), 1U);
}

TEST_F(CertificateInfoTest, ItsTextHasALineForEachOfItsFacts) {
    make("/C=AT/CN=a", "17");
    const SSLCertificateInfo info = infoOf();
    EXPECT_EQ(text(info.toString()),
              "Subject: " + told("-subject") + "\nIssuer: " + told("-issuer") +
                  "\nSerial number: 17\nVersion: 1\nNot before: " + asDateTime(told("-startdate")) +
                  "\nNot after: " + asDateTime(told("-enddate")) +
                  "\nDepth: 0\nError code: 18\nError: " + text(info.getErrorString()) + "\nResponse: 0\n");
}

} // namespace

} // namespace Pegasus::http
