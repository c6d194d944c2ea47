#include "ClassCommand.h"

#include <ostream>

#include "MofWriter.h"
#include "Session.h"

namespace cimhttp {

void RunClassCommand(Session& session, const std::string& name, std::ostream& output) {
    output << ClassMof(*session.Class(name));
}

} // namespace cimhttp
