#include "connection/CertificateText.h"

#include "access/ServerProbe.h"
#include "text/TerminalText.h"

#include <algorithm>

namespace cimhttp {

namespace {

constexpr std::size_t kLongestText = 200; // in columns
constexpr std::size_t kMostNames = 10;

std::string Shortened(const std::string& text) {
    const std::string printable = Printable(text);
    return DisplayWidth(printable) <= kLongestText ? printable : Cut(printable, kLongestText) + "…";
}

std::string Line(const char* heading, const std::string& text) {
    return std::string("    ") + heading + Shortened(text) + '\n';
}

} // namespace

std::string CertificateNames(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kMostNames; ++i) {
        text += (i == 0 ? "" : ", ") + Shortened(names[i]);
    }
    const std::size_t left = names.size() - std::min(names.size(), kMostNames);
    return text.empty() ? "none" : text + (left == 0 ? "" : " and " + std::to_string(left) + " more");
}

std::string CertificateText(const TlsDetails& tls) {
    return Line("subject    ", tls.subject) + Line("names      ", CertificateNames(tls.names)) +
           Line("issued by  ", tls.isSelfSigned ? "itself" : tls.issuer) +
           Line("valid      ", tls.validFrom + " to " + tls.validUntil) + Line("SHA-256    ", tls.fingerprint);
}

} // namespace cimhttp
