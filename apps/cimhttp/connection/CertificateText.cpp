#include "connection/CertificateText.h"

#include "access/ServerProbe.h"
#include "connection/Connection.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <vector>

namespace cimhttp {

namespace {

using NQORVYX20::CertificateRefusal;
using NQORVYX20::ServerCertificate;
using Reason = CertificateRefusal::Reason;

constexpr std::size_t kLongestText = 200; // in columns
constexpr std::size_t kMostNames = 10;

std::string Shortened(const std::string& text) {
    const std::string printable = Printable(text);
    return DisplayWidth(printable) <= kLongestText ? printable : Cut(printable, kLongestText) + "…";
}

std::string Line(const char* heading, const std::string& text) {
    return std::string("    ") + heading + Shortened(text) + '\n';
}

/// The names that a certificate is for in one line, not more than a few of them.
std::string CertificateNames(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kMostNames; ++i) {
        text += (i == 0 ? "" : ", ") + Shortened(names[i]);
    }
    const std::size_t left = names.size() - std::min(names.size(), kMostNames);
    return text.empty() ? "none" : text + (left == 0 ? "" : " and " + std::to_string(left) + " more");
}

constexpr const char* kAskOwner = "ask whoever runs the server";

std::string OfSubject(const ServerCertificate& certificate) {
    return certificate.subject.empty() ? "" : " (" + certificate.subject + ")";
}

/// What the certificate should have led to.
std::string Trusted(const Connection& connection) {
    return connection.tlsSettings.ca ? "--ca" : "this machine's policy for connections";
}

/// Another than a user or the policy has named.
std::string Other(const ServerCertificate& certificate, const Connection& connection) {
    const auto& expected = connection.tlsSettings.fingerprint;
    const std::string right = expected ? *expected + ", which --fingerprint or the connection names"
                                       : "the one that " + Trusted(connection) + " names";
    return "its certificate is " + certificate.fingerprint + OfSubject(certificate) + ", and not " + right +
           ": somebody may stand between, or the server has a new certificate; " + kAskOwner + " which is right";
}

/// Another than the one that the user trusted.
std::string Changed(const ServerCertificate& certificate, const Connection& connection) {
    return "THE CERTIFICATE HAS CHANGED: it was " + connection.tlsSettings.fingerprint.value_or("") + " since " +
           connection.knownSince + ", and now it is " + certificate.fingerprint + OfSubject(certificate) +
           ", issued by " + certificate.issuer +
           "; somebody may stand between and read all that is sent, or the server has a new certificate; " + kAskOwner +
           ", and only if it is new, 'cimhttp connection forget " + connection.HostAndPort() +
           "' removes the old one, and you are asked again";
}

std::string UnknownIssuer(const ServerCertificate& certificate, const Connection& connection) {
    return "no authority that " + Trusted(connection) + " names has signed its certificate, which " +
           certificate.issuer + " has issued: give --ca FILE with that authority's certificate";
}

std::string SelfSigned(const ServerCertificate& certificate, const Connection& connection) {
    return "its certificate" + OfSubject(certificate) + " is signed by itself, or by an authority that " +
           Trusted(connection) +
           " does not name: give --ca FILE with that certificate, or --fingerprint, when you know it to be right "
           "(SHA-256 " +
           certificate.fingerprint + ")";
}

std::string WrongName(const ServerCertificate& certificate, const Connection& connection) {
    const bool hasNames = !certificate.names.empty();
    return "its certificate is not for " + connection.host + ", but for " +
           (hasNames ? CertificateNames(certificate.names) : certificate.subject) +
           (hasNames ? ": use that name with --host, or " : "; ") + kAskOwner;
}

} // namespace

std::string ExplainedRefusal(const CertificateRefusal& refusal, const Connection& connection, const std::string& text) {
    const ServerCertificate& certificate = refusal.certificate;
    const std::string which = "its certificate" + OfSubject(certificate);
    switch (refusal.reason) {
    case Reason::kExpired:
        return which + " has expired on " + certificate.validUntil + "; " + kAskOwner +
               " for a new one, unless the clock here is wrong";
    case Reason::kNotYetValid:
        return which + " is not valid before " + certificate.validFrom + "; is the clock here right? If so, " +
               kAskOwner;
    case Reason::kUnknownIssuer:
        return UnknownIssuer(certificate, connection);
    case Reason::kSelfSigned:
        return SelfSigned(certificate, connection);
    case Reason::kWrongName:
        return WrongName(certificate, connection);
    case Reason::kOtherFingerprint:
        return connection.knownSince.empty() ? Other(certificate, connection) : Changed(certificate, connection);
    case Reason::kUnsuitable:
        return which + " is not fit for a server, or its key or signature is too weak: " + text + "; " + kAskOwner;
    default:
        return which + " is refused: " + text;
    }
}

std::string CertificateText(const TlsDetails& tls) {
    return Line("subject    ", tls.subject) + Line("names      ", CertificateNames(tls.names)) +
           Line("issued by  ", tls.isSelfSigned ? "itself" : tls.issuer) +
           Line("valid      ", tls.validFrom + " to " + tls.validUntil) + Line("SHA-256    ", tls.fingerprint);
}

} // namespace cimhttp
