#include "commands/InstanceWriter.h"

#include "Options.h"
#include "commands/Command.h"
#include "commands/InstanceSink.h"
#include "commands/ListingWriter.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/InstanceListing.h"
#include "output/WideRecords.h"
#include "text/Names.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;

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
        if (selection_.isWhole && !AddedBySubclasses().empty()) {
            context_.errors << "cimhttp: properties that only subclasses have are left out; -o plain shows them\n";
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
        Properties shown;
        std::copy_if(properties.begin(), properties.end(), std::back_inserter(shown), [&](const auto& property) {
            return !selection_.leavesOutEmpty || !listing_.IsEmpty(instances, *property);
        });
        return shown;
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

    /// What only subclasses have stands behind what their common class has.
    Properties WideColumns() const {
        Properties columns = selection_.properties;
        const Properties added = AddedBySubclasses();
        columns.insert(columns.end(), added.begin(), added.end());
        return columns;
    }

    Properties AddedBySubclasses() const {
        NameSet selected;
        for (const auto& property : selection_.properties) {
            selected.insert(property->GetName(TCIMContext()));
        }
        const Properties all = PropertiesOf(instances_);
        Properties added;
        std::copy_if(all.begin(), all.end(), std::back_inserter(added),
                     [&](const auto& property) { return selected.count(property->GetName(TCIMContext())) == 0; });
        return added;
    }

    const Instances& instances_;
    const InstanceSelection& selection_;
    const ValueTexts& texts_;
    const CommandContext& context_;
    const InstanceListing listing_;
};

} // namespace

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
