#pragma once

#include "output/InstanceProperties.h"
#include "output/OutputFormat.h"
#include "output/ValueTexts.h"

#include <memory>
#include <string>

namespace cimhttp {

struct CommandContext;

/// What to write of instances, and how.
struct InstanceSelection {
    Properties properties;       ///< of the class that was asked for
    bool isAsked = false;        ///< they were asked for by name: a table has all of them, however narrow it gets
    bool leavesOutEmpty = false; ///< tables and lists lack the properties of which no instance has anything to show
    bool isWhole = false; ///< each instance with all properties of its own class instead, where the form can hold them
    bool isRaw = false;   ///< tables and lists show values as they are
    std::string nameSpace = {}; ///< where the paths are, unless in the namespace that everything is read from
    bool isWide = false;        ///< CSV as WideRecords() says
    bool hasClass = false;      ///< tables and lists name the class also where all instances have the same
};

/// Writes instances: a table or lists with a property a column; JSON as an array with what InstanceJson() says, one a
/// line; CSV as InstanceCsv or WideRecords() has it; MOF. JSON and CSV that is not wide have the properties in the
/// order of their names.
void WriteInstances(const Instances& instances, const InstanceSelection& selection, OutputFormat format,
                    const PluginAccess& access, const CommandContext& context);

/// Writes instances that come one after the other, in a form that needs no look at those that are still to come.
class InstanceSink {
  public:
    virtual ~InstanceSink() = default;

    virtual void Add(const Instances& instances) = 0;

    /// Writes what follows the last instance. To be called once, even when there was no instance.
    virtual void End() = 0;
};

/// The sink for a form, as WriteInstances() describes them; empty for one in which how the first instance is written
/// depends on the others: tables and lists, and wide CSV with what subclasses add. All references must outlive it.
std::unique_ptr<InstanceSink> MakeInstanceSink(const InstanceSelection& selection, OutputFormat format,
                                               const ValueTexts& texts, const CommandContext& context);

/// A sink also for tables and lists, which the first instances then shape; see TableSink. Empty for what even so must
/// be known as a whole: wide CSV with what subclasses add, tables and lists about one of several servers.
std::unique_ptr<InstanceSink> MakeGrowingSink(const InstanceSelection& selection, OutputFormat format,
                                              const ValueTexts& texts, const CommandContext& context);

/// What is said of a table that lacks them.
constexpr const char* kAddedAreLeftOut =
    "cimhttp: properties that only subclasses have are left out; -o plain shows them\n";

} // namespace cimhttp
