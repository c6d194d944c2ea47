#pragma once

#include "output/InstanceProperties.h"
#include "output/OutputFormat.h"

namespace cimhttp {

struct CommandContext;
class PluginAccess;

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
/// line; CSV as InstanceRecords() or WideRecords(); MOF. JSON and CSV that is not wide have the properties in the order
/// of their names.
void WriteInstances(const Instances& instances, const InstanceSelection& selection, OutputFormat format,
                    const PluginAccess& access, const CommandContext& context);

} // namespace cimhttp
