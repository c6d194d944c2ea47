#include "Commands.h"

#include "ClassCommand.h"
#include "ClassesCommand.h"
#include "CollectCommand.h"
#include "ConnectionCommand.h"
#include "InfoCommand.h"
#include "InstanceCommand.h"
#include "InstancesCommand.h"
#include "MethodsCommand.h"
#include "QualifiersCommand.h"
#include "TreeCommand.h"
#include "WatchCommand.h"

namespace cimhttp {

std::vector<std::unique_ptr<Command>> AllCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<ClassesCommand>());
    commands.push_back(std::make_unique<TreeCommand>());
    commands.push_back(std::make_unique<ClassCommand>());
    commands.push_back(std::make_unique<MethodsCommand>());
    commands.push_back(std::make_unique<QualifiersCommand>());
    commands.push_back(std::make_unique<InstancesCommand>());
    commands.push_back(std::make_unique<InstanceCommand>());
    commands.push_back(std::make_unique<WatchCommand>());
    commands.push_back(std::make_unique<CollectCommand>());
    commands.push_back(std::make_unique<ConnectionCommand>());
    return commands;
}

} // namespace cimhttp
