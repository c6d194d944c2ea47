#include "CollectCommand.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <ostream>
#include <system_error>

#include "Collection.h"
#include "Connection.h"
#include "Failure.h"
#include "Options.h"
#include "OutputFile.h"
#include "ProgressBar.h"
#include "Session.h"

namespace cimhttp {

namespace {

constexpr const char* kHelp =
    R"(The document names the server and the classes:

    <vyx version="1">
        <network address="server.example"/>
        <network user="operator"/>
        <network pass="secret"/>
        <network ssl="true"/>
        <class name="CIM_ComputerSystem"/>
    </vyx>

ssl is true, 1, yes or on for HTTPS. What --host, --tls, --user and
--password-file say counts more than the document, and a --user takes no
password from it. The password stands there in plain text: let only its owner
read the file (chmod 600), or leave it out and use --password-file or the
variable CIMHTTP_PASSWORD.

The exit status is 7 when a class could not be read: the error stream names it,
the others are written, and "complete" is false.)";

RequestedClasses ReadDocument(const Plugin& plugin, const std::string& path) {
    if (::access(path.c_str(), R_OK) != 0) {
        throw Failure(Failure::kUsage, path + " cannot be read: " + std::generic_category().message(errno));
    }
    auto requested = plugin.Access().ReadRequestedClasses(path);
    if (!requested.error.empty()) {
        throw Failure(Failure::kUsage, path + ", " + requested.error);
    }
    if (requested.names.empty()) {
        throw Failure(Failure::kUsage, path + " names no class");
    }
    return requested;
}

/// Each name once, in the order of their first places; case does not tell class names apart (DSP0004 5.1.2.1).
std::vector<std::string> WithoutRepetitions(const std::vector<std::string>& names) {
    std::vector<std::string> distinct;
    for (const std::string& name : names) {
        const bool is_known = std::any_of(distinct.begin(), distinct.end(), [&](const std::string& other) {
            return ::strcasecmp(name.c_str(), other.c_str()) == 0;
        });
        if (!is_known) {
            distinct.push_back(name);
        }
    }
    return distinct;
}

/// Reads one class after the other. The result is complete or lacks the classes that `errors` names.
Collection Collect(Session& session, const std::vector<std::string>& names, bool shows_progress, std::ostream& errors) {
    Collection collection{session.Server(), true, {}};
    ProgressBar bar(shows_progress ? &errors : nullptr, names.size());
    std::size_t instance_count = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        bar.Show(i, instance_count);
        try {
            const auto cls = session.Class(names[i]);
            collection.classes.push_back({cls, session.Instances(*cls, false)});
            instance_count += collection.classes.back().instances.size();
        } catch (const Failure& failure) {
            bar.Clear();
            errors << "cimhttp: " << failure.what() << std::endl;
            collection.complete = false;
        }
    }
    return collection;
}

} // namespace

CommandDescription CollectCommand::Describe() {
    return {"collect",
            "Write the classes that a document names, with all instances, as JSON",
            {{"FILE", "The requested-class document", true, &document_}},
            {{"--out", "FILE", "The file to write or replace; the standard output without it", &out_file_}},
            {},
            kHelp};
}

int CollectCommand::Run(const CommandContext& context) {
    const Options& options = context.options;
    const Plugin plugin(options.plugin);
    const auto requested = ReadDocument(plugin, document_);
    const Connection connection = ConnectionOf(options, requested.settings, document_);
    const auto file = out_file_.empty() ? std::nullopt : std::optional<OutputFile>(out_file_);
    Session session = context.ConnectTo(plugin, connection);
    const bool shows_progress = options.is_error_stream_terminal && !options.log_level;
    const Collection collection = Collect(session, WithoutRepetitions(requested.names), shows_progress, context.errors);
    const auto write = [&](std::ostream& stream) { WriteJson(collection, plugin.Access(), stream); };
    if (file) {
        file->Replace(write);
    } else {
        write(context.output);
    }
    return collection.complete ? 0 : Failure::kIncomplete;
}

} // namespace cimhttp
