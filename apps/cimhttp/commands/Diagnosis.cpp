#include "commands/Diagnosis.h"

#include "output/Listing.h"
#include "text/TimeText.h"

#include <algorithm>

namespace cimhttp {

namespace {

constexpr std::array<const char*, Diagnosis::kCheckCount> kNames{
    "name look-up", "TCP", "TLS", "login", "namespace", "class operations", "qualifiers", "enumeration"};

Cell TimeCell(const Diagnosis::Time& time) {
    if (!time) {
        return Cell::Null();
    }
    const double milliseconds = std::chrono::duration<double, std::milli>(*time).count();
    return {NQORVYX20::TCIMValue(milliseconds), Milliseconds(*time, 1)};
}

} // namespace

void Diagnosis::Pass(Check check, Time time, const std::string& remark) {
    findings_[check] = {State::kPassed, time, remark, 0};
}

void Diagnosis::Fail(Check check, Time time, const Failure& failure) {
    findings_[check] = {State::kFailed, time, failure.what(), failure.Status()};
}

void Diagnosis::Omit(Check check, const std::string& remark) { findings_[check] = {State::kOmitted, {}, remark, 0}; }

int Diagnosis::ExitStatus() const {
    const auto failed = std::find_if(findings_.begin(), findings_.end(),
                                     [](const Finding& finding) { return finding.state == State::kFailed; });
    return failed == findings_.end() ? 0 : failed->exitStatus;
}

const char* Diagnosis::ResultText(State state) {
    switch (state) {
    case State::kPassed:
        return "passed";
    case State::kFailed:
        return "failed";
    case State::kOmitted:
        return "not used";
    default:
        return "not tried";
    }
}

Listing Diagnosis::AsListing() const {
    Listing listing({Listing::Key("Check"),
                     {"Result", Listing::Align::kLeft, Listing::Importance::kAsked},
                     {"ms", Listing::Align::kRight, Listing::Importance::kAsked},
                     {"Remark", Listing::Align::kLeft, Listing::Importance::kAsked}});
    for (std::size_t i = 0; i < findings_.size(); ++i) {
        const Finding& finding = findings_[i];
        listing.AddRow({kNames[i], ResultText(finding.state), TimeCell(finding.time), finding.remark});
    }
    return listing;
}

} // namespace cimhttp
