// How a faithful namespace reads a server that has pulled enumerations, and one that has not.

#include "PluginTest.h"
#include "cimhttp/ContextKeys.h"
#include "reading/FaithfulReading.h"
#include "reading/InstanceEnumeration.h"
#include "reading/PortionSize.h"

#include <chrono>

using namespace NQORVYX20;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using Cause = ReadingIncident::Cause;
using Kind = RemoteFailure::Kind;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr const char* kClass = "TEST_Disk";

class PulledReadingTest : public PluginTest {
  protected:
    PulledReadingTest() {
        log_->ExpectWarnings();
        ServeClass(kClass, "", PropertyXml("Name", "string", KeyXml()) + PropertyXml("Size", "uint64"));
        ServeClass("TEST_Fast", kClass, PropertyXml("Name", "string", KeyXml()) + PropertyXml("Size", "uint64"));
        server_.Answer("EnumerateQualifiers", "", "");
    }

    static std::string InstanceWithPathXml(const std::string& name, const std::string& className = kClass) {
        return "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>far.example</HOST><LOCALNAMESPACEPATH>"
               "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"CIMV2\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>"
               "<INSTANCENAME CLASSNAME=\"" +
               className + "\"><KEYBINDING NAME=\"Name\"><KEYVALUE>" + name +
               "</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH><INSTANCE CLASSNAME=\"" + className + "\">" +
               PropertyXml("Name", "string", ValueXml(name)) + "</INSTANCE></VALUE.INSTANCEWITHPATH>";
    }

    static std::string All(const std::vector<std::string>& names) {
        std::string xml;
        for (const std::string& name : names) {
            xml += InstanceWithPathXml(name);
        }
        return xml;
    }

    /// Instances in these portions.
    void ServePortions(const std::vector<std::vector<std::string>>& portions) {
        for (std::size_t i = 0; i < portions.size(); ++i) {
            server_.AnswerPortion(i == 0 ? "OpenEnumerateInstances" : "PullInstancesWithPath",
                                  i == 0 ? kClass : "c" + std::to_string(i), All(portions[i]),
                                  i + 1 == portions.size() ? "" : "c" + std::to_string(i + 1));
            server_.Answer("CloseEnumeration", "c" + std::to_string(i + 1), "");
        }
    }

    boost::shared_ptr<TCimHTTPNamespace> Faithful(const TCIMContext& more = {}) {
        TCIMContext context = PluginContext();
        context[kReadingKey] = TCIMValue(kFaithfulReading);
        context.insert(more.begin(), more.end());
        auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
        nameSpace->connect(server_.Address(), "", "", kHttpPort);
        nameSpace->GetClass(kClass, TCIMContext());
        nameSpace->GetClass("TEST_Fast", TCIMContext());
        server_.ForgetCalls();
        return nameSpace;
    }

    /// As the old operation answers.
    static std::string NamedInstanceXml(const std::string& name) {
        return InstanceXml(kClass, "Name", name, PropertyXml("Name", "string", ValueXml(name)));
    }

    static TCIMContext Held(unsigned count) { return {{kHeldKey, TCIMValue(count)}}; }

    static std::string NameOf(const ICIMInstance& instance) {
        return static_cast<std::string>(instance.GetProperty("Name", TCIMContext())->GetValue(TCIMContext()));
    }

    /// The names of the instances, up to so many, in the order in which they come.
    static std::vector<std::string> Names(TCimHTTPNamespace& nameSpace, const TCIMContext& context = {},
                                          std::size_t most = 100, bool deep = true) {
        std::vector<std::string> names;
        nameSpace.GetClass(kClass, TCIMContext())
            ->EnumerateInstances(
                [&](const boost::shared_ptr<ICIMInstance>& instance) {
                    names.push_back(NameOf(*instance));
                    return names.size() < most;
                },
                deep, context);
        return names;
    }

    static boost::shared_ptr<ICIMInstance> InstanceNamed(TCimHTTPNamespace& nameSpace, const std::string& name) {
        TCIMReference path({}, TCIMContext());
        path.SetClassName(kClass);
        path.AddKeyValue("Name", TCIMValue(name));
        return nameSpace.GetInstance(path, TCIMContext());
    }

    std::vector<std::string> Methods() const {
        std::vector<std::string> methods;
        for (const auto& call : server_.Calls()) {
            methods.push_back(call.method);
        }
        return methods;
    }

    static std::optional<Kind> FailureOf(TCimHTTPNamespace& nameSpace, const TCIMContext& context = {}) {
        StatusOf([&] { Names(nameSpace, context); });
        return nameSpace.LastFailure() ? std::optional(nameSpace.LastFailure()->kind) : std::nullopt;
    }
};

TEST_F(PulledReadingTest, InstancesComeInPortionsAndInTheOrderOfTheirPaths) {
    ServePortions({{"c", "a"}, {"d"}, {"b"}});
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "PullInstancesWithPath"));
    EXPECT_FALSE(nameSpace->LastFailure());
}

TEST_F(PulledReadingTest, OnePortionThatIsAllTakesOneRequest) {
    ServePortions({{"b", "a"}});
    EXPECT_THAT(Names(*Faithful()), ElementsAre("a", "b"));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances"));
    const auto parameters = server_.Calls().back().parameters;
    EXPECT_EQ(parameters.at("MaxObjectCount"), "100");
    EXPECT_EQ(parameters.at("DeepInheritance"), "TRUE");
    EXPECT_EQ(parameters.count("PropertyList"), 0U);
}

TEST_F(PulledReadingTest, PathsAreThoseOfTheOldOperation) {
    server_.Answer("EnumerateInstances", kClass, NamedInstanceXml("a"));
    const auto path = [](TCimHTTPNamespace& nameSpace) {
        std::string text;
        nameSpace.GetClass(kClass, TCIMContext())
            ->EnumerateInstances(
                [&](const auto& instance) {
                    text = instance->BuildPath(TCIMContext()).GetPath();
                    return true;
                },
                true, TCIMContext());
        return text;
    };
    const std::string old = path(*Faithful());
    ServePortions({{"a"}});
    EXPECT_EQ(path(*Faithful()), old);
}

TEST_F(PulledReadingTest, AServerWithoutPulledEnumerationsIsAskedForThemOnce) {
    server_.Answer("EnumerateInstances", kClass, NamedInstanceXml("a"));
    const std::function<void()> answers[] = {
        [] {}, // CIM_ERR_NOT_SUPPORTED
        [&] { server_.Fail("OpenEnumerateInstances", kClass, 1, "what is that?"); },
        [&] { server_.Fail("OpenEnumerateInstances", kClass, 6, "there is no such thing"); },
        [&] { server_.Fail("OpenEnumerateInstances", kClass, 17, "nor such a method"); },
        [&] { server_.AnswerNextWith("HTTP/1.1 501 Not Implemented\r\nContent-Length: 0\r\n\r\n"); }};
    for (const auto& answer : answers) {
        const auto nameSpace = Faithful();
        answer();
        EXPECT_THAT(Names(*nameSpace), SizeIs(1));
        EXPECT_THAT(Names(*nameSpace), SizeIs(1));
        EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "EnumerateInstances", "EnumerateInstances"));
        EXPECT_FALSE(nameSpace->LastFailure());
    }
}

TEST_F(PulledReadingTest, ANewConnectionIsAskedAnew) {
    server_.Answer("EnumerateInstances", kClass, NamedInstanceXml("a"));
    const auto nameSpace = Faithful();
    Names(*nameSpace);
    nameSpace->disconnect();
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    server_.ForgetCalls();
    Names(*nameSpace);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "EnumerateInstances"));
}

TEST_F(PulledReadingTest, AnotherErrorIsNoReasonToAskInTheOldWay) {
    const auto nameSpace = Faithful();
    server_.Fail("OpenEnumerateInstances", kClass, 2, "not you");
    EXPECT_EQ(FailureOf(*nameSpace), Kind::kCimStatus);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances"));
}

TEST_F(PulledReadingTest, TheCompatibleReadingAsksInTheOldWayAlone) {
    ServePortions({{"a"}});
    server_.Answer("EnumerateInstances", kClass, NamedInstanceXml("a"));
    const auto nameSpace = ConnectedNamespace();
    FetchClass(*nameSpace, kClass)->EnumerateInstances([](const auto&) { return true; }, true, TCIMContext());
    EXPECT_EQ(CountCalls("OpenEnumerateInstances", kClass), 0U);
    EXPECT_EQ(CountCalls("EnumerateInstances", kClass), 1U);
}

TEST_F(PulledReadingTest, AFailureInTheMiddleIsOneOfTheWholeEnumeration) {
    ServePortions({{"a"}, {"b"}, {"c"}});
    const auto nameSpace = Faithful();
    server_.Fail("PullInstancesWithPath", "c1", 21, "gone");
    std::size_t count = 0;
    EXPECT_EQ(StatusOf([&] { count = Names(*nameSpace).size(); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(nameSpace->LastFailure()->cimStatus, 21U);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath"));
}

TEST_F(PulledReadingTest, TwoInstancesWithOnePathAreAnIncidentAlsoInTwoPortions) {
    ServePortions({{"a"}, {"a", "b"}});
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace), ElementsAre("a", "b"));
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(incidents.First(), SizeIs(1));
    EXPECT_EQ(incidents.First()[0].cause, Cause::kDoubledPath);
}

TEST_F(PulledReadingTest, InstancesOfSubclassesAreLeftOutWhereTheyAreNotWanted) {
    server_.AnswerPortion("OpenEnumerateInstances", kClass, InstanceWithPathXml("a", "TEST_Fast"), "c1");
    server_.AnswerPortion("PullInstancesWithPath", "c1", InstanceWithPathXml("b"), "");
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace, {}, 100, false), ElementsAre("b"));
    EXPECT_THAT(Names(*nameSpace), ElementsAre("b", "a"));
}

// --- How much is held ---------------------------------------------------------------------------------------------

TEST_F(PulledReadingTest, BeyondTheHeldCountInstancesComeInTheServersOrderAsTheyArrive) {
    ServePortions({{"d", "c"}, {"b"}, {"a", "b"}});
    const auto nameSpace = Faithful();
    std::vector<std::size_t> requests;
    nameSpace->GetClass(kClass, TCIMContext())
        ->EnumerateInstances([&](const auto&) { return requests.push_back(Methods().size()), true; }, true, Held(2));
    EXPECT_THAT(requests, ElementsAre(2, 2, 2, 3, 3));
    EXPECT_THAT(Names(*nameSpace, Held(2)), ElementsAre("d", "c", "b", "a", "b"));
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
}

TEST_F(PulledReadingTest, APropertyThatTheHostDeclaresBetweenPortionsIsThereFromTheNextOn) {
    const auto withLabel = [](const std::string& name) {
        std::string xml = InstanceWithPathXml(name);
        return xml.insert(xml.find("</INSTANCE>"), PropertyXml("Label", "string", ValueXml("of " + name)));
    };
    server_.AnswerPortion("OpenEnumerateInstances", kClass, withLabel("a") + withLabel("b"), "next");
    server_.AnswerPortion("PullInstancesWithPath", "next", withLabel("c"), "");
    const auto nameSpace = Faithful();
    const auto cls = nameSpace->GetClass(kClass, TCIMContext());
    std::vector<std::string> labels;
    cls->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
            if (NameOf(*instance) == "b") {
                const TCIMValue none(TCIMValue::TCIMType::eCIMString, 0);
                cls->AddPropertyDecl(cls->AllocatePropertyDecl("Label", none, TCIMContext()));
            } else if (NameOf(*instance) == "c") {
                labels.push_back(
                    static_cast<std::string>(instance->GetProperty("Label", TCIMContext())->GetValue(TCIMContext())));
            }
            return true;
        },
        true, Held(1));
    EXPECT_THAT(labels, ElementsAre("of c"));
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(incidents.First(), SizeIs(2));
    EXPECT_EQ(incidents.First()[1].cause, Cause::kUndeclaredProperty);
}

TEST_F(PulledReadingTest, BeyondTheHeldCountARepeatedInstanceComesEachTime) {
    ServePortions({{"d", "d"}, {"b"}, {"a"}});
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace, Held(2)), ElementsAre("d", "d", "b", "a"));
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
    EXPECT_THAT(Names(*nameSpace, Held(4)), ElementsAre("a", "b", "d"));
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(incidents.First(), SizeIs(1));
    EXPECT_EQ(incidents.First()[0].cause, Cause::kDoubledPath);
}

TEST_F(PulledReadingTest, OnePathAgainAndAgainIsNotHeldForEver) {
    server_.AnswerPortion("OpenEnumerateInstances", kClass, All({"a", "a"}), "x");
    server_.AnswerPortion("PullInstancesWithPath", "x", All({"a"}), "x");
    server_.Answer("CloseEnumeration", "x", "");
    EXPECT_THAT(Names(*Faithful(), Held(2), 1), ElementsAre("a"));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "CloseEnumeration"));
}

TEST_F(PulledReadingTest, WithinTheHeldCountInstancesComeAsWithoutOne) {
    ServePortions({{"d", "c"}, {"b"}, {"a"}});
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace, Held(4)), ElementsAre("a", "b", "c", "d"));
    server_.ForgetCalls();
    EXPECT_TRUE(InstanceNamed(*nameSpace, "a"));
    EXPECT_THAT(Methods(), IsEmpty()) << "it is known from the enumeration";
}

TEST_F(PulledReadingTest, GetInstanceDoesNotKnowWhatWasNotHeld) {
    ServePortions({{"a"}, {"b"}, {"c"}});
    const auto nameSpace = Faithful();
    Names(*nameSpace);
    Names(*nameSpace, Held(1));
    server_.ForgetCalls();
    server_.Answer("GetInstance", "", "<INSTANCE CLASSNAME=\"TEST_Disk\"/>");
    EXPECT_TRUE(InstanceNamed(*nameSpace, "a"));
    EXPECT_THAT(Methods(), ElementsAre("GetInstance"));
}

TEST_F(PulledReadingTest, AnEnumerationThatEndsEarlyIsClosed) {
    ServePortions({{"a"}, {"b"}, {"c"}, {"d"}});
    const auto nameSpace = Faithful();
    EXPECT_THAT(Names(*nameSpace, Held(1), 2), ElementsAre("a", "b"));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "CloseEnumeration"));
    EXPECT_EQ(server_.Calls().back().parameters.at("EnumerationContext"), "c2");
    EXPECT_FALSE(nameSpace->LastFailure());
    server_.ForgetCalls();
    EXPECT_THROW(nameSpace->GetClass(kClass, TCIMContext())
                     ->EnumerateInstances([](const auto&) -> bool { throw 7; }, true, Held(1)),
                 int);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "CloseEnumeration"));
}

TEST_F(PulledReadingTest, AnEnumerationWithAnUnreadablePortionIsClosed) {
    ServePortions({{"a"}, {"b"}});
    server_.AnswerPortion("PullInstancesWithPath", "c1", "<UNKNOWN/>", "c2");
    const auto nameSpace = Faithful();
    EXPECT_EQ(FailureOf(*nameSpace), Kind::kMalformed);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "CloseEnumeration"));
}

TEST_F(PulledReadingTest, AnEnumerationThatIsReadToItsEndIsNotClosed) {
    ServePortions({{"a"}, {"b"}});
    EXPECT_THAT(Names(*Faithful(), Held(1), 2), ElementsAre("a", "b"));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath"));
}

TEST_F(PulledReadingTest, AStoppedEnumerationIsClosedAndHasNoMore) {
    ServePortions({{"a"}, {"b"}, {"c"}});
    const auto nameSpace = Faithful();
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace->GetReading());
    auto& cls = dynamic_cast<TCimHTTPClass&>(*nameSpace->GetClass(kClass, TCIMContext()));
    const auto enumeration = reading.OpenInstances(cls, true, Held(1));
    EXPECT_THAT(Methods(), IsEmpty());
    EXPECT_FALSE(enumeration->IsAtEnd());
    EXPECT_THAT(enumeration->Next(), SizeIs(2));
    EXPECT_FALSE(enumeration->IsAtEnd());
    enumeration->Stop();
    EXPECT_TRUE(enumeration->IsAtEnd());
    EXPECT_THAT(enumeration->Next(), IsEmpty());
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "PullInstancesWithPath", "CloseEnumeration"));
}

TEST_F(PulledReadingTest, AHeldCountThatIsNoWholeNumberIsRefused) {
    const auto nameSpace = Faithful();
    for (const TCIMValue& value : {TCIMValue("2"), TCIMValue(2), TCIMValue(0U), TCIMValue(), TCIMValue(true)}) {
        EXPECT_EQ(StatusOf([&] { Names(*nameSpace, {{kHeldKey, value}}); }), TVYXStatusCode::eTypeMismatch);
    }
    EXPECT_THAT(log_->Errors(), SizeIs(5));
    log_->Forget();
    EXPECT_THAT(Methods(), IsEmpty());
}

// --- Malicious servers ---------------------------------------------------------------------------------------------

TEST_F(PulledReadingTest, AnEnumerationWithoutEndPassesALimit) {
    server_.AnswerPortion("OpenEnumerateInstances", kClass, All({"a", "b"}), "x");
    server_.AnswerPortion("PullInstancesWithPath", "x", All({"c"}), "x");
    EXPECT_EQ(FailureOf(*Faithful({{kLimitBytesKey, TCIMValue(20000U)}})), Kind::kLimit);
    EXPECT_LT(Methods().size(), 50U);
    EXPECT_EQ(Methods().back(), "CloseEnumeration");

    server_.AnswerPortion("PullInstancesWithPath", "x", "", "x");
    EXPECT_EQ(FailureOf(*Faithful()), Kind::kLimit);
    EXPECT_THAT(Methods(), SizeIs(testing::Le(103U)));
}

TEST_F(PulledReadingTest, AllPortionsTogetherHaveAsManyObjectsAsTheHostAllows) {
    ServePortions({{"a", "b"}, {"c"}});
    EXPECT_EQ(FailureOf(*Faithful({{kLimitObjectsKey, TCIMValue(2U)}})), Kind::kLimit);
    EXPECT_EQ(FailureOf(*Faithful({{kLimitObjectsKey, TCIMValue(3U)}})), std::nullopt);
    EXPECT_EQ(FailureOf(*Faithful({{kLimitObjectsKey, TCIMValue(2U)}}), Held(1)), std::nullopt)
        << "what is not held does not count";
}

// --- The size of portions -------------------------------------------------------------------------------------------

TEST(PortionSizeTest, GrowsToWhatTakesHalfASecondAndNotTooFast) {
    PortionSize size;
    EXPECT_EQ(size.Next(), 100U);
    size.Took(100, milliseconds(250));
    EXPECT_EQ(size.Next(), 200U);
    size.Took(200, milliseconds(1));
    EXPECT_EQ(size.Next(), 800U);
    size.Took(800, milliseconds(1));
    size.Took(3200, milliseconds(1));
    EXPECT_EQ(size.Next(), PortionSize::kMost);
    size.Took(PortionSize::kMost, milliseconds(0));
    EXPECT_EQ(size.Next(), PortionSize::kMost);
}

TEST(PortionSizeTest, HasNoMoreThanAreToBeHeld) {
    PortionSize size(250);
    EXPECT_EQ(size.Next(), PortionSize::kFirst);
    for (int i = 0; i < 3; ++i) {
        size.Took(size.Next(), milliseconds(0));
    }
    EXPECT_EQ(size.Next(), 250U);
    EXPECT_EQ(PortionSize(7).Next(), 7U);
    EXPECT_EQ(PortionSize(0).Next(), 1U);
}

TEST(PortionSizeTest, ShrinksForASlowServerDownToOne) {
    PortionSize size;
    size.Took(100, std::chrono::seconds(5));
    EXPECT_EQ(size.Next(), 10U);
    size.Took(10, std::chrono::seconds(60));
    EXPECT_EQ(size.Next(), 1U);
}

TEST(PortionSizeTest, LearnsNothingFromAPortionThatIsSmallerThanAskedFor) {
    PortionSize size;
    size.Took(99, std::chrono::seconds(60));
    EXPECT_EQ(size.Next(), 100U);
}

} // namespace
