#include "Commands.h"

#include "ClassCommand.h"
#include "ClassesCommand.h"
#include "CollectCommand.h"
#include "InfoCommand.h"
#include "InstancesCommand.h"

namespace cimhttp {

std::vector<std::unique_ptr<Command>> AllCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<ClassesCommand>());
    commands.push_back(std::make_unique<ClassCommand>());
    commands.push_back(std::make_unique<InstancesCommand>());
    commands.push_back(std::make_unique<CollectCommand>());
    return commands;
}

} // namespace cimhttp
