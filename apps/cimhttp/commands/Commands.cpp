#include "commands/Commands.h"

namespace cimhttp {

std::vector<std::unique_ptr<Command>> AllCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    for (const auto make : {MakeInfoCommand,        MakeDoctorCommand,     MakeNamespacesCommand, MakeProfilesCommand,
                            MakeClassesCommand,     MakeTreeCommand,       MakeClassCommand,      MakeMethodsCommand,
                            MakeQualifiersCommand,  MakeCountCommand,      MakeInstancesCommand,  MakeInstanceCommand,
                            MakeAssociatorsCommand, MakeReferencesCommand, MakeRelatedCommand,    MakeWatchCommand,
                            MakeTopCommand,         MakeCheckCommand,      MakeBrowseCommand,     MakeExporterCommand,
                            MakeCollectCommand,     MakeConnectionCommand}) {
        commands.push_back(make());
    }
    return commands;
}

} // namespace cimhttp
