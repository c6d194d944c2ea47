#pragma once

#include "commands/Command.h"
#include "commands/InstanceQuery.h"
#include "commands/InstanceWriter.h"

namespace NQORVYX20 {
class TCIMReference;
} // namespace NQORVYX20

namespace cimhttp {

class InstanceReader;
class RowLimit;
class Session;

/// `instances NAME`: the instances of a class and its subclasses. A table has the properties asked for as columns, or
/// all of the class that have something to show, the keys first.
class InstancesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    UncomparedValues WriteAll(InstanceReader& reader, const InstanceQuery& query, RowLimit& limit, OutputFormat format,
                              const Session& session, const CommandContext& context) const;
    UncomparedValues WriteEach(InstanceReader& reader, const InstanceQuery& query, OutputFormat format,
                               const Session& session, const CommandContext& context) const;
    InstanceSelection SelectionOf(const Properties& properties, const InstanceQuery& query) const;
    int WriteNames(const CommandContext& context);
    void CheckNameOptions(const CommandContext& context) const;
    std::vector<NQORVYX20::TCIMReference> ReadNames(Session& session) const;

    std::string name_;
    std::vector<std::string> properties_; ///< see InstanceQuery, here and below
    std::vector<std::string> conditions_;
    std::vector<std::string> order_;
    std::optional<std::size_t> limit_; ///< see RowLimit
    bool exact_ = false;               ///< without the instances of subclasses
    bool deep_ = false;                ///< with the properties that subclasses add
    bool paths_ = false;               ///< the paths alone
    bool keys_ = false;                ///< the keys alone
    bool wide_ = false;                ///< see WideRecords()
    bool raw_ = false;                 ///< values as they are, not as people read them
};

} // namespace cimhttp
