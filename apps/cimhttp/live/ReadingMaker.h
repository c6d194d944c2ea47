#pragma once

#include "cimhttp/DisplayTexts.h"
#include "live/CounterRates.h"
#include "live/LiveReading.h"
#include "output/InstanceProperties.h"
#include "output/ValueTexts.h"

namespace cimhttp {

class PluginAccess;

/// Makes readings for the live view of instances, in the order in which these were read.
class ReadingMaker {
  public:
    /// `access` must outlive the object. With `isAsked`, the properties were asked for by name.
    ReadingMaker(const PluginAccess& access, NQORVYX20::DisplayForm form, bool isAsked)
        : texts_(access, form), exact_(access, NQORVYX20::DisplayForm{true, false}), isAsked_(isAsked) {}

    LiveReading Make(const Properties& properties, const Instances& instances, CounterRates::Time time);

  private:
    LiveColumn ColumnOf(const NQORVYX20::ICIMPropertyDecl& property) const;
    LiveCell CellOf(const NQORVYX20::ICIMInstance& instance, const std::string& path, const LiveColumn& column);
    void AddNumber(const NQORVYX20::ICIMInstance& instance, const NQORVYX20::ICIMProperty& property,
                   const std::string& path, const LiveColumn& column, LiveCell& cell);

    ValueTexts texts_;
    ValueTexts exact_;
    bool isAsked_;
    CounterRates rates_;
};

} // namespace cimhttp
