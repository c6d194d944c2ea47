#include "tls/Fingerprint.h"

#include "tls/CertificateFacts.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <cstddef>
#include <new>

namespace Pegasus::http {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr unsigned kBits = 4; // of a digit

[[noreturn]] void failParsing(std::string_view text) {
    throw SSLException(String("a fingerprint is 64 hexadecimal digits, with or without colons between the pairs, and "
                              "not \"" +
                              printable(text) + '"'));
}

/// Takes a digit from the front.
unsigned takeDigit(std::string_view& rest, std::string_view text) {
    const char c = rest.empty() ? '\0' : rest.front();
    const std::size_t digit = kDigits.find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c);
    if (digit == std::string_view::npos) {
        failParsing(text);
    }
    rest.remove_prefix(1);
    return static_cast<unsigned>(digit);
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
        text += kDigits[byte >> kBits];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

} // namespace Pegasus::http
