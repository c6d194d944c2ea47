#include "commands/TableSink.h"

#include "Options.h"
#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "commands/ShownProperties.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "text/WordList.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>

namespace cimhttp {

using NQORVYX20::TCIMContext;

namespace {

constexpr std::ptrdiff_t kAtOnce = 64; // rows that are made together

} // namespace

TableSink::TableSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
    : selection_(selection), texts_(texts), context_(context), listing_(texts, selection.isRaw) {}

void TableSink::Add(const Instances& instances) {
    if (table_) {
        AddLater(instances);
        return;
    }
    first_.insert(first_.end(), instances.begin(), instances.end());
    if (first_.size() > kLookedAt) {
        Begin();
    }
}

void TableSink::Begin() {
    const Instances later(first_.begin() + kLookedAt, first_.end());
    first_.resize(kLookedAt);
    shown_ = selection_.leavesOutEmpty ? WithSomethingToShow(selection_.properties, first_, listing_)
                                       : selection_.properties;
    std::copy_if(
        selection_.properties.begin(), selection_.properties.end(), std::back_inserter(hidden_),
        [&](const auto& property) { return std::find(shown_.begin(), shown_.end(), property) == shown_.end(); });
    hasClass_ = selection_.hasClass || HaveSeveralClasses(first_);
    NoteWhatIsNotShown(first_);
    table_ =
        std::make_unique<GrowingTable>(listing_.Table(first_, shown_, hasClass_, selection_.isAsked),
                                       TextStyle{context_.options.width, context_.options.usesColor}, context_.output);
    first_.clear();
    AddLater(later);
}

void TableSink::AddLater(const Instances& instances) {
    for (auto begin = instances.begin(); begin != instances.end();) {
        const auto end = begin + std::min(kAtOnce, instances.end() - begin);
        const Instances some(begin, end);
        NoteWhatIsNotShown(some);
        table_->Add(listing_.Table(some, shown_, hasClass_, selection_.isAsked));
        begin = end;
    }
}

void TableSink::NoteWhatIsNotShown(const Instances& instances) {
    const auto isMissed = [&](const auto& property) { return !listing_.IsEmpty(instances, *property); };
    const auto missed =
        std::stable_partition(hidden_.begin(), hidden_.end(), [&](const auto& p) { return !isMissed(p); });
    std::for_each(missed, hidden_.end(),
                  [&](const auto& property) { missed_.push_back(property->GetName(TCIMContext())); });
    hidden_.erase(missed, hidden_.end());
    for (const auto& instance : instances) {
        if (classes_.insert(ClassNameOf(*instance)).second && selection_.isWhole) {
            lacksAdded_ = lacksAdded_ || !AddedBySubclasses({instance}, selection_.properties).empty();
        }
    }
    lacksClass_ = !hasClass_ && classes_.size() > 1;
}

void TableSink::SayWhatIsNotShown() const {
    SayWhatIsLeftOut(table_->Omissions(), "plain", context_);
    const std::string after = " after the first " + std::to_string(kLookedAt) + " instances";
    if (!missed_.empty()) {
        context_.errors << "cimhttp: columns are left out that have values only" << after << ": " << Joined(missed_)
                        << "; -o plain shows all\n";
    }
    if (lacksClass_) {
        context_.errors << "cimhttp: other classes come" << after
                        << ", and the table does not say which; -o plain does\n";
    }
    if (lacksAdded_) {
        context_.errors << kAddedAreLeftOut;
    }
}

void TableSink::End() {
    if (table_) {
        SayWhatIsNotShown();
    } else {
        WriteInstances(first_, selection_, OutputFormat::kTable, texts_.Access(), context_);
    }
}

void ListSink::Add(const Instances& instances) {
    for (const auto& instance : instances) {
        if (waiting_.size() == TableSink::kLookedAt) {
            Write();
        }
        waiting_.push_back(instance);
    }
}

void ListSink::Write() {
    context_.output << (std::exchange(hasBegun_, true) ? "\n" : "");
    WriteInstances(waiting_, selection_, OutputFormat::kPlain, texts_.Access(), context_);
    waiting_.clear();
}

void ListSink::End() {
    if (!waiting_.empty() || !hasBegun_) {
        Write();
    }
}

} // namespace cimhttp
