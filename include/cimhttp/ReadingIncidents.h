#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace NQORVYX20 {

class ICIMNamespace;

/// One thing that a server sent and that could not be taken over.
struct ReadingIncident {
    enum class Cause {
        kUndeclaredProperty, ///< the class does not declare the property
        kOtherType,          ///< the value has another type than the class declares
        kBadValue,           ///< the host has no such value: an impossible date-time, for example
        kBadName,            ///< the host cannot keep an element of this name
        kDoubledPath,        ///< an earlier instance has the same path
        kNoDefinition,       ///< the server did not give the class's definition; the instance is kept as it was sent
        kNotAnInstance,      ///< the server sent a class where instances were asked for
        kUnreadableValue,    ///< the text is not valid for the type that the server states; the value is null
        kForeignBytes,       ///< a text that is not UTF-8, taken as Latin-1, or with U+FFFD where that has no character
        kDoubledProperty     ///< the object has the property twice; the last one is kept
    };

    Cause cause;
    std::string className;
    std::string path;     ///< of the instance; empty where a class is at fault
    std::string property; ///< empty where the whole object is at fault
    std::string reason;   ///< a sentence for people
};

/// What could not be taken over while a namespace was read: the number of incidents of each cause, and the first ones
/// in full, so that a server that causes millions of them does not use up the memory.
class ReadingIncidents {
  public:
    static constexpr std::size_t kMaxKept = 1000;

    void Add(ReadingIncident incident) {
        ++counts_[incident.cause];
        ++total_;
        if (first_.size() < kMaxKept) {
            first_.push_back(std::move(incident));
        }
    }

    /// Counts incidents of which nothing else is known.
    void AddMore(ReadingIncident::Cause cause, std::size_t count) {
        counts_[cause] += count;
        total_ += count;
    }

    bool IsEmpty() const { return total_ == 0; }
    std::size_t Total() const { return total_; }

    // Of a temporary object, such as TakeIncidents() returns, these two give what outlives it.

    /// The number of incidents by cause, for the causes that have occurred.
    const std::map<ReadingIncident::Cause, std::size_t>& Counts() const& { return counts_; }
    std::map<ReadingIncident::Cause, std::size_t> Counts() && { return std::move(counts_); }

    /// The first incidents, in the order in which they came, not more than kMaxKept.
    const std::vector<ReadingIncident>& First() const& { return first_; }
    std::vector<ReadingIncident> First() && { return std::move(first_); }

  private:
    std::map<ReadingIncident::Cause, std::size_t> counts_;
    std::size_t total_ = 0;
    std::vector<ReadingIncident> first_;
};

/// What could not be taken from the server's answers since the namespace was made or this function was last called for
/// it; the namespace forgets it. Throws TVYXException eTypeMismatch, after a line in the log, for a namespace that is
/// not one of the plug-in's. Exported by the plug-in, and used from the thread that uses the namespace.
ReadingIncidents TakeIncidents(ICIMNamespace& nameSpace);

} // namespace NQORVYX20
