#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/INamespaceProvider.h"
#include "host/TCIMValue.h"
#include "interop/InteropNamespace.h"
#include "output/InstanceProperties.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "output/ValueTexts.h"
#include "text/TimeText.h"
#include "text/WordList.h"

#include <chrono>
#include <optional>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;

constexpr std::chrono::seconds kProbeTimeout{5};

std::string TimeText(std::chrono::microseconds time) { return Milliseconds(time, 1) + " ms"; }

std::string ProviderText(const Plugin& plugin) {
    const auto provider = plugin.Provider();
    return provider->GetName(TCIMContext()) + ", type " + std::to_string(provider->GetType(TCIMContext()));
}

/// What was found out, each fact with a heading. Times are left out of what programs read.
class Findings {
  public:
    void Add(const char* heading, const char* name, const std::string& text) {
        AddJson(heading, name, text, JsonText(text));
    }

    /// A number; `otherwise` is what to say where there is none.
    void Add(const char* heading, const char* name, std::optional<std::size_t> number, const std::string& otherwise) {
        AddJson(heading, name, number ? std::to_string(*number) : otherwise, number ? std::to_string(*number) : "null");
    }

    /// A text; `otherwise` is what to say where it is empty.
    void Add(const char* heading, const char* name, const std::string& text, const std::string& otherwise) {
        AddJson(heading, name, text.empty() ? otherwise : text, text.empty() ? "null" : JsonText(text));
    }

    void AddUnlessEmpty(const char* heading, const char* name, const std::string& text) {
        if (!text.empty()) {
            Add(heading, name, text);
        }
    }

    void AddJson(const char* heading, const char* name, const std::string& text, const std::string& json) {
        columns_.push_back({heading});
        cells_.emplace_back(text);
        json_.Add(name, json);
    }

    void AddTime(const char* heading, const std::string& text) {
        columns_.push_back({heading});
        cells_.emplace_back(text);
    }

    Listing AsListing() const {
        Listing listing(columns_);
        listing.AddRow(cells_);
        return listing;
    }

    void WriteJson(std::ostream& output) const { output << json_.Text() << '\n'; }

  private:
    std::vector<Listing::Column> columns_;
    std::vector<Cell> cells_;
    JsonObject json_;
};

void AddTls(const TlsDetails& tls, Findings& findings) {
    findings.Add("TLS", "tls", tls.version + ", " + tls.cipher);
    findings.Add("certificate", "certificate", tls.subject);
    findings.Add("issued by", "issuer", tls.isSelfSigned ? "itself" : tls.issuer);
    findings.AddJson("names", "names", tls.names.empty() ? "none" : Joined(tls.names), JsonTexts(tls.names));
    findings.Add("valid from", "valid_from", tls.validFrom);
    findings.Add("valid until", "valid_until", tls.validUntil);
    findings.Add("SHA-256", "sha256", tls.fingerprint);
}

/// What the server says of itself, in its Interop namespace.
class SelfDescription {
  public:
    explicit SelfDescription(Session& session) : access_(session.Access()) {
        for (const std::string& name : InteropNames()) {
            try {
                const auto managers = ServerInstances(session).In(name, "CIM_ObjectManager");
                nameSpace_ = name;
                if (!managers.empty()) {
                    manager_ = managers.front();
                    return;
                }
            } catch (const RemoteError& error) {
                hasFailed_ = hasFailed_ || !SaysThatThereIsNone(error.Failure());
                attempts_.Add("CIM_ObjectManager", name, error.what());
            } catch (const LoginFailure&) {
                throw;
            } catch (const Failure& failure) { // there is no connection for this namespace
                hasFailed_ = true;
                attempts_.Add("CIM_ObjectManager", name, failure.what());
            }
        }
    }

    /// Whether a namespace that may exist could not be asked.
    bool HasFailed() const { return hasFailed_; }

    /// The path of the object manager; empty for none.
    std::string Path() const { return manager_ ? PathOf(*manager_, nameSpace_) : std::string(); }

    void AddTo(Findings& findings) const {
        findings.Add("interop", "interop", nameSpace_, "not found: " + attempts_.Text());
        if (!manager_) {
            return;
        }
        const std::string name = TextOf("ElementName");
        findings.AddUnlessEmpty("product", "product", name.empty() ? TextOf("Name") : name);
        findings.AddUnlessEmpty("version", "version", TextOf("Version"));
        findings.AddUnlessEmpty("about", "description", TextOf("Description"));
    }

  private:
    /// Empty for what the object manager does not say.
    std::string TextOf(const std::string& name) const {
        const auto property = FindProperty(*manager_, name);
        return property && !property->GetValue(TCIMContext()).IsNull()
                   ? ValueTexts(access_).Of(*manager_, *property).Joined()
                   : "";
    }

    const PluginAccess& access_;
    std::string nameSpace_;
    bool hasFailed_ = false;
    boost::shared_ptr<NQORVYX20::ICIMInstance> manager_;
    VainAttempts attempts_;
};

/// Which operations the server has, and how long they take.
class OperationTrials {
  public:
    void Add(const std::string& operation, const Session::Trial& trial) {
        if (!trial.failure) {
            Add(operation, TimeText(trial.time), "supported");
        } else if (IsUnsupported(*trial.failure)) {
            Add(operation, "not supported", "not supported");
        } else {
            hasFailed_ = true;
            Add(operation, "fails: " + trial.failure->text, "fails: " + trial.failure->text);
        }
    }

    /// Of one that the server may say that it does not have without failing.
    void Add(const std::string& operation, const Session::Trial& trial, bool isSupported) {
        if (!trial.failure && !isSupported) {
            Add(operation, "not supported", "not supported");
        } else {
            Add(operation, trial);
        }
    }

    /// `text` is for people, `state` for programs.
    void Add(const std::string& operation, const std::string& text, const std::string& state) {
        text_ += (text_.empty() ? "" : "; ") + operation + ' ' + text;
        json_.Add(operation, JsonText(state));
    }

    void AddTo(Findings& findings) const { findings.AddJson("operations", "operations", text_, json_.Text()); }

    /// Whether an operation failed that the server has.
    bool HasFailed() const { return hasFailed_; }

  private:
    bool hasFailed_ = false;
    std::string text_;
    JsonObject json_;
};

/// Asks for all classes. Their number is empty where the server does not have the operation.
Session::Trial CountClasses(Session& session, std::optional<std::size_t>& count) {
    auto trial = session.Try("the names of the classes", [&](const PluginAccess& access, auto& nameSpace) {
        count = access.ClassNames(nameSpace).size();
    });
    if (trial.failure && !IsUnsupported(*trial.failure)) {
        session.Failures().Fail("the classes of " + session.Server() + " cannot be listed", *trial.failure);
    }
    return trial;
}

/// An instance to ask about: that which describes the server, or its system. Empty where there is none.
std::string SomeInstance(Session& session, const SelfDescription& description) {
    if (!description.Path().empty()) {
        return description.Path();
    }
    try {
        const auto systems = ServerInstances(session).PathsIn(session.NamespaceName(), "CIM_ComputerSystem");
        return systems.empty() ? std::string() : systems.front().GetPath();
    } catch (const RemoteError&) {
        return {};
    } catch (const LoginFailure&) {
        throw;
    } catch (const Failure&) { // there is no connection any more, as the operations will tell
        return {};
    }
}

/// One that also tells where the connection has gone.
template <typename Ask>
Session::Trial TrialOf(Session& session, const std::string& thing, const Ask& ask) {
    try {
        return session.Try(thing, ask);
    } catch (const LoginFailure&) {
        throw;
    } catch (const Failure& failure) {
        NQORVYX20::RemoteFailure lost;
        lost.text = failure.what();
        return {{}, lost};
    }
}

void TryOperations(Session& session, const SelfDescription& description, OperationTrials& trials) {
    trials.Add("EnumerateQualifiers",
               TrialOf(session, "the qualifiers", [](const PluginAccess& access, auto& nameSpace) {
                   access.ReadQualifierDeclarations(nameSpace);
               }));
    bool hasPulls = false;
    const auto pulls =
        TrialOf(session, "whether there are pulled enumerations", [&](const PluginAccess& access, auto& nameSpace) {
            hasPulls = access.HasPulledEnumerations(nameSpace);
        });
    trials.Add("pulled enumerations", pulls, hasPulls);
    AssociationQuery query;
    query.path = SomeInstance(session, description);
    if (query.path.empty()) {
        trials.Add("AssociatorNames", "not tried, for want of an instance", "not tried");
        return;
    }
    trials.Add("AssociatorNames",
               TrialOf(session, "the associations of " + query.path,
                       [&](const PluginAccess& access, auto& nameSpace) { access.RelatedPaths(nameSpace, query); }));
}

/// `info`: the plug-in, its provider and the server.
class InfoCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"info",
                "Show the plug-in, its provider, the server, what it can do and how it is reached",
                {},
                {},
                {OutputFormat::kPlain, OutputFormat::kJson},
                "cimhttp --host server.example --tls info"};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        const Connection& target = session.Target();
        Findings findings;
        findings.Add("plug-in", "plugin", session.LoadedPlugin().Path());
        findings.Add("provider", "provider", ProviderText(session.LoadedPlugin()));
        const char* const server = context.options.server ? "url" : "server"; // which is its name among several
        findings.Add(server, server, session.Server());
        const ServerProbe probe =
            session.Access().Probe({target.host, target.Port(), kProbeTimeout},
                                   target.tls ? ServerProbe::Depth::kTls : ServerProbe::Depth::kPort);
        const bool isReached = probe.result == ServerProbe::Result::kReached;
        if (probe.tls.showsCertificate) {
            AddTls(probe.tls, findings);
        } else if (target.tls) {
            findings.Add("TLS", "tls", "could not be looked at: " + (isReached ? probe.tls.failure : "no connection"));
        }
        std::optional<std::size_t> classCount;
        const auto classes = CountClasses(session, classCount);
        findings.Add("classes", "classes", classCount, "not supported");
        const SelfDescription description(session);
        description.AddTo(findings);
        OperationTrials trials;
        trials.Add("EnumerateClassNames", classes);
        TryOperations(session, description, trials);
        trials.AddTo(findings);
        if (isReached) {
            findings.AddTime("round trip",
                             TimeText(probe.connectTime) + ", names of all classes " + TimeText(classes.time));
        }
        if (context.Format(*this) == OutputFormat::kJson) {
            findings.WriteJson(context.output);
        } else {
            WriteListing(findings.AsListing(), OutputFormat::kPlain, context);
        }
        const int status = ReportIncidents(session.TakeIncidents(), context);
        const bool isWhole =
            isReached && (probe.tls.showsCertificate || !target.tls) && !description.HasFailed() && !trials.HasFailed();
        return status == 0 && !isWhole ? Failure::kIncomplete : status;
    }
};

} // namespace

std::unique_ptr<Command> MakeInfoCommand() { return std::make_unique<InfoCommand>(); }

} // namespace cimhttp
