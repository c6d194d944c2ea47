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

bool RunCollectCommand(const Plugin& plugin, const Options& options, FailureLog& log, std::ostream& output,
                       std::ostream& errors) {
    const auto requested = ReadDocument(plugin, options.name);
    const Connection connection = ConnectionOf(options, requested.settings, options.name);
    const auto file = options.out_file.empty() ? std::nullopt : std::optional<OutputFile>(options.out_file);
    Session session(plugin, connection, log);
    const bool shows_progress = options.is_error_stream_terminal && !options.log_level;
    const Collection collection = Collect(session, WithoutRepetitions(requested.names), shows_progress, errors);
    const auto write = [&](std::ostream& stream) { WriteJson(collection, plugin.Access(), stream); };
    if (file) {
        file->Replace(write);
    } else {
        write(output);
    }
    return collection.complete;
}

} // namespace cimhttp
