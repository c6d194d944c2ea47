#pragma once

#include "monitoring/Quantity.h"

#include <string>

namespace cimhttp {

/// A CIM name as Prometheus spells names: `AvailableSpace` becomes `available_space`, `CIM_IPProtocol`
/// `cim_ip_protocol`. What is neither a letter nor a digit of ASCII becomes an underscore.
std::string SnakeCase(const std::string& name);

bool IsMetricName(const std::string& text);

/// Whether a module may call a label so.
bool IsLabelName(const std::string& text);

/// The label by which the series of a state set differ, and that of an array's elements.
constexpr const char* kStateLabel = "state";
constexpr const char* kIndexLabel = "index";

/// The unit in which Prometheus wants numbers of a unit, and how many of these one of it is.
struct MetricUnit {
    std::string suffix; ///< `bytes`; empty for a mere number
    long double times = 1;
    long double per = 1;

    /// Bits become bytes, percent a ratio; a unit that Prometheus has no rule for keeps its name.
    static MetricUnit Of(const UnitScale& unit);

    /// A number of this unit in Prometheus' one.
    double InBase(const Quantity& quantity) const;
};

/// `cim_file_system_available_space` with the suffix of its unit, and `_total` where it counts.
std::string MetricName(const std::string& stem, const MetricUnit& unit, bool isCounter);

} // namespace cimhttp
