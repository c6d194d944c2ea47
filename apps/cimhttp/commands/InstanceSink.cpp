#include "commands/InstanceSink.h"

#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "output/InstanceJson.h"
#include "output/InstanceRecords.h"
#include "output/Json.h"
#include "output/MofWriter.h"
#include "output/PropertySelector.h"
#include "output/ValueTexts.h"
#include "output/WideRecords.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <string>

namespace cimhttp {

namespace {

using Order = PropertySelector::Order;

PropertySelector SelectorOf(const InstanceSelection& selection, Order order) {
    return selection.isWhole ? PropertySelector(std::nullopt, order)
                             : PropertySelector(NamesOf(selection.properties), order);
}

class JsonSink : public InstanceSink {
  public:
    JsonSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
        : json_(SelectorOf(selection, Order::kByName), texts, selection.nameSpace),
          output_(context.output),
          lines_(context.output) {}

    void Add(const Instances& instances) override {
        for (const auto& instance : instances) {
            text_.clear();
            json_.Append(*instance, text_);
            lines_.Next() << text_;
        }
    }

    void End() override {
        lines_.End();
        output_ << '\n';
    }

  private:
    InstanceJson json_;
    std::ostream& output_;
    JsonLines lines_;
    std::string text_;
};

class MofSink : public InstanceSink {
  public:
    MofSink(const InstanceSelection& selection, const CommandContext& context)
        : selector_(SelectorOf(selection, Order::kGiven)), output_(context.output) {}

    void Add(const Instances& instances) override {
        for (const auto& instance : instances) {
            output_ << separator_ << InstanceMof(*instance, selector_.PropertiesFor(*instance));
            separator_ = "\n";
        }
    }

    void End() override {}

  private:
    PropertySelector selector_;
    std::ostream& output_;
    const char* separator_ = "";
};

/// Makes the records of a few instances at a time, so that they take little memory.
class CsvSink : public InstanceSink {
  public:
    CsvSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
        : selection_(selection), texts_(texts), context_(context) {}

    void Add(const Instances& instances) override {
        for (auto begin = instances.begin(); begin != instances.end();) {
            const auto end = begin + std::min<std::ptrdiff_t>(kAtOnce, instances.end() - begin);
            Write(Instances(begin, end));
            begin = end;
        }
    }

    void End() override {
        if (!hasBegun_) {
            Write({});
        }
    }

  private:
    static constexpr std::ptrdiff_t kAtOnce = 64;

    void Write(const Instances& instances) {
        WriteCsv(selection_.isWide
                     ? WideRecords(instances, selection_.properties, texts_, selection_.isRaw, selection_.nameSpace)
                     : InstanceRecords(instances, SelectorOf(selection_, Order::kByName), texts_, selection_.nameSpace),
                 !hasBegun_, context_);
        hasBegun_ = true;
    }

    const InstanceSelection& selection_;
    ValueTexts texts_;
    const CommandContext& context_;
    bool hasBegun_ = false;
};

} // namespace

std::unique_ptr<InstanceSink> MakeInstanceSink(const InstanceSelection& selection, OutputFormat format,
                                               const ValueTexts& texts, const CommandContext& context) {
    switch (format) {
    case OutputFormat::kJson:
        return std::make_unique<JsonSink>(selection, texts, context);
    case OutputFormat::kMof:
        return std::make_unique<MofSink>(selection, context);
    case OutputFormat::kCsv:
        return selection.isWide && selection.isWhole ? nullptr : std::make_unique<CsvSink>(selection, texts, context);
    default:
        return nullptr;
    }
}

} // namespace cimhttp
