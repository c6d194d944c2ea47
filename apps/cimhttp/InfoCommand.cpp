#include "InfoCommand.h"

#include <ostream>

#include "Session.h"
#include "host/INamespaceProvider.h"
#include "host/TCIMValue.h"

namespace cimhttp {

CommandDescription InfoCommand::Describe() {
    return {"info", "Show the plug-in, its provider and the server", {}, {}, {}, {}};
}

int InfoCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const auto provider = session.LoadedPlugin().Provider();
    const auto class_count = session.ClassNames().size();
    context.output << "plug-in   " << session.LoadedPlugin().Path() << '\n'
                   << "provider  " << provider->GetName(NQORVYX20::TCIMContext()) << ", type "
                   << provider->GetType(NQORVYX20::TCIMContext()) << '\n'
                   << "server    " << session.Server() << '\n'
                   << "classes   " << class_count << '\n';
    return 0;
}

} // namespace cimhttp
