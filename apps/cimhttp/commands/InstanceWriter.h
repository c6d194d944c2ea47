#pragma once

#include <boost/shared_ptr.hpp>

#include <vector>

#include "output/InstanceListing.h"
#include "output/OutputFormat.h"

namespace cimhttp {

struct CommandContext;
class PluginAccess;

/// What to write of instances, and how.
struct InstanceSelection {
    std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>> properties;
    bool leaves_out_empty; ///< tables and lists lack the properties that have no value in any instance
    bool is_raw;           ///< tables and lists show values as they are
};

/// Writes instances of one class: a table or lists with a property a column; JSON as an array with what InstanceJson()
/// says, one a line; CSV with a record for each property; MOF. JSON and CSV have the value and its text beside each
/// other and the properties in the order of their names.
void WriteInstances(const Instances& instances, const InstanceSelection& selection, OutputFormat format,
                    const PluginAccess& access, const CommandContext& context);

} // namespace cimhttp
