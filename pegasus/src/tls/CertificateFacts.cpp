#include "tls/CertificateFacts.h"

#include "text/Ascii.h"
#include "text/Hexadecimal.h"
#include "tls/Fingerprint.h"
#include "tls/OpenSslObjects.h"

#include <openssl/asn1.h>
#include <openssl/objects.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <memory>
#include <new>

namespace Pegasus::tls {

namespace {

using AlternativeNames = std::unique_ptr<GENERAL_NAMES, Freeing<&GENERAL_NAMES_free>>;

/// OPENSSL_free is a macro, and has no address.
struct BytesFreeing {
    void operator()(unsigned char* bytes) const { OPENSSL_free(bytes); }
};

std::string_view bytesOf(const ASN1_STRING& text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(&text)),
            static_cast<std::size_t>(ASN1_STRING_length(&text))};
}

/// Empty when it is none.
std::string addressText(const ASN1_OCTET_STRING& address) {
    const std::string_view bytes = bytesOf(address);
    const int family = bytes.size() == sizeof(in6_addr) ? AF_INET6 : AF_INET;
    char text[INET6_ADDRSTRLEN];
    const bool isAddress = bytes.size() == sizeof(in6_addr) || bytes.size() == sizeof(in_addr);
    return isAddress && ::inet_ntop(family, bytes.data(), text, sizeof text) != nullptr ? text : "";
}

bool looksLikeHostName(std::string_view name) {
    const auto isAllowed = [](char c) {
        return text::isLetter(c) || text::isDigit(c) || c == '-' || c == '.' || c == '_' || c == '*';
    };
    return !name.empty() && std::all_of(name.begin(), name.end(), isAllowed);
}

void appendCommonNames(const X509& certificate, Array<String>& names) {
    const X509_NAME* const subject = X509_get_subject_name(&certificate);
    for (int i = -1; (i = X509_NAME_get_index_by_NID(subject, NID_commonName, i)) >= 0;) {
        const ASN1_STRING* const name = X509_NAME_ENTRY_get_data(X509_NAME_get_entry(subject, i));
        if (looksLikeHostName(bytesOf(*name))) {
            names.append(String(bytesOf(*name)));
        }
    }
}

/// With escapes for control characters.
std::string utf8Of(const ASN1_STRING& value) {
    unsigned char* bytes = nullptr;
    const int size = ASN1_STRING_to_UTF8(&bytes, &value);
    const std::unique_ptr<unsigned char, BytesFreeing> owner(bytes);
    std::string text;
    for (int i = 0; i < size; ++i) {
        const bool isControl = bytes[i] < ' ' || bytes[i] == 0x7F;
        const char byte = static_cast<char>(bytes[i]);
        text += isControl ? printable({&byte, 1}) : std::string(1, byte);
    }
    return text;
}

void appendUnlessEmpty(const std::string& name, Array<String>& names) {
    if (!name.empty()) {
        names.append(String(name));
    }
}

Array<String> hostNames(const X509& certificate) {
    Array<String> names;
    bool hasDnsName = false;
    const AlternativeNames all(
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(&certificate, NID_subject_alt_name, nullptr, nullptr)));
    for (int i = 0; all && i < sk_GENERAL_NAME_num(all.get()); ++i) {
        const GENERAL_NAME& name = *sk_GENERAL_NAME_value(all.get(), i);
        if (name.type == GEN_DNS) {
            hasDnsName = true;
            appendUnlessEmpty(printable(bytesOf(*name.d.dNSName)), names);
        } else if (name.type == GEN_IPADD) {
            appendUnlessEmpty(addressText(*name.d.iPAddress), names);
        }
    }
    if (!hasDnsName) {
        appendCommonNames(certificate, names);
    }
    return names;
}

} // namespace

std::string nameText(const X509_NAME& name) {
    const BioPtr out(BIO_new(BIO_s_mem()));
    if (!out) {
        throw std::bad_alloc();
    }
    X509_NAME_print_ex(out.get(), &name, 0, XN_FLAG_RFC2253 & ~ASN1_STRFLGS_ESC_MSB);
    char* text = nullptr;
    const long size = BIO_get_mem_data(out.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

std::string slashedName(const X509_NAME& name) {
    std::string text;
    for (int i = 0; i < X509_NAME_entry_count(&name); ++i) {
        const X509_NAME_ENTRY* const entry = X509_NAME_get_entry(&name, i);
        char kind[80];
        const ASN1_OBJECT* const object = X509_NAME_ENTRY_get_object(entry);
        const int number = OBJ_obj2nid(object);
        if (number != NID_undef) {
            text.append("/").append(OBJ_nid2sn(number));
        } else {
            OBJ_obj2txt(kind, sizeof kind, object, 1);
            text.append("/").append(kind);
        }
        text.append("=").append(utf8Of(*X509_NAME_ENTRY_get_data(entry)));
    }
    return text;
}

std::string timeText(const ASN1_TIME& time) {
    std::tm fields{};
    char text[64];
    const bool isTime =
        ASN1_TIME_to_tm(&time, &fields) == 1 && std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields) > 0;
    return isTime ? text : "an impossible time";
}

std::string printable(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        if (byte >= ' ' && byte <= '~') {
            text += byte;
        } else {
            text += '\\';
            text::appendHex(static_cast<unsigned char>(byte), text);
        }
    }
    return text;
}

PeerCertificate factsOf(const X509& certificate) {
    return {String(nameText(*X509_get_subject_name(&certificate))),
            String(nameText(*X509_get_issuer_name(&certificate))),
            hostNames(certificate),
            String(timeText(*X509_get0_notBefore(&certificate))),
            String(timeText(*X509_get0_notAfter(&certificate))),
            String(Fingerprint::of(certificate).text())};
}

} // namespace Pegasus::tls
