#include "commands/InstanceWriter.h"

#include "Options.h"
#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "commands/ServerRecords.h"
#include "commands/ShownProperties.h"
#include "commands/TableSink.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/CsvText.h"
#include "output/InstanceCsv.h"
#include "output/InstanceJson.h"
#include "output/InstanceListing.h"
#include "output/Json.h"
#include "output/MofWriter.h"
#include "output/PropertySelector.h"
#include "output/WideRecords.h"
#include "text/Names.h"
#include "text/TextBuffer.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;

using Order = PropertySelector::Order;

PropertySelector SelectorOf(const InstanceSelection& selection, Order order) {
    return selection.isWhole ? PropertySelector(order) : PropertySelector(NamesOf(selection.properties), order);
}

class JsonSink : public InstanceSink {
  public:
    JsonSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
        : json_(SelectorOf(selection, Order::kByName), texts, selection.nameSpace),
          output_(context.output),
          lines_(context.output) {}

    void Add(const Instances& instances) override {
        for (const auto& instance : instances) {
            text_.Clear();
            json_.Append(*instance, text_);
            lines_.Next() << text_.Text();
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
    TextBuffer text_;
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

/// CSV with a property a row.
class CsvSink : public InstanceSink {
  public:
    CsvSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
        : csv_(SelectorOf(selection, Order::kByName), texts, selection.nameSpace, context.options.isOutputTerminal,
               ServerField(context)),
          context_(context) {}

    void Add(const Instances& instances) override {
        for (const auto& instance : instances) {
            csv_.Append(*instance, text_);
            if (text_.Size() >= kAtOnce) {
                Write();
            }
        }
        Write();
    }

    void End() override {
        if (!hasBegun_) {
            Write();
        }
    }

  private:
    static constexpr std::size_t kAtOnce = std::size_t{64} << 10U;

    static std::string ServerField(const CommandContext& context) {
        std::string field;
        if (context.records != nullptr) {
            AppendCsvText(context.records->Server(), context.options.isOutputTerminal, field);
            field += ',';
        }
        return field;
    }

    void Write() {
        if (context_.records != nullptr) {
            context_.records->AddCsv(InstanceCsv::Columns(), std::string(text_.Text()));
        } else {
            if (!hasBegun_) {
                WriteCsvHeadings(InstanceCsv::Columns(), context_);
            }
            context_.output << text_.Text();
        }
        hasBegun_ = true;
        text_.Clear();
    }

    InstanceCsv csv_;
    const CommandContext& context_;
    bool hasBegun_ = false;
    TextBuffer text_;
};

/// CSV with an instance a row: makes the records of a few instances at a time, so that they take little memory.
class WideCsvSink : public InstanceSink {
  public:
    WideCsvSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
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
        WriteCsv(WideRecords(instances, selection_.properties, texts_, selection_.isRaw, selection_.nameSpace),
                 !hasBegun_, context_);
        hasBegun_ = true;
    }

    const InstanceSelection& selection_;
    ValueTexts texts_;
    const CommandContext& context_;
    bool hasBegun_ = false;
};

/// Writes the instances of one call in a form for which all must be known, a function for each.
class Writer {
  public:
    Writer(const Instances& instances, const InstanceSelection& selection, const ValueTexts& texts,
           const CommandContext& context)
        : instances_(instances),
          selection_(selection),
          texts_(texts),
          context_(context),
          listing_(texts, selection.isRaw) {}

    /// With what only subclasses have, too.
    void Wide() const {
        WriteListing(WideRecords(instances_, WideColumns(), texts_, selection_.isRaw, selection_.nameSpace),
                     OutputFormat::kCsv, context_);
    }

    void Table() const {
        WriteListing(Columns(), OutputFormat::kTable, context_);
        if (selection_.isWhole && !AddedBySubclasses(instances_, selection_.properties).empty()) {
            context_.errors << kAddedAreLeftOut;
        }
    }

    void Lists() const {
        if (selection_.isWhole) {
            WholeLists();
        } else {
            WriteListing(Columns(), OutputFormat::kPlain, context_);
        }
    }

  private:
    /// Those that were asked for, or those of which there is something to show.
    Properties Shown(const Instances& instances, const Properties& properties) const {
        return selection_.leavesOutEmpty ? WithSomethingToShow(properties, instances, listing_) : properties;
    }

    bool HasClass() const { return selection_.hasClass || HaveSeveralClasses(instances_); }

    Listing Columns() const {
        return listing_.Table(instances_, Shown(instances_, selection_.properties), HasClass(), selection_.isAsked);
    }

    /// Lists with what each instance's own class has; those of one class have the same headings.
    void WholeLists() const {
        const bool hasClass = HasClass();
        const char* separator = "";
        for (auto begin = instances_.begin(); begin != instances_.end();) {
            const auto cls = (*begin)->GetClass(TCIMContext());
            const auto end = std::find_if(begin, instances_.end(), [&](const auto& instance) {
                return instance->GetClass(TCIMContext()) != cls;
            });
            const Instances ofClass(begin, end);
            context_.output << separator;
            WriteListing(listing_.Table(ofClass, Shown(ofClass, PropertiesOf(*cls)), hasClass, false),
                         OutputFormat::kPlain, context_);
            separator = "\n";
            begin = end;
        }
    }

    /// What only subclasses have comes after what their common class has.
    Properties WideColumns() const {
        Properties columns = selection_.properties;
        const Properties added = AddedBySubclasses(instances_, selection_.properties);
        columns.insert(columns.end(), added.begin(), added.end());
        return columns;
    }

    const Instances& instances_;
    const InstanceSelection& selection_;
    const ValueTexts& texts_;
    const CommandContext& context_;
    const InstanceListing listing_;
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
        if (!selection.isWide) {
            return std::make_unique<CsvSink>(selection, texts, context);
        }
        return selection.isWhole ? nullptr : std::make_unique<WideCsvSink>(selection, texts, context);
    default:
        return nullptr;
    }
}

std::unique_ptr<InstanceSink> MakeGrowingSink(const InstanceSelection& selection, OutputFormat format,
                                              const ValueTexts& texts, const CommandContext& context) {
    const bool isOneOfSeveral = context.records != nullptr; // whose rows are in one table in the end
    if (format == OutputFormat::kTable && !isOneOfSeveral) {
        return std::make_unique<TableSink>(selection, texts, context);
    }
    if (format == OutputFormat::kPlain && !isOneOfSeveral) {
        return std::make_unique<ListSink>(selection, texts, context);
    }
    return MakeInstanceSink(selection, format, texts, context);
}

void WriteInstances(const Instances& instances, const InstanceSelection& selection, OutputFormat format,
                    const PluginAccess& access, const CommandContext& context) {
    const ValueTexts texts(access, context.options.textForm);
    if (const auto sink = MakeInstanceSink(selection, format, texts, context)) {
        sink->Add(instances);
        sink->End();
        return;
    }
    const Writer writer(instances, selection, texts, context);
    if (format == OutputFormat::kCsv) {
        writer.Wide();
        return;
    }
    if (instances.empty()) {
        context.output << "no instances\n";
    } else if (format == OutputFormat::kTable) {
        writer.Table();
    } else {
        writer.Lists();
    }
}

} // namespace cimhttp
