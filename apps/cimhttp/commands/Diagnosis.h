#pragma once

#include "Failure.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace cimhttp {

class Listing;

/// What an examination of a server finds: whether each check has passed. Nothing is said of a check that was not tried.
class Diagnosis {
  public:
    using Time = std::optional<std::chrono::microseconds>;

    /// In this order, since each needs those before it.
    enum Check { kNameLookUp, kTcp, kTls, kLogin, kNamespace, kClasses, kQualifiers, kEnumeration, kCheckCount };

    void Pass(Check check, Time time, const std::string& remark);
    void Fail(Check check, Time time, const Failure& failure);

    /// Records that there is nothing to check, and why.
    void Omit(Check check, const std::string& remark);

    bool IsTried(Check check) const { return At(check).state != State::kNotTried; }

    bool HasFailed(Check check) const { return At(check).state == State::kFailed; }

    /// The exit status of the first check that has failed; 0 where none has.
    int ExitStatus() const;

    /// A row for each check, with its result, milliseconds and a remark.
    Listing AsListing() const;

  private:
    enum class State { kNotTried, kOmitted, kPassed, kFailed };

    struct Finding {
        State state = State::kNotTried;
        Time time;
        std::string remark;
        int exitStatus = 0;
    };

    const Finding& At(Check check) const { return findings_[check]; }
    static const char* ResultText(State state);

    std::array<Finding, kCheckCount> findings_;
};

} // namespace cimhttp
