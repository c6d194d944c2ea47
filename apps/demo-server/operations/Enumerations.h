#pragma once

#include "operations/Enumeration.h"
#include "operations/EnumerationLimits.h"
#include "wire/CimError.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace demo {

class Repository;

/// The enumerations that clients have opened, by their contexts. One that is not continued in time is closed. Safe to
/// use from several threads.
class Enumerations {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;
    using Pointer = std::unique_ptr<Enumeration>;

    explicit Enumerations(EnumerationLimits limits = {}, Clock now = &std::chrono::steady_clock::now);

    const EnumerationLimits& Limits() const { return limits_; }

    /// An enumeration while an operation is at work on it. It is closed when this ends, unless it was kept.
    class Use {
      public:
        Use(Enumerations& all, std::string context, Pointer enumeration)
            : all_(&all), context_(std::move(context)), enumeration_(std::move(enumeration)) {}
        Use(Use&& other) noexcept = default;
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        Use& operator=(Use&&) = delete;
        ~Use();

        Enumeration& Get() { return *enumeration_; }

        /// Leaves it open, and returns the context by which it goes on.
        std::string Keep();

      private:
        Enumerations* all_;
        std::string context_;
        Pointer enumeration_; // null when it was kept
    };

    /// Adds an enumeration of a namespace, which is made once there is room for it. Throws CimError
    /// kInvalidOperationTimeout for a time that is longer than the longest, or 0, which means for ever;
    /// kServerLimitsExceeded when too many are open.
    Use Open(const Repository& repository, std::optional<std::chrono::seconds> timeout,
             const std::function<Pointer()>& make);

    /// The enumeration of the namespace with that context. Throws CimError kInvalidEnumerationContext when there is
    /// none, or one of another kind; kFailed while another operation is at work on it.
    Use Take(const Repository& repository, const std::string& context, Enumeration::Kind kind);

    /// Closes it. Throws as Take() does, but kPullCannotBeAbandoned while an operation is at work on it.
    void Close(const Repository& repository, const std::string& context);

    /// How many objects are left, if that is known. Throws as Take() does.
    std::optional<std::uint64_t> Left(const Repository& repository, const std::string& context);

  private:
    struct Entry {
        const Repository* repository;
        /// Null while an operation is at work on it.
        Pointer enumeration;
        std::chrono::seconds timeout;
        Time end;
    };
    using Entries = std::map<std::string, Entry>;

    std::chrono::seconds Checked(std::optional<std::chrono::seconds> timeout) const;
    std::string AddEntry(const Repository& repository, std::chrono::seconds timeout);
    void DropLate();
    Entries::iterator Find(const Repository& repository, const std::string& context, CimStatus whenInUse);
    void PutBack(const std::string& context, Pointer enumeration);
    void Drop(const std::string& context);

    const EnumerationLimits limits_;
    const Clock now_;
    std::mutex mutex_; // guards what follows
    Entries entries_;
};

} // namespace demo
