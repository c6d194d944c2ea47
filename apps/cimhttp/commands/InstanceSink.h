#pragma once

#include "commands/InstanceWriter.h"
#include "output/InstanceProperties.h"
#include "output/OutputFormat.h"
#include "output/ValueTexts.h"

#include <memory>

namespace cimhttp {

/// Writes instances that come one after the other, in a form that needs no look at those that are still to come.
class InstanceSink {
  public:
    virtual ~InstanceSink() = default;

    virtual void Add(const Instances& instances) = 0;
    /// Writes what stands behind the last instance. Once, also without any instance.
    virtual void End() = 0;
};

/// The sink for a form, as WriteInstances() describes them; empty for one in which how the first instance is written
/// depends on the others: tables and lists, and wide CSV with what subclasses add. All references must outlive it.
std::unique_ptr<InstanceSink> MakeInstanceSink(const InstanceSelection& selection, OutputFormat format,
                                               const ValueTexts& texts, const CommandContext& context);

} // namespace cimhttp
