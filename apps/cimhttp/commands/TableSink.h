#pragma once

#include "commands/InstanceWriter.h"
#include "output/InstanceListing.h"
#include "output/ListingText.h"

#include <cstddef>
#include <memory>
#include <set>
#include <string>

namespace cimhttp {

/// Writes a table of instances while they arrive. The first ones say which columns there are and how wide they are;
/// where there are no more, it is the table of WriteInstances(). What the columns cannot show of later ones is said at
/// the end.
class TableSink : public InstanceSink {
  public:
    /// How many instances are looked at.
    static constexpr std::size_t kLookedAt = 1000;

    /// The references must outlive the object.
    TableSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context);

    void Add(const Instances& instances) override;
    void End() override;

  private:
    void Begin();
    void AddLater(const Instances& instances);
    void NoteWhatIsNotShown(const Instances& instances);
    void SayWhatIsNotShown() const;

    const InstanceSelection& selection_;
    const ValueTexts texts_;
    const CommandContext& context_;
    const InstanceListing listing_;
    Instances first_; // until there are more than are looked at
    std::unique_ptr<GrowingTable> table_;
    Properties shown_;
    Properties hidden_;               // which had nothing to show so far
    std::vector<std::string> missed_; // of those, what has something since
    bool hasClass_ = false;
    bool lacksClass_ = false;
    bool lacksAdded_ = false;
    std::set<std::string> classes_; // of the instances so far
};

/// Writes lists of instances while they arrive; see there.
class ListSink : public InstanceSink {
  public:
    ListSink(const InstanceSelection& selection, const ValueTexts& texts, const CommandContext& context)
        : selection_(selection), texts_(texts), context_(context) {}

    void Add(const Instances& instances) override;
    void End() override;

  private:
    void Write();

    const InstanceSelection& selection_;
    const ValueTexts texts_;
    const CommandContext& context_;
    Instances waiting_;
    bool hasBegun_ = false;
};

} // namespace cimhttp
