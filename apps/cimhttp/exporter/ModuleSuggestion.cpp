#include "exporter/ModuleSuggestion.h"

#include "access/PluginAccess.h"
#include "exporter/ClassMetrics.h"
#include "exporter/MetricName.h"
#include "host/ICIMClass.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"
#include "monitoring/InstanceName.h"
#include "output/InstanceProperties.h"
#include "text/WordList.h"

#include <yaml-cpp/yaml.h>

#include <cstdint>
#include <vector>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

using Declaration = boost::shared_ptr<ICIMPropertyDecl>;

/// What the metric of a number is called; the unit is only known of an instance where that tells it.
std::string NameOfNumber(const ICIMClass& cls, const Declaration& property, const PluginAccess& access) {
    const std::string stem = SnakeCase(cls.GetName(TCIMContext())) + '_' + SnakeCase(property->GetName(TCIMContext()));
    MetricUnit unit;
    try {
        const auto texts = access.TextsOf(nullptr, property, TCIMValue(std::uint32_t{1}), DisplayForm{true, false});
        const auto quantity = texts.empty() ? std::nullopt : QuantityOf("1", texts.front());
        unit = quantity ? MetricUnit::Of(quantity->unit) : unit;
    } catch (const TVYXException&) {
        // a qualifier that cannot be read is no unit
    }
    const bool hasTellers = !access.UnitTellers(cls, *property).empty();
    return MetricName(stem, unit, IsCounter(*property)) + (hasTellers ? ", with the unit that the instance tells" : "");
}

class Suggestion {
  public:
    Suggestion(const ICIMClass& cls, const PluginAccess& access) : cls_(cls), access_(access) {}

    std::string Text() {
        const std::string name = cls_.GetName(TCIMContext());
        out_ << YAML::BeginMap << YAML::Key << "modules" << YAML::Value << YAML::BeginMap;
        out_ << YAML::Key << SnakeCase(name) << YAML::Value << YAML::BeginSeq << YAML::BeginMap;
        out_ << YAML::Key << "class" << YAML::Value << name;
        WriteLabels();
        WriteMetrics();
        out_ << YAML::EndMap << YAML::EndSeq << YAML::EndMap << YAML::EndMap << YAML::Newline;
        return out_.c_str();
    }

  private:
    void WriteLabels() {
        std::vector<std::string> own;
        std::vector<std::string> all;
        for (const auto& property : PropertiesOf(cls_)) {
            if (IsKey(*property)) {
                const std::string name = property->GetName(TCIMContext());
                all.push_back(name);
                if (InstanceName::IsOwnKey(name)) {
                    own.push_back(name);
                }
            }
        }
        const std::vector<std::string>& keys = own.empty() ? all : own;
        if (!keys.empty()) {
            out_ << YAML::Key << "labels" << YAML::Value << YAML::Flow << keys;
        }
    }

    void WriteMetrics() {
        std::vector<std::string> texts;
        out_ << YAML::Key << "metrics" << YAML::Value << YAML::BeginSeq;
        for (const auto& property : PropertiesOf(cls_)) {
            const MetricKind kind = KindOf(*property, MetricRule::Type::kAsDeclared);
            const std::string name = property->GetName(TCIMContext());
            if (kind == MetricKind::kNone) {
                texts.push_back(name);
            } else if (!IsKey(*property)) {
                WriteMetric(property, name, kind);
            }
        }
        out_ << YAML::EndSeq;
        if (!texts.empty()) {
            out_ << YAML::Newline << YAML::Comment("texts, which can be labels: " + Joined(texts));
        }
    }

    void WriteMetric(const Declaration& property, const std::string& name, MetricKind kind) {
        if (kind == MetricKind::kStates) {
            std::vector<std::string> states = DeclaredStates(*property);
            out_ << YAML::BeginMap << YAML::Key << "property" << YAML::Value << name;
            if (states.empty()) {
                out_ << YAML::Key << "type" << YAML::Value << "states";
            } else {
                out_ << YAML::Key << "states" << YAML::Value << YAML::Flow << states;
            }
            out_ << YAML::EndMap;
            return;
        }
        out_ << name;
        if (kind == MetricKind::kNumber) {
            out_ << YAML::Comment(NameOfNumber(cls_, property, access_));
        }
    }

    const ICIMClass& cls_;
    const PluginAccess& access_;
    YAML::Emitter out_;
};

} // namespace

std::string SuggestedModule(const ICIMClass& cls, const PluginAccess& access) { return Suggestion(cls, access).Text(); }

} // namespace cimhttp
