#include "Options.h"
#include "commands/Commands.h"
#include "commands/Diagnosis.h"
#include "commands/ListingWriter.h"
#include "connection/FailedConnect.h"
#include "connection/RemoteReason.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "connection/ServerTrust.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "interop/InteropNamespace.h"
#include "output/Listing.h"
#include "text/Names.h"
#include "text/WordList.h"
#include "waiting/ProgressWait.h"

#include <algorithm>
#include <array>
#include <set>

namespace cimhttp {

namespace {

using NQORVYX20::RemoteFailure;
using Clock = std::chrono::steady_clock;
using Kind = RemoteFailure::Kind;

// With which some servers say that they do not have an operation (DSP0200).
constexpr unsigned kBadRequest = 400;

/// Classes that most servers have, with few instances.
constexpr std::array<const char*, 2> kUsualClasses{"CIM_ComputerSystem", "CIM_OperatingSystem"};

constexpr const char* kNotes =
    R"(Most checks need those before them: one that cannot be made because an earlier
one has failed is "not tried". The first request shows whether the login and the
namespace are right, and how long the server takes.

The enumeration reads the instances of CIM_ComputerSystem, CIM_OperatingSystem
or, where the server has neither, of the first class without subclasses.

The exit status is that of the first failure.)";

std::chrono::microseconds Since(Clock::time_point begin) {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
}

std::string VerificationText(const Connection& connection) {
    const TlsSettings& settings = connection.tlsSettings;
    if (!IsVerified(connection)) {
        return "not verified: give --ca FILE or --fingerprint SHA256";
    }
    if (connection.isVerifiedByPolicy) {
        return "verified as this machine's policy says";
    }
    if (settings.ca) {
        return "verified by the authorities in " + *settings.ca;
    }
    return connection.knownSince.empty() ? "verified by its fingerprint"
                                         : "verified by its fingerprint, known since " + connection.knownSince;
}

/// Whether the server has said that it does not know the operation, which some call a bad request.
bool LacksOperation(const RemoteFailure& failure) {
    return IsUnsupported(failure) || (failure.kind == Kind::kHttp && failure.httpStatus == kBadRequest);
}

/// One examination of a server. A check that fails ends it, unless the next ones do not need it.
class Examination {
  public:
    Examination(const CommandContext& context, const Connection& connection, const ProgressWait& wait)
        : context_(context), plugin_(context.options.plugin), connection_(connection), wait_(wait) {}

    Diagnosis Run() {
        if (LooksUp() && Connects() && OpensSession() && Answers()) {
            ReadQualifiers();
            Enumerate();
        }
        return diagnosis_;
    }

  private:
    bool LooksUp() {
        const auto begin = Clock::now();
        const ServerProbe probe = Probe("looking up " + connection_.host, ServerProbe::Depth::kName);
        return PassOrFail(Diagnosis::kNameLookUp, probe, begin, Since(begin), Joined(probe.addresses));
    }

    /// Below CIM, up to a certificate.
    bool Connects() {
        const auto begin = Clock::now();
        const ServerProbe probe = Probe("connecting to " + connection_.Url(),
                                        connection_.tls ? ServerProbe::Depth::kTls : ServerProbe::Depth::kPort);
        if (!PassOrFail(Diagnosis::kTcp, probe, begin, probe.connectTime,
                        "port " + std::to_string(connection_.Port()))) {
            return false;
        }
        if (connection_.tls && !probe.tls.showsCertificate && probe.result == ServerProbe::Result::kReached) {
            return Fail(Diagnosis::kTls, begin, ExplainFailedConnect(plugin_.Access(), connection_, probe.tls.failure));
        }
        handshake_ = probe.handshakeTime;
        version_ = probe.tls.version;
        return true;
    }

    ServerProbe Probe(const std::string& what, ServerProbe::Depth depth) const {
        return wait_.Read(what, [&] { return plugin_.Access().Probe(connection_.Target(), depth); });
    }

    /// Whether it goes on. What this program cannot find out is no fault of the server's.
    bool PassOrFail(Diagnosis::Check check, const ServerProbe& probe, Clock::time_point begin,
                    std::chrono::microseconds time, const std::string& remark) {
        switch (probe.result) {
        case ServerProbe::Result::kReached:
            diagnosis_.Pass(check, time, remark);
            return true;
        case ServerProbe::Result::kUntried:
            diagnosis_.Omit(check, probe.reason);
            return true;
        default:
            return Fail(check, begin, ExplainFailedConnect(plugin_.Access(), connection_, probe.reason));
        }
    }

    bool OpensSession() {
        const Diagnosis::Check check = connection_.tls ? Diagnosis::kTls : Diagnosis::kTcp;
        const auto begin = Clock::now();
        try {
            connection_ = Trusted(plugin_, connection_, context_.options, wait_);
            session_.emplace(plugin_, connection_, wait_);
        } catch (const Failure& failure) {
            if (failure.Status() != Failure::kConnection) {
                throw;
            }
            diagnosis_.Fail(check, Since(begin), failure);
            return false;
        }
        context_.WarnAbout(connection_);
        if (connection_.tls) {
            diagnosis_.Pass(Diagnosis::kTls, handshake_,
                            (version_.empty() ? "" : version_ + "; ") + VerificationText(connection_));
        } else {
            diagnosis_.Omit(Diagnosis::kTls, "nothing is encrypted; --tls encrypts");
        }
        return true;
    }

    /// The first request tells about more than one check.
    bool Answers() {
        const auto begin = Clock::now();
        try {
            classes_ = ServerSchema(*session_).ClassNames();
        } catch (const ServerFailure& failure) {
            return GoesOnAfter(failure, Since(begin));
        } catch (const Failure& failure) {
            diagnosis_.Fail(Diagnosis::kLogin, Since(begin), failure);
            return false;
        }
        PassLogin(Since(begin));
        PassNamespace();
        diagnosis_.Pass(Diagnosis::kClasses, Since(begin), Counted(classes_.size(), "class", "classes"));
        return true;
    }

    /// Whether it goes on when the names of the classes could not be read.
    bool GoesOnAfter(const ServerFailure& failure, std::chrono::microseconds time) {
        const RemoteFailure& reason = failure.Reason();
        if (reason.kind == Kind::kTls) { // as some servers do that want to see a certificate
            diagnosis_.Fail(Diagnosis::kTls, time, failure);
            return false;
        }
        if (reason.kind != Kind::kCimStatus && !LacksOperation(reason)) {
            diagnosis_.Fail(Diagnosis::kLogin, time, failure);
            return false;
        }
        PassLogin(time);
        if (reason.kind == Kind::kCimStatus && reason.cimStatus == kCimInvalidNamespace) {
            diagnosis_.Fail(Diagnosis::kNamespace, time, failure);
            return false;
        }
        FailOperation(Diagnosis::kClasses, time, failure);
        return true;
    }

    void ReadQualifiers() {
        const auto begin = Clock::now();
        try {
            const auto declarations = ServerSchema(*session_).QualifierDeclarations();
            PassNamespace();
            diagnosis_.Pass(Diagnosis::kQualifiers, Since(begin),
                            Counted(declarations.size(), "declaration", "declarations"));
        } catch (const ServerFailure& failure) {
            FailOperation(Diagnosis::kQualifiers, Since(begin), failure);
        }
    }

    void Enumerate() {
        const auto candidates = Candidates();
        if (candidates.empty()) {
            diagnosis_.Omit(Diagnosis::kEnumeration, "there is no class");
        }
        for (const auto& name : candidates) { // what the last one finds stands
            if (HasEnumerated(name)) {
                return;
            }
        }
    }

    /// What to enumerate: one class that there is or, from a server that does not list its classes, some that there
    /// may be.
    std::vector<std::string> Candidates() {
        if (diagnosis_.HasFailed(Diagnosis::kClasses)) {
            return {kUsualClasses.begin(), kUsualClasses.end()};
        }
        for (const char* usual : kUsualClasses) {
            const auto isUsual = [&](const std::string& name) { return IsSameName(name, usual); };
            if (std::any_of(classes_.begin(), classes_.end(), isUsual)) {
                return {usual};
            }
        }
        return FirstLeaf();
    }

    std::vector<std::string> FirstLeaf() {
        std::vector<RemoteClassName> hierarchy;
        try {
            hierarchy = ServerSchema(*session_).Hierarchy();
        } catch (const ServerFailure&) { // then any will do
            return classes_.empty() ? classes_ : std::vector<std::string>{classes_.front()};
        }
        std::set<std::string> superclasses;
        for (const RemoteClassName& cls : hierarchy) {
            superclasses.insert(cls.superclass);
        }
        const auto leaf = std::find_if(hierarchy.begin(), hierarchy.end(),
                                       [&](const auto& cls) { return superclasses.count(cls.name) == 0; });
        return leaf == hierarchy.end() ? std::vector<std::string>() : std::vector<std::string>{leaf->name};
    }

    /// False where the server does not have the class.
    bool HasEnumerated(const std::string& name) {
        const auto begin = Clock::now();
        try {
            const auto cls = ServerSchema(*session_).Class(name);
            const auto instances = ServerInstances(*session_).Of(*cls, true, {});
            PassNamespace();
            CheckIncidents(name + ": " + Counted(instances.size(), "instance", "instances"), Since(begin));
            return true;
        } catch (const Failure& failure) {
            diagnosis_.Fail(Diagnosis::kEnumeration, Since(begin), failure);
            return failure.Status() != Failure::kNotFound;
        }
    }

    void CheckIncidents(const std::string& remark, std::chrono::microseconds time) {
        const IncidentTally incidents = session_->TakeIncidents();
        if (incidents.IsEmpty()) {
            diagnosis_.Pass(Diagnosis::kEnumeration, time, remark);
        } else {
            diagnosis_.Fail(Diagnosis::kEnumeration, time,
                            Failure(Failure::kIncomplete, remark + "; " + incidents.Text()));
        }
    }

    bool Fail(Diagnosis::Check check, Clock::time_point begin, const std::string& text) {
        diagnosis_.Fail(check, Since(begin), Failure(Failure::kConnection, text));
        return false;
    }

    /// About an operation that the server may do without.
    void FailOperation(Diagnosis::Check check, std::chrono::microseconds time, const ServerFailure& failure) {
        const Failure unsupported(Failure::kServer,
                                  "not supported (" + failure.Reason().text + "); instances can be read all the same");
        diagnosis_.Fail(check, time, LacksOperation(failure.Reason()) ? unsupported : failure);
    }

    void PassLogin(std::chrono::microseconds time) {
        diagnosis_.Pass(Diagnosis::kLogin, time,
                        connection_.user.empty() ? "the server asks nobody who they are" : "as " + connection_.user);
    }

    void PassNamespace() {
        if (!diagnosis_.IsTried(Diagnosis::kNamespace)) {
            diagnosis_.Pass(Diagnosis::kNamespace, {}, connection_.nameSpace);
        }
    }

    const CommandContext& context_;
    const Plugin plugin_;
    Connection connection_;
    const ProgressWait& wait_;
    std::chrono::microseconds handshake_{};
    std::string version_; // of TLS
    std::optional<Session> session_;
    std::vector<std::string> classes_;
    Diagnosis diagnosis_;
};

/// `doctor`: what works of all that reading a server needs, and what to try where something does not. The exit status
/// is that of the first failure.
class DoctorCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"doctor",
                "Check a server step by step, and say what to try where a step fails",
                {},
                {},
                {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                "cimhttp --host server.example --tls --user reader doctor",
                kNotes};
    }

    int Run(const CommandContext& context) override {
        const Connection connection = ConnectionOf(context.options);
        const ProgressWait wait = context.MakeProgressWait();
        const Diagnosis diagnosis = Examination(context, connection, wait).Run();
        WriteListing(diagnosis.AsListing(), context.Format(*this), context);
        return diagnosis.ExitStatus();
    }
};

} // namespace

std::unique_ptr<Command> MakeDoctorCommand() { return std::make_unique<DoctorCommand>(); }

} // namespace cimhttp
