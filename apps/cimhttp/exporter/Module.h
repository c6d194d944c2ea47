#pragma once

#include <map>
#include <string>
#include <vector>

namespace cimhttp {

/// How a property becomes a metric.
struct MetricRule {
    enum class Type {
        kAsDeclared, ///< what the qualifiers and the type of the property say
        kGauge,
        kCounter,
        kStates ///< a series for each text of its value map: 1 for those that the property has, 0 for the others
    };

    std::string property;
    Type type = Type::kAsDeclared;
    std::string name = {};                ///< of the metric without unit; empty: from class and property
    std::string help = {};                ///< empty: the class and the property
    std::vector<std::string> states = {}; ///< the only ones to tell apart, all others are `other`; none: all
};

/// A label, and where its value comes from: a property, or `$class`, `$name` or `$path` of the instance.
struct LabelRule {
    std::string name;
    std::string source;
};

/// Which metrics the instances of a class and its subclasses give.
struct ClassRule {
    std::string className;
    bool isOptional = false;       ///< a server without the class is all right
    std::vector<LabelRule> labels; ///< none: the keys that tell one instance of a system from another
    std::vector<MetricRule> metrics;
};

/// What one scrape reads from a server.
struct Module {
    std::string name;
    std::vector<ClassRule> classes;
};

using Modules = std::map<std::string, Module>;

} // namespace cimhttp
