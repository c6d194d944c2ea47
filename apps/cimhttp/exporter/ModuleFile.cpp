#include "exporter/ModuleFile.h"

#include "exporter/MetricName.h"
#include "files/InputFile.h"
#include "files/YamlDocument.h"
#include "text/WordList.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace cimhttp {

namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 20U;

using Type = MetricRule::Type;

constexpr std::array<std::pair<const char*, Type>, 3> kTypes{
    {{"gauge", Type::kGauge}, {"counter", Type::kCounter}, {"states", Type::kStates}}};

constexpr std::array<const char*, 3> kInstanceSources{"$class", "$name", "$path"};

class Reader {
  public:
    Reader(const std::string& text, const std::string& name) : document_(text, name) {}

    Modules Read() const {
        Modules modules;
        if (!document_.Root().IsMap()) {
            document_.Fail(document_.Root(), "there are no modules: the document begins with 'modules:'");
        }
        document_.ForMembers(document_.Root(), "the document",
                             {{"modules", [&](const YAML::Node& node) { modules = ModulesIn(node); }}});
        return modules;
    }

  private:
    Modules ModulesIn(const YAML::Node& node) const {
        Modules modules;
        for (const auto& [name, classes] : document_.MembersOf(node, "modules")) {
            Module module{name, {}};
            document_.ForItems(classes, "the module " + name,
                               [&](const YAML::Node& item) { module.classes.push_back(ClassIn(item)); });
            modules.emplace(name, std::move(module));
        }
        return modules;
    }

    ClassRule ClassIn(const YAML::Node& node) const {
        ClassRule rule;
        document_.ForMembers(
            node, "a class",
            {{"class", [&](const YAML::Node& value) { rule.className = document_.Text(value, "class"); }},
             {"optional", [&](const YAML::Node& value) { rule.isOptional = document_.Truth(value, "optional"); }},
             {"labels",
              [&](const YAML::Node& value) {
                  document_.ForItems(value, "labels", [&](const YAML::Node& item) { AddLabel(item, rule.labels); });
              }},
             {"metrics", [&](const YAML::Node& value) {
                  document_.ForItems(value, "metrics",
                                     [&](const YAML::Node& item) { rule.metrics.push_back(MetricIn(item)); });
              }}});
        if (rule.className.empty()) {
            document_.Fail(node, "which class? 'class: NAME' is missing");
        }
        if (rule.metrics.empty()) {
            document_.Fail(node, rule.className + " has no metrics");
        }
        return rule;
    }

    /// `Name`, or `{mount: Root}`.
    void AddLabel(const YAML::Node& node, std::vector<LabelRule>& labels) const {
        if (node.IsMap()) {
            for (const auto& [name, source] : document_.MembersOf(node, "a label")) {
                AddLabel(node, {name, document_.Text(source, "the source of label " + name)}, labels);
            }
            return;
        }
        const std::string source = document_.Text(node, "a label");
        AddLabel(node, {SnakeCase(source.front() == '$' ? source.substr(1) : source), source}, labels);
    }

    void AddLabel(const YAML::Node& node, const LabelRule& label, std::vector<LabelRule>& labels) const {
        if (!IsLabelName(label.name)) {
            document_.Fail(node, "'" + label.name +
                                     "' cannot be the name of a label: letters, digits and underscores make one, "
                                     "without a digit or two underscores at the begin; state and index are taken");
        }
        if (label.source.front() == '$' &&
            std::find(kInstanceSources.begin(), kInstanceSources.end(), label.source) == kInstanceSources.end()) {
            document_.Fail(node, "there is no " + label.source + "; there are $class, $name and $path");
        }
        const auto isSame = [&](const LabelRule& other) { return other.name == label.name; };
        if (std::any_of(labels.begin(), labels.end(), isSame)) {
            document_.Fail(node, "there are two labels with the name " + label.name);
        }
        labels.push_back(label);
    }

    MetricRule MetricIn(const YAML::Node& node) const {
        MetricRule rule;
        if (!node.IsMap()) {
            rule.property = document_.Text(node, "a metric");
            return rule;
        }
        document_.ForMembers(
            node, "a metric",
            {{"property", [&](const YAML::Node& value) { rule.property = document_.Text(value, "property"); }},
             {"name", [&](const YAML::Node& value) { rule.name = document_.Text(value, "name"); }},
             {"help", [&](const YAML::Node& value) { rule.help = document_.Text(value, "help"); }},
             {"type", [&](const YAML::Node& value) { rule.type = TypeIn(value); }},
             {"states", [&](const YAML::Node& value) {
                  document_.ForItems(value, "states", [&](const YAML::Node& item) {
                      rule.states.push_back(document_.Text(item, "a state"));
                  });
              }}});
        if (rule.property.empty()) {
            document_.Fail(node, "which property? 'property: NAME' is missing");
        }
        if (!rule.name.empty() && !IsMetricName(rule.name)) {
            document_.Fail(node, "'" + rule.name + "' cannot be the name of a metric");
        }
        if (!rule.states.empty() && rule.type != Type::kAsDeclared && rule.type != Type::kStates) {
            document_.Fail(node, "states are for the type states");
        }
        rule.type = rule.states.empty() ? rule.type : Type::kStates;
        return rule;
    }

    Type TypeIn(const YAML::Node& node) const {
        const std::string text = document_.Text(node, "type");
        for (const auto& [name, type] : kTypes) {
            if (text == name) {
                return type;
            }
        }
        document_.Fail(node, "there is no type '" + text + "'; there are gauge, counter and states");
    }

    YamlDocument document_;
};

} // namespace

Modules ParseModules(const std::string& document, const std::string& name) { return Reader(document, name).Read(); }

Modules ReadModules(const std::string& path) { return ParseModules(InputFile(path).ReadAll(kLargestFile), path); }

Modules BuiltInModules() { return ParseModules(BuiltInModulesText(), "the modules of the program"); }

} // namespace cimhttp
