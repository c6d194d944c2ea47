#include "commands/InfoCommand.h"

#include <chrono>
#include <cstdio>
#include <ostream>

#include "Options.h"
#include "connection/ServerProbe.h"
#include "connection/Session.h"
#include "host/INamespaceProvider.h"
#include "host/TCIMValue.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "output/TextList.h"

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;
using Clock = std::chrono::steady_clock;

std::string Milliseconds(std::chrono::microseconds time) {
    constexpr double kMicrosecondsPerMillisecond = 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(time.count()) / kMicrosecondsPerMillisecond);
    return text;
}

std::string ProviderText(const Plugin& plugin) {
    const auto provider = plugin.Provider();
    return provider->GetName(TCIMContext()) + ", type " + std::to_string(provider->GetType(TCIMContext()));
}

/// What there is to say, each with a heading. Times are no part of what other programs read.
class Findings {
  public:
    void Add(const char* heading, const char* name, const std::string& text) {
        columns_.push_back({heading});
        cells_.emplace_back(text);
        json_.Add(name, JsonText(text));
    }

    void Add(const char* heading, const char* name, std::size_t number) {
        columns_.push_back({heading});
        cells_.emplace_back(std::to_string(number));
        json_.Add(name, std::to_string(number));
    }

    void AddTime(const char* heading, const std::string& text) {
        columns_.push_back({heading});
        cells_.emplace_back(text);
    }

    void WriteList(const TextStyle& style, std::ostream& output) const {
        Listing listing(columns_);
        listing.AddRow(cells_);
        WriteLists(listing, style, output);
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
    findings.Add("issued by", "issuer", tls.is_self_signed ? "itself" : tls.issuer);
    findings.Add("valid until", "valid_until", tls.valid_until);
    findings.Add("SHA-256", "sha256", tls.fingerprint);
}

} // namespace

CommandDescription InfoCommand::Describe() {
    return {"info",
            "Show the plug-in, its provider, the server and how it is reached",
            {},
            {},
            {OutputFormat::kPlain, OutputFormat::kJson},
            "cimhttp --host server.example --tls info"};
}

int InfoCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const Connection& target = session.Target();
    Findings findings;
    findings.Add("plug-in", "plugin", session.LoadedPlugin().Path());
    findings.Add("provider", "provider", ProviderText(session.LoadedPlugin()));
    findings.Add("server", "server", session.Server());
    const auto probe = ProbeServer(target.host, target.Port(), target.tls);
    if (probe && probe->tls) {
        AddTls(*probe->tls, findings);
    } else if (target.tls) {
        findings.Add("TLS", "tls", "could not be looked at: " + (probe ? probe->tls_failure : "no connection"));
    }
    const auto begin = Clock::now();
    findings.Add("classes", "classes", session.ClassNames().size());
    const auto answer_time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    if (probe) {
        findings.AddTime("round trip",
                         Milliseconds(probe->round_trip) + ", names of all classes " + Milliseconds(answer_time));
    }
    if (context.Format(*this) == OutputFormat::kJson) {
        findings.WriteJson(context.output);
    } else {
        findings.WriteList({context.options.width, context.options.uses_color}, context.output);
    }
    return 0;
}

} // namespace cimhttp
