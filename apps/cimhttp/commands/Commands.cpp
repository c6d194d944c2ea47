#include "commands/Commands.h"

#include "commands/AssociationCommand.h"
#include "commands/ClassCommand.h"
#include "commands/ClassesCommand.h"
#include "commands/CollectCommand.h"
#include "commands/ConnectionCommand.h"
#include "commands/CountCommand.h"
#include "commands/DoctorCommand.h"
#include "commands/InfoCommand.h"
#include "commands/InstanceCommand.h"
#include "commands/InstancesCommand.h"
#include "commands/MethodsCommand.h"
#include "commands/NamespacesCommand.h"
#include "commands/ProfilesCommand.h"
#include "commands/QualifiersCommand.h"
#include "commands/RelatedCommand.h"
#include "commands/TreeCommand.h"
#include "commands/WatchCommand.h"

namespace cimhttp {

std::vector<std::unique_ptr<Command>> AllCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<DoctorCommand>());
    commands.push_back(std::make_unique<NamespacesCommand>());
    commands.push_back(std::make_unique<ProfilesCommand>());
    commands.push_back(std::make_unique<ClassesCommand>());
    commands.push_back(std::make_unique<TreeCommand>());
    commands.push_back(std::make_unique<ClassCommand>());
    commands.push_back(std::make_unique<MethodsCommand>());
    commands.push_back(std::make_unique<QualifiersCommand>());
    commands.push_back(std::make_unique<CountCommand>());
    commands.push_back(std::make_unique<InstancesCommand>());
    commands.push_back(std::make_unique<InstanceCommand>());
    commands.push_back(std::make_unique<AssociatorsCommand>());
    commands.push_back(std::make_unique<ReferencesCommand>());
    commands.push_back(std::make_unique<RelatedCommand>());
    commands.push_back(std::make_unique<WatchCommand>());
    commands.push_back(std::make_unique<CollectCommand>());
    commands.push_back(std::make_unique<ConnectionCommand>());
    return commands;
}

} // namespace cimhttp
