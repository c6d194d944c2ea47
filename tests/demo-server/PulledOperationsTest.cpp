#include "CimClient.h"
#include "HttpExchange.h"
#include "providers/LiveProviders.h"
#include "schema/SchemaReader.h"
#include "server/Answer.h"
#include "server/HttpListener.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace {

using cim::Answer;
using cim::Call;
using cim::Class;
using cim::Flag;
using cim::List;
using cim::Names;
using cim::Parameter;
using cim::Text;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr int kPort = 5988;
constexpr std::size_t kVolumes = 12;
constexpr std::size_t kMaxOpen = 3;
constexpr std::size_t kMaxObjects = 5;

// Statuses of DSP0200.
constexpr int kFailed = 1;
constexpr int kInvalidParameter = 4;
constexpr int kInvalidClass = 5;
constexpr int kNotFound = 6;
constexpr int kInvalidContext = 21;
constexpr int kInvalidTimeout = 22;
constexpr int kPullCannotBeAbandoned = 24;
constexpr int kFilteredNotSupported = 25;
constexpr int kContinuationNotSupported = 26;
constexpr int kLimitsExceeded = 27;

/// Waits in its second instance until it may go on; the third does not come to be.
class SlowProvider : public demo::InstanceProvider {
  public:
    class Cursor : public demo::InstanceCursor {
      public:
        explicit Cursor(const SlowProvider& provider) : provider_(provider), instance_{"DEMO_AllTypes", {}} {}

        const demo::Instance* Next() override {
            instance_.values["InstanceID"] = demo::Value::Text(std::to_string(count_));
            if (++count_ == 3) {
                provider_.waits.set_value();
                provider_.mayGoOn.get_future().wait();
            }
            if (count_ == 4) {
                throw std::runtime_error("the disk is on fire");
            }
            return &instance_;
        }

      private:
        const SlowProvider& provider_;
        demo::Instance instance_;
        int count_ = 0;
    };

    std::string_view ClassName() const override { return "DEMO_AllTypes"; }
    void Enumerate(const Visitor& /*visit*/) const override {}
    std::unique_ptr<demo::InstanceCursor> Open() const override { return std::make_unique<Cursor>(*this); }

    mutable std::promise<void> waits;
    mutable std::promise<void> mayGoOn;
};

/// A server with small limits, and with a clock that the test sets.
class PulledOperations : public testing::Test {
  protected:
    static demo::EnumerationLimits Limits() {
        demo::EnumerationLimits limits;
        limits.open = kMaxOpen;
        limits.objects = kMaxObjects;
        return limits;
    }

    demo::InstanceProviders Providers() {
        demo::InstanceProviders providers = demo::LiveProviders(schema_, demo::SystemFiles("/"), kVolumes);
        auto slow = std::make_unique<SlowProvider>();
        slow_ = slow.get();
        providers.erase(std::remove_if(providers.begin(), providers.end(),
                                       [](const auto& one) { return one->ClassName() == "DEMO_AllTypes"; }),
                        providers.end());
        providers.push_back(std::move(slow));
        return providers;
    }

    /// The output parameter; "absent" without one.
    static std::string Output(const Answer& answer, const char* name) {
        const auto parameter = cim::Named(answer.response, name);
        return parameter ? parameter.child("VALUE").text().get() : "absent";
    }
    static std::string Context(const Answer& answer) { return Output(answer, "EnumerationContext"); }
    static std::string End(const Answer& answer) { return Output(answer, "EndOfSequence"); }

    static std::size_t CountOf(const Answer& answer) {
        const auto objects = answer.Returned().children();
        return static_cast<std::size_t>(std::distance(objects.begin(), objects.end()));
    }

    static std::string Count(int objects) { return Text("MaxObjectCount", std::to_string(objects)); }

    static Answer OpenVolumes(int objects = 0, const std::vector<std::string>& more = {}) {
        std::vector<std::string> parameters{Class("DEMO_StorageVolume"), Count(objects)};
        parameters.insert(parameters.end(), more.begin(), more.end());
        return Call("OpenEnumerateInstances", parameters);
    }

    static Answer On(const std::string& method, const std::string& context) {
        return Call(method, {Text("EnumerationContext", context)});
    }

    static Answer Pull(const std::string& context, int objects, const std::string& method = "PullInstancesWithPath") {
        return Call(method, {Text("EnumerationContext", context), Count(objects)});
    }

    /// All objects, pulled so many at a time, as text.
    static Names PullAll(Answer answer, int objects, const std::string& method) {
        Names all;
        for (;; answer = Pull(Context(answer), objects, method)) {
            EXPECT_EQ(answer.error, 0) << answer.description;
            const Names portion = cim::RawChildren(answer.Returned());
            all.insert(all.end(), portion.begin(), portion.end());
            if (answer.error != 0 || End(answer) != "FALSE") {
                return all;
            }
        }
    }

    /// The XML of the elements at that place.
    static Names RawAt(const Answer& answer, const char* xpath) {
        Names texts;
        for (const auto& found : answer.Returned().select_nodes(xpath)) {
            texts.push_back(cim::Raw(found.node()));
        }
        return texts;
    }

    void Pass(std::chrono::seconds time) { elapsed_ += static_cast<int>(time.count()); }

    std::atomic<int> elapsed_{0};
    SlowProvider* slow_ = nullptr;
    demo::Schema schema_ = demo::BuiltInSchema();
    demo::InstanceProviders providers_ = Providers();
    const demo::CimService service_{demo::BuiltInSchema(), std::move(providers_), "demo.example", Limits(),
                                    [this] { return demo::Enumerations::Time(std::chrono::seconds(elapsed_)); }};
    const demo::Users users_;
    const demo::HttpListener listener_{service_, users_, nullptr, support::LoopbackAddress(), kPort, nullptr};
};

TEST_F(PulledOperations, BringEveryInstanceOnceInPortionsAsLargeAsAskedFor) {
    const Answer opened = OpenVolumes();
    EXPECT_EQ(CountOf(opened), 0U);
    EXPECT_EQ(End(opened), "FALSE");
    const Answer first = Pull(Context(opened), 2);
    EXPECT_EQ(CountOf(first), 2U);
    EXPECT_EQ(CountOf(Pull(Context(first), 0)), 0U);
    EXPECT_THAT(PullAll(OpenVolumes(), 4, "PullInstancesWithPath"), SizeIs(kVolumes));
    EXPECT_THAT(PullAll(OpenVolumes(3), 4, "PullInstancesWithPath"), SizeIs(kVolumes));
}

TEST_F(PulledOperations, GiveWhatTheOperationsWithoutPullingGive) {
    std::string pulled;
    for (const std::string& object : PullAll(OpenVolumes(), 5, "PullInstancesWithPath")) {
        EXPECT_THAT(object, StartsWith("<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>demo.example"));
        pulled += object.substr(object.find("<INSTANCENAME"));
    }
    std::string whole;
    for (const std::string& object :
         cim::RawChildren(Call("EnumerateInstances", {Class("DEMO_StorageVolume")}).Returned())) {
        whole += object.substr(object.find("<INSTANCENAME"));
    }
    const auto without = [](std::string text, const std::string& part) {
        for (auto place = text.find(part); place != std::string::npos; place = text.find(part)) {
            text.erase(place, part.size());
        }
        return text;
    };
    EXPECT_EQ(without(without(pulled, "</INSTANCEPATH>"), "</VALUE.INSTANCEWITHPATH>"),
              without(whole, "</VALUE.NAMEDINSTANCE>"));
}

TEST_F(PulledOperations, ReachTheSubclassesToo) {
    const auto names = [](const Answer& answer) { return CountOf(answer); };
    EXPECT_EQ(PullAll(Call("OpenEnumerateInstancePaths", {Class("CIM_StorageExtent")}), 5, "PullInstancePaths").size(),
              names(Call("EnumerateInstanceNames", {Class("CIM_StorageExtent")})));
}

TEST_F(PulledOperations, SayThatTheyHaveEndedWithTheLastObject) {
    const Answer last = Call("OpenEnumerateInstances", {Class("DEMO_OperatingSystem"), Count(1)});
    EXPECT_EQ(CountOf(last), 1U);
    EXPECT_EQ(End(last), "TRUE");
    EXPECT_EQ(Context(last), "absent");
    EXPECT_EQ(End(Call("OpenEnumerateInstances", {Class("DEMO_OperatingSystem")})), "FALSE");
}

TEST_F(PulledOperations, HonourWhatIsWantedOfEachInstance) {
    const auto properties = [](const std::vector<std::string>& more) {
        return cim::NamesOf(OpenVolumes(1, more).First().child("INSTANCE"), "PROPERTY");
    };
    EXPECT_THAT(properties({List({"DeviceID", "Capacity"})}), testing::UnorderedElementsAre("DeviceID", "Capacity"));
    const Answer origins = OpenVolumes(1, {Flag("IncludeClassOrigin", true), Flag("IncludeQualifiers", true)});
    EXPECT_THAT(cim::AttributesAt(origins.Returned(), ".//PROPERTY", "CLASSORIGIN"),
                testing::Not(testing::Contains("")));
    EXPECT_FALSE(origins.Returned().select_nodes(".//QUALIFIER").empty());
    const auto ofTop = [](bool deep) {
        const Answer answer =
            Call("OpenEnumerateInstances", {Class("CIM_OperatingSystem"), Flag("DeepInheritance", deep), Count(1)});
        return cim::NamesOf(answer.First().child("INSTANCE"), "PROPERTY").size();
    };
    EXPECT_LT(ofTop(false), ofTop(true));
}

TEST_F(PulledOperations, FollowAssociations) {
    const std::string source = cim::ComputerSystem();
    const auto compare = [&](const std::string& pulled, const std::string& whole, const std::string& pull,
                             const std::vector<std::string>& filter, const char* element) {
        std::vector<std::string> parameters{Parameter("InstanceName", source)};
        parameters.insert(parameters.end(), filter.begin(), filter.end());
        Names objects;
        for (Answer answer = Call(pulled, parameters);; answer = Pull(Context(answer), 3, pull)) {
            EXPECT_EQ(answer.error, 0) << answer.description;
            const Names portion = RawAt(answer, element);
            objects.insert(objects.end(), portion.begin(), portion.end());
            if (answer.error != 0 || End(answer) != "FALSE") {
                break;
            }
        }
        parameters[0] = Parameter("ObjectName", source);
        const Names expected = RawAt(Call(whole, parameters), element);
        EXPECT_EQ(objects, expected) << pulled;
        EXPECT_THAT(objects, testing::Not(IsEmpty())) << pulled;
    };
    const std::vector<std::string> ofResult{Class("ResultClass", "DEMO_StorageVolume")};
    const std::vector<std::string> ofAssociation{Class("ResultClass", "CIM_RunningOS")};
    compare("OpenAssociatorInstances", "Associators", "PullInstancesWithPath", ofResult, ".//INSTANCE");
    compare("OpenAssociatorInstancePaths", "AssociatorNames", "PullInstancePaths", ofResult, ".//INSTANCEPATH");
    compare("OpenReferenceInstances", "References", "PullInstancesWithPath", ofAssociation, ".//INSTANCE");
    compare("OpenReferenceInstancePaths", "ReferenceNames", "PullInstancePaths", ofAssociation,
            "OBJECTPATH/INSTANCEPATH | INSTANCEPATH");
}

TEST_F(PulledOperations, GiveNoMoreThanThePortionThatTheServerAllows) {
    EXPECT_EQ(CountOf(OpenVolumes(1000)), kMaxObjects);
    EXPECT_EQ(CountOf(Pull(Context(OpenVolumes()), 1000)), kMaxObjects);
}

TEST_F(PulledOperations, EndAPortionWhenItsTextIsLong) {
    demo::EnumerationLimits limits;
    limits.bytes = 1;
    demo::Schema schema = demo::BuiltInSchema();
    demo::InstanceProviders providers = demo::LiveProviders(schema, demo::SystemFiles("/"), kVolumes);
    const demo::CimService service(std::move(schema), std::move(providers), "demo.example", limits);
    demo::CimRequest request;
    request.method = "OpenEnumerateInstances";
    request.nameSpace = "root/cimv2";
    request.parameters = {{"ClassName", "CLASSNAME", demo::Value::Reference({"DEMO_StorageVolume", {}})},
                          {"MaxObjectCount", "VALUE", demo::Value::Text("7")}};
    const std::string text = demo::Answer(service, request)->text;
    EXPECT_NE(text.find("volume-0000000"), std::string::npos);
    EXPECT_EQ(text.find("volume-0000001"), std::string::npos);
}

TEST_F(PulledOperations, RefuseMoreOpenEnumerationsThanThereMayBe) {
    const std::string first = Context(OpenVolumes());
    OpenVolumes();
    OpenVolumes();
    EXPECT_EQ(OpenVolumes().error, kLimitsExceeded);
    EXPECT_EQ(Call("OpenEnumerateInstances", {Class("DEMO_OperatingSystem"), Count(1)}).error, kLimitsExceeded);
    EXPECT_EQ(On("CloseEnumeration", first).error, 0);
    EXPECT_EQ(OpenVolumes().error, 0);
}

TEST_F(PulledOperations, AreClosedAtTheirEndAndByCloseEnumeration) {
    const std::string closed = Context(OpenVolumes());
    const Answer answer = On("CloseEnumeration", closed);
    EXPECT_EQ(answer.error, 0);
    EXPECT_THAT(cim::RawChildren(answer.response), IsEmpty());
    const std::string ended = Context(OpenVolumes());
    for (int i = 0; i < 3; ++i) {
        Pull(ended, 1000);
    }
    for (const std::string& context : {closed, ended, std::string("invented")}) {
        EXPECT_EQ(Pull(context, 1).error, kInvalidContext);
        EXPECT_EQ(On("CloseEnumeration", context).error, kInvalidContext);
        EXPECT_EQ(On("EnumerationCount", context).error, kInvalidContext);
    }
}

TEST_F(PulledOperations, AreClosedAfterTheirTimeout) {
    const std::string usual = Context(OpenVolumes());
    const std::string patient = Context(OpenVolumes(0, {Text("OperationTimeout", "300")}));
    Pass(std::chrono::seconds(59));
    EXPECT_EQ(Pull(usual, 0).error, 0); // which begins its time again
    Pass(std::chrono::seconds(59));
    EXPECT_EQ(Pull(usual, 1).error, 0);
    Pass(std::chrono::seconds(60));
    const Answer late = Pull(usual, 1);
    EXPECT_EQ(late.error, kInvalidContext);
    EXPECT_THAT(late.description, HasSubstr("in time"));
    EXPECT_EQ(Pull(patient, 1).error, 0);
    Pass(std::chrono::seconds(300));
    EXPECT_EQ(Pull(patient, 1).error, kInvalidContext);
    for (std::size_t i = 0; i < kMaxOpen; ++i) {
        EXPECT_EQ(OpenVolumes().error, 0);
    }
}

TEST_F(PulledOperations, AreNotSupportedWhereNoEnumerationMayBeOpen) {
    demo::EnumerationLimits limits;
    limits.open = 0;
    const demo::CimService service(demo::BuiltInSchema(), {}, "demo.example", limits);
    demo::CimRequest request;
    request.method = "OpenEnumerateInstances";
    request.nameSpace = "root/cimv2";
    EXPECT_EQ(demo::Answer(service, request)->error->Code(), "7");
}

TEST_F(PulledOperations, RefuseAnOperationTimeoutThatIsTooLongOrUnlimited) {
    EXPECT_EQ(OpenVolumes(0, {Text("OperationTimeout", "600")}).error, 0);
    EXPECT_EQ(OpenVolumes(0, {Text("OperationTimeout", "601")}).error, kInvalidTimeout);
    EXPECT_EQ(OpenVolumes(0, {Text("OperationTimeout", "0")}).error, kInvalidTimeout);
}

TEST_F(PulledOperations, RefuseFiltersAndContinuationOnError) {
    EXPECT_EQ(OpenVolumes(0, {Text("FilterQueryLanguage", "DMTF:FQL"), Text("FilterQuery", "Capacity > 1")}).error,
              kFilteredNotSupported);
    EXPECT_EQ(OpenVolumes(0, {Flag("ContinueOnError", true)}).error, kContinuationNotSupported);
    EXPECT_EQ(OpenVolumes(0, {Flag("ContinueOnError", false), Text("FilterQuery", "")}).error, 0);
}

TEST_F(PulledOperations, RefuseInvalidParameters) {
    EXPECT_EQ(Call("OpenEnumerateInstances").error, kInvalidParameter);
    EXPECT_EQ(Call("OpenEnumerateInstances", {Class("Nope")}).error, kInvalidClass);
    EXPECT_EQ(Call("OpenEnumerateInstancePaths", {Class("Nope")}).error, kInvalidClass);
    EXPECT_EQ(OpenVolumes(0, {Text("OperationTimeout", "soon")}).error, kInvalidParameter);
    EXPECT_EQ(OpenVolumes(0, {Text("OperationTimeout", "4294967296")}).error, kInvalidParameter);
    EXPECT_EQ(OpenVolumes(-1).error, kInvalidParameter);
    EXPECT_EQ(On("PullInstancesWithPath", "x").error, kInvalidParameter);
    EXPECT_EQ(Call("PullInstancePaths", {Count(1)}).error, kInvalidParameter);
    EXPECT_EQ(Call("CloseEnumeration").error, kInvalidParameter);
    EXPECT_EQ(Call("OpenReferenceInstances", {Parameter("InstanceName", cim::Process(0))}).error, kNotFound);
    EXPECT_EQ(
        Call("OpenAssociatorInstances", {Parameter("InstanceName", cim::ComputerSystem()), Class("AssocClass", "Nope")})
            .error,
        kInvalidParameter);
    EXPECT_EQ(Call("OpenReferenceInstancePaths", {Class("InstanceName", "CIM_System")}).error, kInvalidParameter);
}

TEST_F(PulledOperations, ContinueOnlyForTheirKindOfObjects) {
    const std::string instances = Context(OpenVolumes());
    const std::string paths = Context(Call("OpenEnumerateInstancePaths", {Class("DEMO_StorageVolume")}));
    EXPECT_EQ(Pull(instances, 1, "PullInstancePaths").error, kInvalidContext);
    EXPECT_EQ(Pull(paths, 1, "PullInstancesWithPath").error, kInvalidContext);
    EXPECT_EQ(Pull(paths, 1, "PullInstancePaths").error, 0);
    EXPECT_EQ(Pull(instances, 1).error, 0);
}

TEST_F(PulledOperations, CountWhatIsLeftWhereThatIsKnown) {
    const Answer opened = Call("OpenAssociatorInstancePaths", {Parameter("InstanceName", cim::ComputerSystem()),
                                                               Class("ResultClass", "DEMO_StorageVolume"), Count(2)});
    ASSERT_EQ(CountOf(opened), 2U);
    const Answer counted = On("EnumerationCount", Context(opened));
    EXPECT_EQ(counted.First().text().get(), std::to_string(kVolumes - 2));
    const Answer unknown = On("EnumerationCount", Context(OpenVolumes()));
    EXPECT_EQ(unknown.error, 0);
    EXPECT_TRUE(unknown.Returned());
    EXPECT_FALSE(unknown.First());
}

TEST_F(PulledOperations, CannotBeUsedTwiceAtTheSameTime) {
    const std::string context = Context(Call("OpenEnumerateInstances", {Class("DEMO_AllTypes"), Count(1)}));
    std::thread busy([&] { EXPECT_EQ(Pull(context, 1).error, 0); });
    slow_->waits.get_future().wait();
    EXPECT_EQ(Pull(context, 1).error, kFailed);
    EXPECT_EQ(On("CloseEnumeration", context).error, kPullCannotBeAbandoned);
    Pass(std::chrono::hours(1)); // it is not late as long as somebody is at work on it
    EXPECT_EQ(OpenVolumes().error, 0);
    slow_->mayGoOn.set_value();
    busy.join();
    EXPECT_EQ(On("CloseEnumeration", context).error, 0);
}

TEST_F(PulledOperations, EndWithAnErrorOfAProvider) {
    slow_->mayGoOn.set_value();
    const std::string context = Context(Call("OpenEnumerateInstances", {Class("DEMO_AllTypes"), Count(1)}));
    const Answer failed = Pull(context, 5);
    EXPECT_EQ(failed.error, kFailed);
    EXPECT_THAT(failed.description, HasSubstr("the disk is on fire"));
    EXPECT_EQ(Pull(context, 1).error, kInvalidContext);
}

} // namespace
