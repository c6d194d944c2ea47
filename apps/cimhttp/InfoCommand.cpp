#include "InfoCommand.h"

#include <ostream>

#include "Session.h"
#include "host/INamespaceProvider.h"
#include "host/TCIMValue.h"

namespace cimhttp {

void RunInfoCommand(Session& session, std::ostream& output) {
    const auto provider = session.LoadedPlugin().Provider();
    const auto class_count = session.ClassNames().size();
    output << "plug-in   " << session.LoadedPlugin().Path() << '\n'
           << "provider  " << provider->GetName(NQORVYX20::TCIMContext()) << ", type "
           << provider->GetType(NQORVYX20::TCIMContext()) << '\n'
           << "server    " << session.Server() << '\n'
           << "classes   " << class_count << '\n';
}

} // namespace cimhttp
