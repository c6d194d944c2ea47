// A host that runs out of memory while it reads a server: every allocation fails once, wherever it stands. What was
// read is then either complete or known to be not; nothing breaks, and the namespace goes on.

#include "PluginTest.h"
#include "ScopedPolicy.h"
#include "cimhttp/ContextKeys.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPProperty.h"
#include "reading/FaithfulReading.h"
#include "reading/InstanceEnumeration.h"
#include "support/FailingAllocations.h"

#include <algorithm>
#include <memory>

using namespace NQORVYX20;
using support::FailingAllocations;

namespace {

constexpr int kHttpPort = 5988;
constexpr std::size_t kEnough = 100000; // more than any of these operations allocates

/// What an operation came to whose allocations failed.
struct TOutcome {
    bool struck = false; ///< one did
    bool thrown = false; ///< the operation ended in an exception
};

class ScarcityTest : public PluginTest, public testing::WithParamInterface<const char*> {
  protected:
    ScarcityTest() {
        log_->ExpectWarnings();
        ServeQualifier("Description");
        ServeQualifier("Key", "boolean", "", "PROPERTY=\"true\"");
        ServeQualifier("ValueMap", "string", "ISARRAY=\"true\"", "PROPERTY=\"true\"");
        ServeQualifier("Values", "string", "ISARRAY=\"true\"", "PROPERTY=\"true\"");
        const std::string maps = "<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>2..5"
                                 "</VALUE></VALUE.ARRAY></QUALIFIER><QUALIFIER NAME=\"Values\" TYPE=\"string\">"
                                 "<VALUE.ARRAY><VALUE>one text</VALUE><VALUE>another one</VALUE></VALUE.ARRAY>"
                                 "</QUALIFIER>";
        ServeClass("TEST_Base", "", PropertyXml("Name", "string", KeyXml()));
        ServeClass("TEST_Disk", "TEST_Base",
                   PropertyXml("Name", "string", KeyXml()) + PropertyXml("State", "uint16", maps) +
                       PropertyXml("Since", "datetime"));
        std::string instances;
        for (const char* name : {"the first instance", "the second instance"}) {
            instances += InstanceXml("TEST_Disk", "Name", name,
                                     PropertyXml("Name", "string", ValueXml(name)) +
                                         PropertyXml("State", "uint16", ValueXml("1")) +
                                         PropertyXml("Since", "datetime", ValueXml("20240229120000.000000+060")));
        }
        server_.Answer("EnumerateInstances", "TEST_Disk", instances);
        context_ = PluginContext();
        context_[kReadingKey] = TCIMValue(GetParam());
    }

    boost::shared_ptr<TCimHTTPNamespace> Connected() const {
        auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context_, false));
        nameSpace->connect(server_.Address(), "", "", kHttpPort);
        return nameSpace;
    }

    /// Runs `work` once for each of its allocations, which fails then; `prepare` comes before, `check` after.
    template <typename Prepare, typename Work, typename Check>
    void RunShortOfMemory(const Prepare& prepare, const Work& work, const Check& check) {
        for (std::size_t n = 0; n < kEnough; ++n) {
            auto prepared = prepare();
            TOutcome outcome;
            {
                const FailingAllocations scarcity(n);
                try {
                    work(prepared);
                } catch (const TVYXException&) {
                    outcome.thrown = true;
                } catch (const std::bad_alloc&) {
                    outcome.thrown = true;
                }
                outcome.struck = scarcity.HasStruck();
            }
            const testing::ScopedTrace trace(__FILE__, __LINE__, "allocation " + std::to_string(n));
            check(prepared, outcome);
            log_->Forget();
            if (!outcome.struck || HasFailure()) {
                EXPECT_GT(n, 20U) << "the operation allocates next to nothing";
                return;
            }
        }
        ADD_FAILURE() << "an operation without end";
    }

    TCIMContext context_;
    const std::string disk_ = "TEST_Disk";
};

INSTANTIATE_TEST_SUITE_P(InEachReading, ScarcityTest, testing::Values(kCompatibleReading, kFaithfulReading),
                         [](const auto& reading) { return std::string(reading.param); });

TEST_P(ScarcityTest, ALookupGivesAClassOrSaysWhyNotAndTheNextOneGivesIt) {
    struct TPrepared {
        boost::shared_ptr<TCimHTTPNamespace> nameSpace;
        boost::shared_ptr<ICIMClass> cls;
    };
    RunShortOfMemory(
        [&] {
            return TPrepared{Connected(), {}};
        },
        [&](TPrepared& prepared) { prepared.cls = prepared.nameSpace->GetClass(disk_, TCIMContext()); },
        [&](TPrepared& prepared, const TOutcome& outcome) {
            if (!prepared.cls) {
                EXPECT_TRUE(outcome.thrown || prepared.nameSpace->LastFailure());
            } else {
                EXPECT_EQ(VisitedNames([&](const auto& callback) {
                              prepared.cls->EnumeratePropertyDecls(callback, TCIMContext());
                          }).size(),
                          3U);
            }
        });
}

TEST_P(ScarcityTest, APolicyIsFollowedOrNothingIsConnected) {
    const ScopedPolicy policy(R"({"servers": [{"match": "*", "force": {"namespace": "forced", "timeout": 30000}}]})");
    log_->ExpectInfos();
    RunShortOfMemory(
        [&] {
            return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
                TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context_, false));
        },
        [&](const auto& nameSpace) { nameSpace->connect(server_.Address(), "", "", kHttpPort); },
        [&](const auto& nameSpace, const TOutcome& outcome) {
            EXPECT_EQ(nameSpace->isConnected(), !outcome.thrown);
            EXPECT_EQ(nameSpace->getPegNSP()->getString(),
                      Pegasus::String(nameSpace->isConnected() ? "forced" : "root/cimv2"));
            EXPECT_EQ(nameSpace->getPegClient()->getTimeout() == 30000U, nameSpace->isConnected());
        });
}

TEST_P(ScarcityTest, AnEnumerationGivesAllInstancesOrSaysThatItDoesNot) {
    struct TPrepared {
        boost::shared_ptr<TCimHTTPNamespace> nameSpace;
        boost::shared_ptr<ICIMClass> cls;
        std::size_t instances = 0;
    };
    RunShortOfMemory(
        [&] {
            TPrepared prepared;
            prepared.nameSpace = Connected();
            prepared.cls = prepared.nameSpace->GetClass(disk_, TCIMContext());
            return prepared;
        },
        [](TPrepared& prepared) {
            prepared.cls->EnumerateInstances([&](const auto&) { return ++prepared.instances > 0; }, false,
                                             TCIMContext());
        },
        [](TPrepared& prepared, const TOutcome& outcome) {
            const auto& failure = prepared.nameSpace->LastFailure();
            const bool isTold = outcome.thrown || !prepared.nameSpace->Incidents().IsEmpty() || failure;
            EXPECT_TRUE(prepared.instances == 2 || isTold);
            EXPECT_TRUE(outcome.struck || !isTold);
        });
}

/// The reading that does not hold all instances where the host does not want it to.
class PartialScarcityTest : public ScarcityTest {};

INSTANTIATE_TEST_SUITE_P(InTheFaithfulReading, PartialScarcityTest, testing::Values(kFaithfulReading),
                         [](const auto& reading) { return std::string(reading.param); });

TEST_P(PartialScarcityTest, AnAnswerThatIsReadInPartsGivesAllInstancesOrSaysThatItDoesNot) {
    struct TPrepared {
        boost::shared_ptr<TCimHTTPNamespace> nameSpace;
        boost::shared_ptr<ICIMClass> cls;
        std::vector<std::string> names;
    };
    static const std::vector<std::string> kNames = {"the first instance", "the second instance"};
    const auto read = [](TPrepared& prepared) {
        prepared.cls->EnumerateInstances(
            [&](const auto& instance) {
                prepared.names.push_back(
                    static_cast<std::string>(instance->GetProperty("Name", TCIMContext())->GetValue(TCIMContext())));
                return true;
            },
            true, {{kHeldKey, TCIMValue(1U)}});
    };
    RunShortOfMemory(
        [&] {
            TPrepared prepared;
            prepared.nameSpace = Connected();
            prepared.cls = prepared.nameSpace->GetClass(disk_, TCIMContext());
            return prepared;
        },
        read,
        [&](TPrepared& prepared, const TOutcome& outcome) {
            const auto& failure = prepared.nameSpace->LastFailure();
            const bool isTold = outcome.thrown || !prepared.nameSpace->Incidents().IsEmpty() || failure;
            EXPECT_TRUE(prepared.names == kNames || isTold);
            EXPECT_TRUE(std::equal(prepared.names.begin(), prepared.names.end(), kNames.begin()));
            EXPECT_TRUE(outcome.struck || !isTold);
            prepared.names.clear();
            EXPECT_EQ(StatusOf([&] { read(prepared); }), 0U) << (failure ? failure->text : "");
            EXPECT_EQ(prepared.names, kNames) << "the connection is of use";
        });
}

TEST_P(ScarcityTest, ADisplayTextIsWholeOrNotThere) {
    struct TPrepared {
        boost::shared_ptr<TCimHTTPNamespace> nameSpace;
        std::vector<boost::shared_ptr<ICIMInstance>> instances;
        std::vector<std::string> texts;
    };
    static const std::vector<std::string> kNames = {"Name", "State", "Since"};
    RunShortOfMemory(
        [&] {
            TPrepared prepared;
            prepared.nameSpace = Connected();
            FetchClass(*prepared.nameSpace, disk_)
                ->EnumerateInstances(
                    [&](const auto& instance) {
                        prepared.instances.push_back(instance);
                        return true;
                    },
                    false, TCIMContext());
            return prepared;
        },
        [](TPrepared& prepared) {
            for (const std::string& name : kNames) {
                const auto& instance = *prepared.instances.at(0);
                const TCimHTTPProperty shown(instance.GetClass(TCIMContext())->GetPropertyDecl(name, TCIMContext()),
                                             instance.GetProperty(name, TCIMContext())->GetValue(TCIMContext()));
                prepared.texts.push_back(shown.ToString());
            }
        },
        [](TPrepared& prepared, const TOutcome& outcome) {
            const bool isFaithful = GetParam() == std::string(kFaithfulReading);
            const std::vector<std::string> all = {"the first instance", "one text",
                                                  isFaithful ? "2024-02-29 12:00:00 +01:00"
                                                             : "20240229120000.000000+060"};
            ASSERT_TRUE(outcome.thrown || prepared.texts.size() == all.size());
            for (std::size_t i = 0; i < prepared.texts.size(); ++i) {
                EXPECT_EQ(prepared.texts[i], all[i]);
            }
        });
}

} // namespace

/// The one that can be in two threads: what one of them lacked memory for is told when nothing is under way.
class FaithfulScarcityTest : public ScarcityTest {
  protected:
    static constexpr std::size_t kReceived = 40;

    struct TPrepared {
        boost::shared_ptr<TCimHTTPNamespace> nameSpace;
        std::unique_ptr<InstanceEnumeration> enumeration;
        ReceivedInstances received;
        std::size_t made = 0;
    };

    /// Some of the instances that have been received after the first ones; they have these properties beside their
    /// names.
    TPrepared Receive(const std::string& properties) {
        std::string instances;
        for (std::size_t number = 0; number < kServed; ++number) {
            const std::string name = "instance " + std::to_string(number);
            instances +=
                InstanceXml("TEST_Disk", "Name", name, PropertyXml("Name", "string", ValueXml(name)) + properties);
        }
        server_.Answer("EnumerateInstances", "TEST_Disk", instances);
        TPrepared prepared{Connected(), {}, {}};
        auto& cls = dynamic_cast<TCimHTTPClass&>(*prepared.nameSpace->GetClass(disk_, TCIMContext()));
        prepared.enumeration = dynamic_cast<FaithfulReading&>(*prepared.nameSpace->GetReading())
                                   .OpenInstances(cls, true, {{kHeldKey, TCIMValue(1U)}});
        prepared.enumeration->Next();
        prepared.received = prepared.enumeration->Receive();
        EXPECT_GE(prepared.received.size(), kReceived);
        prepared.received.resize(kReceived); // each allocation is tried
        prepared.nameSpace->TakeIncidents();
        return prepared;
    }

  private:
    static constexpr std::size_t kServed = 600; // which come in parts
};

INSTANTIATE_TEST_SUITE_P(Alone, FaithfulScarcityTest, testing::Values(kFaithfulReading));

TEST_P(FaithfulScarcityTest, InstancesAreMadeOrTheFailureIsToldAfterwards) {
    RunShortOfMemory([&] { return Receive(""); },
                     [](TPrepared& prepared) { prepared.made = prepared.enumeration->Make(prepared.received).size(); },
                     [](TPrepared& prepared, const TOutcome& outcome) {
                         EXPECT_EQ(prepared.made, outcome.thrown ? 0U : kReceived);
                         EXPECT_FALSE(prepared.nameSpace->LastFailure());
                         if (outcome.thrown) {
                             EXPECT_THROW(prepared.enumeration->Settle(), TVYXException);
                             ASSERT_TRUE(prepared.nameSpace->LastFailure());
                             EXPECT_EQ(prepared.nameSpace->LastFailure()->kind, RemoteFailure::Kind::kLimit);
                         }
                         prepared.enumeration->Settle(); // which tells it once
                     });
}

TEST_P(FaithfulScarcityTest, IncidentsAreReportedOrItIsToldThatTheyAreNotAndNoneIsCountedTwice) {
    const std::string unknown = PropertyXml("Unknown", "string", ValueXml("the class does not declare it"));
    RunShortOfMemory(
        [&] {
            TPrepared prepared = Receive(unknown);
            EXPECT_EQ(prepared.enumeration->Make(prepared.received).size(), kReceived);
            return prepared;
        },
        [](TPrepared& prepared) { prepared.enumeration->Settle(); },
        [](TPrepared& prepared, const TOutcome& outcome) {
            EXPECT_EQ(prepared.nameSpace->Incidents().Total(), outcome.thrown ? 0U : kReceived);
            prepared.enumeration.reset(); // hands over what is left
            EXPECT_EQ(prepared.nameSpace->Incidents().Total(), kReceived);
        });
}
