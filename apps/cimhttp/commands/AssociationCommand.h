#pragma once

#include "access/AssociationQuery.h"
#include "commands/Command.h"

namespace cimhttp {

/// What `associators` and `references` have in common: they ask for what associations lead to, or for the associations
/// themselves, and show instances or paths.
class AssociationCommand : public Command {
  public:
    int Run(const CommandContext& context) override;

  protected:
    explicit AssociationCommand(AssociationQuery::Wanted wanted) { query_.wanted = wanted; }

    CommandArgument PathArgument();

    /// Those that both commands have behind their own.
    std::vector<CommandOption> OptionsBehind(std::vector<CommandOption> own);

    AssociationQuery query_; ///< what the command line says

  private:
    void CheckNameOptions(const CommandContext& context) const;
    int WriteNames(const CommandContext& context);

    std::vector<std::string> properties_; ///< names, or lists of them
    bool names_ = false;                  ///< the paths alone
    bool raw_ = false;                    ///< values as they are, not as people read them
};

/// `associators PATH`: the instances at the other ends of an instance's associations.
class AssociatorsCommand : public AssociationCommand {
  public:
    AssociatorsCommand() : AssociationCommand(AssociationQuery::Wanted::kOtherEnds) {}

    CommandDescription Describe() override;
};

/// `references PATH`: the associations of an instance.
class ReferencesCommand : public AssociationCommand {
  public:
    ReferencesCommand() : AssociationCommand(AssociationQuery::Wanted::kAssociations) {}

    CommandDescription Describe() override;
};

} // namespace cimhttp
