#include "ClassCommand.h"

#include <ostream>

#include "MofWriter.h"
#include "Session.h"

namespace cimhttp {

CommandDescription ClassCommand::Describe() {
    return {"class", "Show a class as MOF", {{"NAME", "The class", true, &name_}}, {}, {}, {}};
}

int ClassCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    context.output << ClassMof(*session.Class(name_));
    return 0;
}

} // namespace cimhttp
