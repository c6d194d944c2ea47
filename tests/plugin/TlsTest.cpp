#include "TlsTest.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <array>
#include <cstdio>
#include <memory>
#include <utility>

using namespace NQORVYX20;

std::string FingerprintOf(const std::string& file) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "r"), &std::fclose);
    const std::unique_ptr<X509, void (*)(X509*)> certificate(PEM_read_X509(stream.get(), nullptr, nullptr, nullptr),
                                                             &X509_free);
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EXPECT_EQ(X509_digest(certificate.get(), EVP_sha256(), digest.data(), &size), 1);
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        std::array<char, 4> pair{};
        std::snprintf(pair.data(), pair.size(), "%02X", static_cast<unsigned>(digest.at(i)));
        text += (i == 0 ? "" : ":") + std::string(pair.data());
    }
    return text;
}

TlsTest::TlsTest() { ServeClass("TEST_Disk", "", ""); }

boost::shared_ptr<TCimHTTPNamespace> TlsTest::Allocated(TCIMContext options) {
    options.insert({"pluginNameQualDeclValue", TCIMValue("test plug-in")});
    return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(options, false));
}

unsigned TlsTest::StatusOn(int port, TCIMContext options) {
    const auto nameSpace = Allocated(std::move(options));
    const unsigned status = StatusOf([&] { nameSpace->connect(server_.Address(), "", "", port); });
    EXPECT_EQ(nameSpace->isConnected(), status == 0);
    failure_ = nameSpace->LastFailure();
    return status;
}

RemoteFailure::Kind TlsTest::FailureKind() const {
    EXPECT_TRUE(failure_) << "there was none";
    return failure_ ? failure_->kind : RemoteFailure::Kind::kOther;
}

bool TlsTest::IsRead(int port, TCIMContext options) {
    const auto nameSpace = Allocated(std::move(options));
    nameSpace->connect(server_.Address(), "", "", port);
    return nameSpace->GetClass("TEST_Disk", TCIMContext()) != nullptr;
}
