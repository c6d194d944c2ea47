#pragma once

#include "commands/Command.h"

#include <memory>
#include <vector>

namespace cimhttp {

/// Every command of the program, in the order of the help.
std::vector<std::unique_ptr<Command>> AllCommands();

// Each command is a class in a file of its name.
std::unique_ptr<Command> MakeInfoCommand();
std::unique_ptr<Command> MakeDoctorCommand();
std::unique_ptr<Command> MakeNamespacesCommand();
std::unique_ptr<Command> MakeProfilesCommand();
std::unique_ptr<Command> MakeClassesCommand();
std::unique_ptr<Command> MakeTreeCommand();
std::unique_ptr<Command> MakeClassCommand();
std::unique_ptr<Command> MakeMethodsCommand();
std::unique_ptr<Command> MakeQualifiersCommand();
std::unique_ptr<Command> MakeCountCommand();
std::unique_ptr<Command> MakeInstancesCommand();
std::unique_ptr<Command> MakeInstanceCommand();
std::unique_ptr<Command> MakeAssociatorsCommand(); // in AssociationCommand.cpp
std::unique_ptr<Command> MakeReferencesCommand();  // there, too
std::unique_ptr<Command> MakeRelatedCommand();
std::unique_ptr<Command> MakeWatchCommand();
std::unique_ptr<Command> MakeTopCommand();
std::unique_ptr<Command> MakeBrowseCommand();
std::unique_ptr<Command> MakeCheckCommand();
std::unique_ptr<Command> MakeExporterCommand();
std::unique_ptr<Command> MakeCollectCommand();
std::unique_ptr<Command> MakeConnectionCommand();

} // namespace cimhttp
