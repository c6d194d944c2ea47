#include "operations/Enumerations.h"

#include <random>
#include <utility>

namespace demo {

namespace {

/// A context that cannot be guessed.
std::string NewContext() {
    constexpr int kWords = 4;
    std::random_device random;
    std::string context;
    for (int i = 0; i < kWords; ++i) {
        context += (i == 0 ? "" : "-") + std::to_string(random());
    }
    return context;
}

} // namespace

Enumerations::Enumerations(EnumerationLimits limits, Clock now) : limits_(limits), now_(std::move(now)) {}

Enumerations::Use::~Use() {
    if (enumeration_) {
        all_->Drop(context_);
    }
}

std::string Enumerations::Use::Keep() {
    all_->PutBack(context_, std::move(enumeration_));
    return context_;
}

Enumerations::Use Enumerations::Open(const Repository& repository, std::optional<std::chrono::seconds> timeout,
                                     const std::function<Pointer()>& make) {
    std::string context = AddEntry(repository, Checked(timeout));
    try {
        return Use(*this, context, make());
    } catch (...) {
        Drop(context);
        throw;
    }
}

std::chrono::seconds Enumerations::Checked(std::optional<std::chrono::seconds> timeout) const {
    if (timeout && (timeout->count() == 0 || *timeout > limits_.longestTimeout)) {
        throw CimError(CimStatus::kInvalidOperationTimeout,
                       "OperationTimeout is 1 to " + std::to_string(limits_.longestTimeout.count()) + " here");
    }
    return timeout.value_or(limits_.timeout);
}

std::string Enumerations::AddEntry(const Repository& repository, std::chrono::seconds timeout) {
    std::string context = NewContext();
    const std::lock_guard<std::mutex> lock(mutex_);
    DropLate();
    if (entries_.size() >= limits_.open) {
        throw CimError(CimStatus::kServerLimitsExceeded,
                       "there are " + std::to_string(limits_.open) + " enumerations already, which is the most");
    }
    entries_.emplace(context, Entry{&repository, nullptr, timeout, Time()});
    return context;
}

Enumerations::Use Enumerations::Take(const Repository& repository, const std::string& context, Enumeration::Kind kind) {
    const std::lock_guard<std::mutex> lock(mutex_);
    Entry& entry = Find(repository, context, CimStatus::kFailed)->second;
    if (entry.enumeration->GetKind() != kind) {
        throw CimError(CimStatus::kInvalidEnumerationContext, "the enumeration is of another kind of objects");
    }
    return Use(*this, context, std::move(entry.enumeration));
}

void Enumerations::Close(const Repository& repository, const std::string& context) {
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.erase(Find(repository, context, CimStatus::kPullCannotBeAbandoned));
}

std::optional<std::uint64_t> Enumerations::Left(const Repository& repository, const std::string& context) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return Find(repository, context, CimStatus::kFailed)->second.enumeration->Left();
}

void Enumerations::DropLate() {
    const Time now = now_();
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        entry = entry->second.enumeration && entry->second.end <= now ? entries_.erase(entry) : std::next(entry);
    }
}

Enumerations::Entries::iterator Enumerations::Find(const Repository& repository, const std::string& context,
                                                   CimStatus whenInUse) {
    DropLate();
    const auto found = entries_.find(context);
    if (found == entries_.end() || found->second.repository != &repository) {
        throw CimError(CimStatus::kInvalidEnumerationContext,
                       "there is no such enumeration, or there is none any more, since nobody pulled it in time");
    }
    if (!found->second.enumeration) {
        throw CimError(whenInUse, "another operation is at work on the enumeration");
    }
    return found;
}

void Enumerations::PutBack(const std::string& context, Pointer enumeration) {
    const std::lock_guard<std::mutex> lock(mutex_);
    Entry& entry = entries_.at(context);
    entry.enumeration = std::move(enumeration);
    entry.end = now_() + entry.timeout;
}

void Enumerations::Drop(const std::string& context) {
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.erase(context);
}

} // namespace demo
