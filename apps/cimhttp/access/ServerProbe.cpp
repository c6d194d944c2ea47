#include "access/ServerProbe.h"

#include <Pegasus/Client/CIMClient.h>

#if __has_include(<Pegasus/Client/ServerProbe.h>)
#include "convert/RemoteText.h"

#include <Pegasus/Client/ServerProbe.h>
#endif

namespace cimhttp {

#if __has_include(<Pegasus/Client/ServerProbe.h>)

namespace {

using NQORVYX20::ToStdString;
using Depth = ServerProbe::Depth;
using Result = ServerProbe::Result;

Pegasus::ServerProbe::Depth RemoteDepth(Depth depth) {
    return depth == Depth::kName   ? Pegasus::ServerProbe::NAME
           : depth == Depth::kPort ? Pegasus::ServerProbe::PORT
                                   : Pegasus::ServerProbe::TLS;
}

Result ResultOf(Pegasus::ServerProbe::Result result) {
    switch (result) {
    case Pegasus::ServerProbe::REACHED:
        return Result::kReached;
    case Pegasus::ServerProbe::UNKNOWN_HOST:
        return Result::kUnknownHost;
    case Pegasus::ServerProbe::UNRESOLVED:
        return Result::kUnresolved;
    case Pegasus::ServerProbe::REFUSED:
        return Result::kRefused;
    case Pegasus::ServerProbe::SILENT:
        return Result::kSilent;
    default:
        return Result::kUntried;
    }
}

std::vector<std::string> TextsOf(const Pegasus::Array<Pegasus::String>& remote) {
    std::vector<std::string> texts;
    for (Pegasus::Uint32 i = 0; i < remote.size(); ++i) {
        texts.push_back(ToStdString(remote[i]));
    }
    return texts;
}

TlsDetails DetailsOf(const Pegasus::TlsProbe& tls) {
    const Pegasus::PeerCertificate& certificate = tls.certificate;
    return {ToStdString(tls.version),
            ToStdString(tls.cipher),
            tls.showsCertificate,
            ToStdString(certificate.subject),
            ToStdString(certificate.issuer),
            TextsOf(certificate.names),
            ToStdString(certificate.validFrom),
            ToStdString(certificate.validUntil),
            ToStdString(certificate.fingerprint),
            tls.isSelfSigned,
            tls.asksForCertificate,
            ToStdString(tls.failure)};
}

} // namespace

ServerProbe ProbeServer(const ProbeTarget& target, Depth depth) {
    const auto probe =
        Pegasus::ServerProbe::of(Pegasus::String(target.host.c_str()), static_cast<Pegasus::Uint32>(target.port),
                                 RemoteDepth(depth), static_cast<Pegasus::Uint32>(target.timeout.count()));
    return {ResultOf(probe.result),
            ToStdString(probe.reason),
            TextsOf(probe.addresses),
            std::chrono::microseconds(probe.connectTime),
            std::chrono::microseconds(probe.handshakeTime),
            DetailsOf(probe.tls)};
}

#else

ServerProbe ProbeServer(const ProbeTarget& /*target*/, ServerProbe::Depth /*depth*/) {
    ServerProbe probe;
    probe.result = ServerProbe::Result::kUntried;
    probe.reason = "the client library that this program was built with shows nothing of it";
    probe.tls.failure = probe.reason;
    return probe;
}

#endif

} // namespace cimhttp
