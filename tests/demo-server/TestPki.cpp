#include "TestPki.h"

#include "support/ProgramRun.h"

#include <stdexcept>

namespace {

constexpr const char* kNewKey = " -newkey ec -pkeyopt ec_paramgen_curve:P-256 -noenc -batch ";
constexpr const char* kAuthority = "basicConstraints=critical,CA:TRUE\nkeyUsage=keyCertSign\n";

} // namespace

TestPki::TestPki(const std::string& serverAddress) {
    OpenSsl("req -x509 -days 2 -subj /CN=root" + std::string(kNewKey) + "-keyout " + Path("root.key") + " -out " +
            Root() + " -addext keyUsage=keyCertSign");
    SignWith("root", "intermediate", kAuthority);
    SignWith("intermediate", "server", "subjectAltName=IP:" + serverAddress + "\n");
    SignWith("intermediate", "client", "extendedKeyUsage=clientAuth\n");
    Write("chain.pem", support::ReadFile(Server()) + support::ReadFile(Intermediate()));
    Write("client-chain.pem", support::ReadFile(Path("client.pem")) + support::ReadFile(Intermediate()));
}

void TestPki::OpenSsl(const std::string& arguments) {
    const auto run = support::RunProgram("/bin/sh", {"-c", "openssl " + arguments});
    if (run.status != 0) {
        throw std::runtime_error("openssl " + arguments + ": " + run.errors);
    }
}

void TestPki::SignWith(const std::string& issuer, const std::string& name, const std::string& extensions) const {
    const std::string extensionFile = Write(name + ".ext", extensions);
    OpenSsl("req -subj /CN=" + name + kNewKey + "-keyout " + Path(name + ".key") + " -out " + Path(name + ".csr"));
    OpenSsl("x509 -req -days 2 -in " + Path(name + ".csr") + " -CA " + Path(issuer + ".pem") + " -CAkey " +
            Path(issuer + ".key") + " -CAcreateserial -extfile " + extensionFile + " -out " + Path(name + ".pem"));
}
