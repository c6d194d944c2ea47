#include "Failure.h"
#include "Options.h"
#include "commands/Collection.h"
#include "commands/CollectionReport.h"
#include "commands/Collector.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "commands/FleetReading.h"
#include "commands/Remarks.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "files/Spool.h"
#include "fleet/ServerFile.h"
#include "fleet/SinkStream.h"
#include "output/Json.h"
#include "text/Names.h"
#include "text/TerminalText.h"
#include "waiting/Interrupt.h"
#include "waiting/StatusLine.h"

#include <chrono>
#include <cstdlib>
#include <optional>
#include <ostream>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt
constexpr std::chrono::milliseconds kGrace{300};        // for the class that is being read, after an interrupt

constexpr std::size_t kLargestDocument = std::size_t{16} << 20U; // what the parser takes

constexpr const char* kNotes =
    R"(The document names the server and the classes:

    <vyx version="1">
        <network address="server.example"/>
        <network user="operator"/>
        <network pass="secret"/>
        <network ssl="true"/>
        <class name="CIM_ComputerSystem"/>
    </vyx>

ssl is true, 1, yes or on for HTTPS. Further settings are port, namespace, and
ca, the file or folder with the authorities that the server is verified by. Each
network element has one setting. What the command line says counts more than the
document; a --host takes no port from it, and a --user no password. The password
stands there in plain text: let only its owner read the file (chmod 600), or
leave it out and use --password-file or the variable CIMHTTP_PASSWORD.

A class has its instances and those of its subclasses, each with all properties
of its own class.

The exit status is 7 when a class could not be read: the error stream names it,
the others are written, and "complete" is false. So it is when a value could not
be taken over, and after an interrupt (Ctrl-C): the classes read until then are
written. A server that stops answering is asked for no further class.

Of several servers, each has one line of JSON, {"server": ..., "url": ...,
"classes": ..., "complete": ...}; that of one that failed has the member "failure".
With {server} in the name of --out, each has a file of its own, which stays as
it was when the server fails.)";

/// A status line that shows how far the reading of classes has come, how long it has taken and how long it may still
/// take.
class ProgressBar {
  public:
    /// See StatusLine.
    ProgressBar(std::ostream* terminal, std::size_t width, std::size_t classCount)
        : line_(terminal, width), classCount_(classCount) {}

    /// How many classes are done, how many instances were in them, and the time since the begin.
    void Show(std::size_t classesDone, std::size_t instances, std::chrono::seconds elapsed) {
        const std::size_t filled = classCount_ == 0 ? kBarWidth : kBarWidth * classesDone / classCount_;
        std::string text = '[' + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                           std::to_string(classesDone) + " of " + std::to_string(classCount_) + " classes, " +
                           std::to_string(instances) + " instances, " + ElapsedText(elapsed);
        if (classesDone > 0 && classesDone < classCount_) {
            const auto left = elapsed * (classCount_ - classesDone) / classesDone;
            text += ", about " + ElapsedText(std::chrono::duration_cast<std::chrono::seconds>(left)) + " left";
        }
        line_.Show(text);
    }

    /// Takes the bar away, so that other lines can be written, until it is shown again.
    void Clear() { line_.Clear(); }

  private:
    static constexpr std::size_t kBarWidth = 24;

    StatusLine line_;
    std::size_t classCount_;
};

RequestedClasses ReadDocument(const Plugin& plugin, const std::string& path) {
    auto requested = plugin.Access().ReadRequestedClasses(InputFile(path).ReadAll(kLargestDocument));
    if (!requested.error.empty()) {
        throw Failure(Failure::kUsage, path + ", " + requested.error);
    }
    if (requested.names.empty()) {
        throw Failure(Failure::kUsage, path + " names no class");
    }
    return requested;
}

/// What could not be read, a line each, as the error stream says it.
using Losses = std::vector<std::string>;

void ReportLosses(const Losses& losses, std::ostream& errors) {
    for (const std::string& loss : losses) {
        errors << "cimhttp: " << Printable(loss) << std::endl;
    }
}

void ReportFailures(Collector& collector, ProgressBar& bar, std::ostream& errors, Losses& losses) {
    const auto failures = collector.TakeFailures();
    if (!failures.empty()) {
        bar.Clear();
    }
    ReportLosses(failures, errors);
    losses.insert(losses.end(), failures.begin(), failures.end());
}

/// Waits until everything is read, or the user does not want to wait any more: that is when Interrupted() is true.
/// Returns whether the collector has ended.
bool Watch(Collector& collector, std::size_t classCount, const CommandContext& context, Losses& losses) {
    std::ostream& errors = context.errors;
    ProgressBar bar(context.ShowsProgress() ? &errors : nullptr, context.options.errorStreamWidth, classCount);
    const auto begin = std::chrono::steady_clock::now();
    Collector::Progress progress;
    while (!progress.hasEnded && !Interrupted()) {
        bar.Show(progress.classesDone, progress.instances,
                 std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin));
        progress = collector.Wait(kLookInterval);
        ReportFailures(collector, bar, errors, losses);
    }
    if (!progress.hasEnded) {
        collector.Stop();
        progress = collector.Wait(kGrace);
        ReportFailures(collector, bar, errors, losses);
    }
    return progress.hasEnded;
}

/// Waits until everything is read of one of several servers, whose time is bounded.
Losses AwaitEnd(Collector& collector, std::ostream& errors) {
    while (!collector.Wait(kLookInterval).hasEnded) {
    }
    Losses losses = collector.TakeFailures();
    ReportLosses(losses, errors);
    return losses;
}

/// The line of a server of which nothing is there.
std::string LineOfFailed(const ServerOutcome& outcome) {
    return JsonObject()
               .Add("server", JsonText(outcome.records.Server()))
               .Add("classes", "[]")
               .Add("complete", "false")
               .Add("failure", JsonText(outcome.failure))
               .Text() +
           '\n';
}

void WriteLines(ServerOutcome& outcome, std::ostream& output) {
    for (const auto& part : outcome.records.Take()) {
        part.text.WriteTo(output);
        output << '\n';
    }
    if (!outcome.failure.empty()) {
        output << LineOfFailed(outcome);
    }
}

/// Says why the reading has ended before the last class. Throws that when nothing was read.
void ReportEarlyEnd(const Collector& collector, const Collection& collection, std::ostream& errors, Losses& losses) {
    const std::size_t known = losses.size();
    if (const auto end = collector.EarlyEnd()) {
        if (collection.classes.empty()) {
            throw Failure(*end);
        }
        losses.insert(losses.end(), {end->what(), "the classes after it are not asked for"});
    }
    if (Interrupted() && !collection.complete && !collection.isOneOfSeveral) {
        losses.push_back("interrupted; what was read of " + collection.server + " is written");
    }
    ReportLosses({losses.begin() + static_cast<std::ptrdiff_t>(known), losses.end()}, errors);
}

void Write(const Collection& collection, const std::optional<OutputFile>& file, std::ostream& output) {
    const auto write = [&](std::ostream& stream) { WriteJson(collection, stream); };
    if (file) {
        file->Replace(write);
    } else {
        write(output);
        output.flush();
    }
}

void WritePage(const Collection& collection, const Losses& losses, const OutputFile& file) {
    file.Replace([&](std::ostream& stream) { WriteReport(collection, losses, stream); });
}

Losses WithIncidents(Losses losses, const Collector& collector) {
    const IncidentTally incidents = collector.Incidents();
    if (!incidents.IsEmpty()) {
        losses.push_back(incidents.Text());
    }
    return losses;
}

/// `collect FILE`: connects as a requested-class document and the options say, reads the classes that the document
/// names with all their instances, and writes one JSON document to the output or to a file, or a page for a browser.
/// The error stream gets one line for each class that cannot be read, and shows the progress on a terminal. The exit
/// status tells when a class is missing.
class CollectCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "collect",
            "Write the classes that a document names, with all instances, as JSON or as a page",
            {{"FILE", "The requested-class document", true, &document_}},
            {{"--out", "FILE",
              "The file to write or replace; the standard output without it. With {server} in its name, a file for "
              "each of several servers",
              &outFile_},
             {"--html", "FILE",
              "A page for a browser to write or replace, with everything in it, instead of the JSON; beside it with "
              "--out. With {server} in its name, a file for each of several servers",
              &pageFile_}},
            {OutputFormat::kJson},
            "cimhttp --host server.example collect requested.xml --out collected.json",
            kNotes};
    }

    int Run(const CommandContext& context) override {
        if (context.options.server) {
            return CollectOneOfSeveral(context);
        }
        const Plugin plugin(context.options.plugin);
        const auto requested = ReadDocument(plugin, document_);
        const Connection connection = ConnectionOf(context.options, requested.settings, document_);
        const auto file = FileNamed(outFile_);
        const auto page = FileNamed(pageFile_);
        const auto names = DistinctNames(requested.names);
        const Session session = context.ConnectTo(plugin, connection);
        const InterruptScope interrupts;
        Collector collector(session, names, {context.options.textForm, page.has_value(), {}});
        Losses losses;
        const bool hasEnded = Watch(collector, names.size(), context, losses);
        const Collection collection = collector.Collected();
        ReportEarlyEnd(collector, collection, context.errors, losses);
        if (file || !page) {
            Write(collection, file, context.output);
        }
        if (page) {
            WritePage(collection, WithIncidents(losses, collector), *page);
        }
        ReportIncidents(collector.Incidents(), context);
        if (!hasEnded) {
            std::_Exit(Failure::kIncomplete); // the thread that waits for the server cannot be ended otherwise
        }
        return collection.complete ? 0 : Failure::kIncomplete;
    }

    /// A file for each server, or one, or the output, with a line for each.
    int RunForFleet(const FleetContext& context) override {
        ReadDocument(Plugin(context.options.plugin), document_); // complains once
        CheckPagesOf(context);
        if (!pageFile_.empty() && outFile_.empty()) {
            return ReadFleet(*this, context, OutputFormat::kJson, [](ServerOutcome&) {});
        }
        if (IsServerFilePattern(outFile_)) {
            return CollectIntoFiles(context);
        }
        if (outFile_.empty()) {
            return ReadFleet(*this, context, OutputFormat::kJson,
                             [&](ServerOutcome& outcome) { WriteLines(outcome, context.output); });
        }
        const OutputFile file(outFile_);
        Spool spool; // until the last server is there, the file stays as it was
        bool hasAny = false;
        SinkStream lines([&](std::string_view text) { spool.Append(text); });
        const int status = ReadFleet(*this, context, OutputFormat::kJson, [&](ServerOutcome& outcome) {
            hasAny = hasAny || !outcome.hasFailed;
            WriteLines(outcome, lines);
        });
        if (hasAny) {
            file.Replace([&](std::ostream& output) { spool.CopyTo(output); });
        }
        return status;
    }

  private:
    static std::optional<OutputFile> FileNamed(const std::string& name) {
        return name.empty() ? std::nullopt : std::optional<OutputFile>(name);
    }

    /// Complains before anything is read.
    void CheckPagesOf(const FleetContext& context) const {
        if (pageFile_.empty()) {
            return;
        }
        if (!IsServerFilePattern(pageFile_)) {
            throw Failure(Failure::kUsage,
                          "--html needs {server} in the file's name: each of several servers has a page of its own");
        }
        for (const FleetServer& server : context.servers) {
            const OutputFile file(ServerFile(pageFile_, server.name));
        }
    }

    int CollectIntoFiles(const FleetContext& context) {
        for (const FleetServer& server : context.servers) {
            const OutputFile file(ServerFile(outFile_, server.name)); // complains before anything is read
        }
        return ReadFleet(*this, context, OutputFormat::kJson, [&](ServerOutcome& outcome) {
            if (outcome.failure.empty()) {
                OutputFile(ServerFile(outFile_, outcome.records.Server())).Replace([&](std::ostream& output) {
                    WriteLines(outcome, output);
                });
            }
        });
    }

    int CollectOneOfSeveral(const CommandContext& context) {
        const Plugin plugin(context.options.plugin);
        const auto requested = ReadDocument(plugin, document_);
        const Session session = context.ConnectTo(plugin, ConnectionOf(context.options, requested.settings, document_));
        Collector collector(session, DistinctNames(requested.names),
                            {context.options.textForm, !pageFile_.empty(), context.options.server});
        Losses losses = AwaitEnd(collector, context.errors);
        Collection collection = collector.Collected();
        collection.isOneOfSeveral = true;
        ReportEarlyEnd(collector, collection, context.errors, losses);
        WriteJson(collection, context.output);
        if (!pageFile_.empty()) {
            WritePage(collection, WithIncidents(losses, collector),
                      OutputFile(ServerFile(pageFile_, *context.options.server)));
        }
        ReportIncidents(collector.Incidents(), context);
        return collection.complete ? 0 : Failure::kIncomplete;
    }

    std::string document_;
    std::string outFile_;  ///< empty for the output
    std::string pageFile_; ///< empty for none
};

} // namespace

std::unique_ptr<Command> MakeCollectCommand() { return std::make_unique<CollectCommand>(); }

} // namespace cimhttp
