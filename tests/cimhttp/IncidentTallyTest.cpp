#include "connection/IncidentTally.h"

#include <gtest/gtest.h>

using cimhttp::IncidentTally;
using NQORVYX20::ReadingIncident;
using NQORVYX20::ReadingIncidents;
using Cause = ReadingIncident::Cause;

namespace {

ReadingIncident Incident(Cause cause, const std::string& property) {
    return {cause, "TEST_Disk", "TEST_Disk.Name=\"a\"", property, "it is odd"};
}

IncidentTally TallyOf(const std::vector<ReadingIncident>& all) {
    ReadingIncidents incidents;
    for (const ReadingIncident& incident : all) {
        incidents.Add(incident);
    }
    IncidentTally tally;
    tally.Add(incidents);
    return tally;
}

} // namespace

TEST(IncidentTally, CountsByCauseAndNamesTheFirst) {
    EXPECT_EQ(TallyOf({Incident(Cause::kOtherType, "Size"), Incident(Cause::kUndeclaredProperty, "Odd"),
                       Incident(Cause::kOtherType, "Speed")})
                  .Text(),
              "3 values could not be taken over (1 undeclared, 2 of another type); the first: Size of "
              "TEST_Disk.Name=\"a\": it is odd");
}

TEST(IncidentTally, SpeaksOfThingsWhereNotOnlyValuesAreLost) {
    EXPECT_EQ(
        TallyOf({Incident(Cause::kDoubledPath, "")}).Text(),
        "1 thing could not be taken over (1 with the path of another); the first: TEST_Disk.Name=\"a\": it is odd");
    EXPECT_EQ(TallyOf({{Cause::kBadName, "TEST_Disk", "", "", "odd"}, Incident(Cause::kBadValue, "A")}).Text(),
              "2 things could not be taken over (1 not valid, 1 that the host cannot keep); the first: TEST_Disk: odd");
}

TEST(IncidentTally, NamesWhatBelongsToNoClass) {
    EXPECT_EQ(TallyOf({{Cause::kUnreadableValue, "", "", "qualifier declaration Level", "odd"}}).Text(),
              "1 value could not be taken over (1 that cannot be read); the first: qualifier declaration Level: odd");
}

TEST(IncidentTally, AddsUpAndKeepsTheVeryFirst) {
    IncidentTally tally;
    EXPECT_TRUE(tally.IsEmpty());
    tally.Add(IncidentTally());
    tally.Add(ReadingIncidents());
    EXPECT_TRUE(tally.IsEmpty());
    tally.Add(TallyOf({Incident(Cause::kOtherType, "First")}));
    tally.Add(TallyOf({Incident(Cause::kOtherType, "Second")}));
    EXPECT_FALSE(tally.IsEmpty());
    EXPECT_EQ(tally.Text(), "2 values could not be taken over (2 of another type); the first: First of "
                            "TEST_Disk.Name=\"a\": it is odd");
}

TEST(IncidentTally, CountsAlsoThoseThatAreNotKept) {
    EXPECT_EQ(TallyOf(std::vector<ReadingIncident>(ReadingIncidents::kMaxKept + 5, Incident(Cause::kOtherType, "A")))
                  .Text()
                  .substr(0, 11),
              "1005 values");
}
