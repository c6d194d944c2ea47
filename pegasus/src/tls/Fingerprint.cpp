#include "tls/Fingerprint.h"

#include "text/Hexadecimal.h"
#include "tls/CertificateFacts.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <cstddef>
#include <new>

namespace Pegasus::tls {

namespace {

constexpr unsigned kBits = 4; // of a digit

[[noreturn]] void failParsing(std::string_view text) {
    throw SSLException(String("a fingerprint is 64 hexadecimal digits, with or without colons between the pairs, and "
                              "not \"" +
                              printable(text) + '"'));
}

/// Takes a digit from the front.
unsigned takeDigit(std::string_view& rest, std::string_view text) {
    const char c = rest.empty() ? '\0' : rest.front();
    const auto number = text::hexNumber(c);
    if (!number) {
        failParsing(text);
    }
    rest.remove_prefix(1);
    return *number;
}

} // namespace

Fingerprint Fingerprint::parse(std::string_view text) {
    Fingerprint parsed;
    std::string_view rest = text;
    for (std::size_t i = 0; i < kBytes; ++i) {
        if (i > 0 && !rest.empty() && rest.front() == ':') {
            rest.remove_prefix(1);
        }
        const unsigned high = takeDigit(rest, text);
        parsed.bytes_[i] = static_cast<unsigned char>(high << kBits | takeDigit(rest, text));
    }
    return rest.empty() ? parsed : (failParsing(text), parsed);
}

Fingerprint Fingerprint::of(const X509& certificate) {
    Fingerprint made;
    if (X509_digest(&certificate, EVP_sha256(), made.bytes_.data(), nullptr) != 1) {
        throw std::bad_alloc();
    }
    return made;
}

std::string Fingerprint::text() const {
    std::string text;
    for (const unsigned char byte : bytes_) {
        text += text.empty() ? "" : ":";
        text::appendHex(byte, text);
    }
    return text;
}

} // namespace Pegasus::tls
