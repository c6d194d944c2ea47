#include "PluginTest.h"
#include "model/TCimHTTPInstance.h"

#include <tuple>

using namespace NQORVYX20;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// A class that fails to allocate its second instance.
class OneInstanceClass : public TCimHTTPClass {
  public:
    using TCimHTTPClass::TCimHTTPClass;

    boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) override {
        if (count_++ > 0) {
            failure();
        }
        return TCimHTTPClass::AllocateInstance(context);
    }

    boost::function<void()> failure;

  private:
    int count_ = 0;
};

/// An instance that keeps the context with which it was asked for its reference.
class WatchedInstance : public TCimHTTPInstance {
  public:
    using TCimHTTPInstance::TCimHTTPInstance;

    TCIMReference GetReference(TCIMContext context) const override {
        askedWith = context;
        return TCimHTTPInstance::GetReference(context);
    }

    mutable TCIMContext askedWith;
};

class InstanceTest : public PluginTest {
  protected:
    InstanceTest() {
        ServeClass("TEST_Disk", "",
                   PropertyXml("Name", "string", KeyXml()) + PropertyXml("Size", "uint64") +
                       "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>");
        namespace_ = ConnectedNamespace();
        disk_ = FetchClass(*namespace_, "TEST_Disk");
        server_.ForgetCalls();
        log_->Forget();
    }

    void ServeInstances(const std::string& className, const std::string& instances) {
        server_.Answer("EnumerateInstances", className, instances);
    }

    static std::string DiskXml(const std::string& name, const std::string& size) {
        return InstanceXml("TEST_Disk", "Name", name,
                           PropertyXml("Name", "string", ValueXml(name)) +
                               PropertyXml("Size", "uint64", ValueXml(size)));
    }

    static std::vector<boost::shared_ptr<ICIMInstance>> Instances(TCimHTTPClass& cls, bool deep = false) {
        std::vector<boost::shared_ptr<ICIMInstance>> instances;
        cls.EnumerateInstances(
            [&](const auto& instance) {
                instances.push_back(instance);
                return true;
            },
            deep, TCIMContext());
        return instances;
    }

    static std::string Text(const ICIMInstance& instance, const std::string& property) {
        return instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext()).ToString(10);
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> disk_;
};

} // namespace

TEST_F(InstanceTest, TheFirstEnumerationAsksTheServerAndLaterOnesTheCache) {
    ServeInstances("TEST_Disk", DiskXml("sda", "100"));
    const auto first = Instances(*disk_);
    const auto second = Instances(*disk_);
    ASSERT_EQ(first.size(), 1U);
    EXPECT_EQ(first, second);
    const auto calls = server_.Calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].method, "EnumerateInstances");
    EXPECT_EQ(calls[0].nameSpace, "root/cimv2");
    EXPECT_EQ(calls[0].parameters.at("ClassName"), "TEST_Disk");
    EXPECT_THAT(calls[0].parameters.at("LocalOnly"), testing::StrCaseEq("true"));
    EXPECT_THAT(calls[0].parameters.at("DeepInheritance"), testing::StrCaseEq("false"));
    EXPECT_THAT(calls[0].parameters.at("IncludeQualifiers"), testing::StrCaseEq("false"));
    EXPECT_THAT(calls[0].parameters.at("IncludeClassOrigin"), testing::StrCaseEq("false"));
    EXPECT_EQ(calls[0].parameters.count("PropertyList"), 0U);
}

TEST_F(InstanceTest, OfAPropertyThatIsSentTwiceTheLastGoodValueCounts) {
    const auto disk = [](const std::string& name, const std::string& again) {
        return InstanceXml("TEST_Disk", "Name", name,
                           PropertyXml("Name", "string", ValueXml(name)) +
                               PropertyXml("Size", "uint64", ValueXml("100")) + again);
    };
    ServeInstances("TEST_Disk", disk("sda", PropertyXml("SIZE", "uint64", ValueXml("200"))) +
                                    disk("sdb", PropertyXml("SIZE", "string", ValueXml("many"))));
    const auto disks = Instances(*disk_);
    ASSERT_EQ(disks.size(), 2U);
    EXPECT_EQ(Text(*disks[0], "Size"), "200");
    EXPECT_EQ(Text(*disks[1], "Size"), "100");
}

TEST_F(InstanceTest, DeepIsPassedOnToTheServer) {
    ServeInstances("TEST_Disk", DiskXml("sda", "100"));
    Instances(*disk_, true);
    EXPECT_THAT(server_.Calls().at(0).parameters.at("DeepInheritance"), testing::StrCaseEq("true"));
}

TEST_F(InstanceTest, EachInstanceMayHaveItsPropertiesInAnotherOrder) {
    const std::string name = PropertyXml("Name", "string", ValueXml("sda"));
    const std::string size = PropertyXml("Size", "uint64", ValueXml("100"));
    ServeInstances("TEST_Disk", InstanceXml("TEST_Disk", "Name", "sda", name + size) +
                                    InstanceXml("TEST_Disk", "Name", "sdb",
                                                PropertyXml("SIZE", "uint64", ValueXml("200")) +
                                                    PropertyXml("Name", "string", ValueXml("sdb"))) +
                                    InstanceXml("TEST_Disk", "Name", "sdc",
                                                PropertyXml("Size", "uint64", ValueXml("300")) +
                                                    PropertyXml("Colour", "string", ValueXml("red")) +
                                                    PropertyXml("Name", "string", ValueXml("sdc"))));
    const auto disks = Instances(*disk_);
    ASSERT_EQ(disks.size(), 3U);
    for (const auto& [disk, expectedName, expectedSize] :
         {std::tuple(disks[0], "sda", "100"), std::tuple(disks[1], "sdb", "200"), std::tuple(disks[2], "sdc", "300")}) {
        EXPECT_EQ(Text(*disk, "Name"), expectedName);
        EXPECT_EQ(Text(*disk, "Size"), expectedSize);
    }
    EXPECT_THAT(log_->Errors(), Contains("TCimHTTPClass::EnumerateInstances - Unable to retrieve property: Colour"));
}

TEST_F(InstanceTest, ValuesArriveConverted) {
    ServeInstances("TEST_Disk",
                   InstanceXml("TEST_Disk", "Name", "sda",
                               PropertyXml("Name", "string", ValueXml("sda")) +
                                   PropertyXml("Size", "uint64", ValueXml("18446744073709551615")) +
                                   "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"><VALUE.ARRAY><VALUE>a &amp; b</VALUE>"
                                   "<VALUE>c</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"));
    const auto disk = Instances(*disk_).at(0);
    EXPECT_EQ(disk->GetProperty("size", TCIMContext())->GetValue(TCIMContext()), TCIMValue(18446744073709551615ULL));
    EXPECT_EQ(Text(*disk, "Name"), "sda");
    EXPECT_EQ(Text(*disk, "Tags"), "{a & b, c}");
    EXPECT_EQ(disk->GetClass(TCIMContext()), disk_);
}

TEST_F(InstanceTest, ANullPropertyArrivesAsTheEmptyValueOfItsTypeAndANullBooleanAsFalse) {
    const std::string properties = PropertyXml("On", "boolean") + PropertyXml("Count", "uint64") +
                                   PropertyXml("Label", "string") + PropertyXml("Since", "datetime") +
                                   "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>";
    ServeClass("TEST_Blank", "", PropertyXml("Name", "string", KeyXml()) + properties);
    ServeInstances("TEST_Blank", InstanceXml("TEST_Blank", "Name", "a", properties));
    const auto blank = Instances(*FetchClass(*namespace_, "TEST_Blank")).at(0);
    const auto valueOf = [&](const char* name) {
        const auto property = blank->GetProperty(name, TCIMContext());
        EXPECT_FALSE(property->IsDefaultValue(TCIMContext())) << name << " has a value of its own";
        return property->GetValue(TCIMContext());
    };
    EXPECT_EQ(valueOf("On"), TCIMValue(false));
    EXPECT_EQ(valueOf("Count"), TCIMValue(0ULL));
    EXPECT_EQ(valueOf("Label"), TCIMValue(""));
    EXPECT_EQ(valueOf("Since"), TCIMValue(TCIMDateTime()));
    EXPECT_EQ(valueOf("Tags"), TCIMValue(ECIMType::eCIMString, 0, {}));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InstanceTest, InstancesComeInTheOrderOfTheirPaths) {
    ServeInstances("TEST_Disk", DiskXml("sdc", "1") + DiskXml("sda", "2") + DiskXml("sdb", "3"));
    std::vector<std::string> names;
    for (const auto& disk : Instances(*disk_)) {
        names.push_back(Text(*disk, "Name"));
    }
    EXPECT_THAT(names, ElementsAre("sda", "sdb", "sdc"));
}

TEST_F(InstanceTest, EachInstanceIsLogged) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "3"));
    Instances(*disk_);
    const std::string line = "TCimHTTPClass::EnumerateInstances created instance: TEST_Disk";
    EXPECT_THAT(log_->Debug(), ElementsAre(line, line));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InstanceTest, AClassWithoutInstancesIsAskedForAgainOnEveryCall) {
    ServeInstances("TEST_Disk", "");
    EXPECT_THAT(Instances(*disk_), IsEmpty());
    EXPECT_THAT(Instances(*disk_), IsEmpty());
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 2U);
}

TEST_F(InstanceTest, OfTwoInstancesWithOnePathTheFirstStays) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sda", "2"));
    const auto disks = Instances(*disk_);
    ASSERT_EQ(disks.size(), 1U);
    EXPECT_EQ(Text(*disks[0], "Size"), "1");
}

TEST_F(InstanceTest, InstancesOfAClassWithoutKeysStayDistinct) {
    ServeClass("TEST_Sample", "", PropertyXml("Value", "uint32"));
    ServeInstances("TEST_Sample", "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Sample\"/><INSTANCE "
                                  "CLASSNAME=\"TEST_Sample\">" +
                                      PropertyXml("Value", "uint32", ValueXml("1")) +
                                      "</INSTANCE></VALUE.NAMEDINSTANCE><VALUE.NAMEDINSTANCE><INSTANCENAME "
                                      "CLASSNAME=\"TEST_Sample\"/><INSTANCE CLASSNAME=\"TEST_Sample\">" +
                                      PropertyXml("Value", "uint32", ValueXml("2")) +
                                      "</INSTANCE></VALUE.NAMEDINSTANCE>");
    EXPECT_EQ(Instances(*FetchClass(*namespace_, "TEST_Sample")).size(), 2U);
}

TEST_F(InstanceTest, InstancesOfAClassWithoutKeysStayDistinctAlsoWhereTheirValuesAreEqual) {
    ServeClass("TEST_Sample", "", PropertyXml("Value", "uint32"));
    const std::string sample = "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Sample\"/><INSTANCE "
                               "CLASSNAME=\"TEST_Sample\">" +
                               PropertyXml("Value", "uint32", ValueXml("1")) + "</INSTANCE></VALUE.NAMEDINSTANCE>";
    ServeInstances("TEST_Sample", sample + sample + sample);
    const auto cls = FetchClass(*namespace_, "TEST_Sample");
    const auto samples = Instances(*cls);
    ASSERT_EQ(samples.size(), 3U);
    for (const auto& instance : samples) {
        EXPECT_EQ(cls->GetInstance(instance->BuildPath(TCIMContext()), TCIMContext()), instance);
        EXPECT_TRUE(*instance == *samples[0]);
    }
    cls->RemoveInstance(samples[1]);
    EXPECT_THAT(Instances(*cls), ElementsAre(samples[0], samples[2]));
}

TEST_F(InstanceTest, AnUndeclaredPropertyIsLoggedAndTheRestIsKept) {
    ServeInstances("TEST_Disk", InstanceXml("TEST_Disk", "Name", "sda",
                                            PropertyXml("Vendor", "string", ValueXml("ACME")) +
                                                PropertyXml("Name", "string", ValueXml("sda")) +
                                                PropertyXml("Size", "string", ValueXml("big"))));
    const auto disks = Instances(*disk_);
    ASSERT_EQ(disks.size(), 1U);
    EXPECT_EQ(Text(*disks[0], "Name"), "sda");
    EXPECT_TRUE(disks[0]->GetProperty("Size", TCIMContext())->IsDefaultValue(TCIMContext()));
    EXPECT_THAT(log_->Errors(), Contains("TCimHTTPClass::EnumerateInstances - Unable to retrieve property: Vendor"));
    EXPECT_THAT(log_->Errors(), Contains("TCimHTTPClass::EnumerateInstances - Unable to retrieve property: Size"));
}

TEST_F(InstanceTest, APropertyWhoseNameTheHostDoesNotKnowIsLoggedAndTheRestIsKept) {
    const std::string name = "Gr\xc3\xb6\xc3\x9f"
                             "e";
    ServeInstances("TEST_Disk", InstanceXml("TEST_Disk", "Name", "sda",
                                            PropertyXml(name, "datetime", ValueXml("20261121083900.000000+060")) +
                                                PropertyXml("Name", "string", ValueXml("sda"))));
    EXPECT_EQ(Text(*Instances(*disk_).at(0), "Name"), "sda");
    EXPECT_THAT(log_->Errors(),
                ElementsAre("CimHTTP: CIM name '" + name + "' is invalid",
                            "TCimHTTPClass::EnumerateInstances - Unable to retrieve property: " + name));
}

TEST_F(InstanceTest, OfAPropertyThatComesTwiceTheLastCounts) {
    ServeInstances("TEST_Disk", InstanceXml("TEST_Disk", "Name", "sda",
                                            PropertyXml("Name", "string", ValueXml("sda")) +
                                                PropertyXml("Size", "uint64", ValueXml("1")) +
                                                PropertyXml("Size", "uint64", ValueXml("2"))));
    EXPECT_EQ(Text(*Instances(*disk_).at(0), "Size"), "2");
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InstanceTest, ARemoteFailureIsLoggedAndRetriedOnTheNextCall) {
    server_.Fail("EnumerateInstances", "TEST_Disk", 1, "provider crashed");
    EXPECT_THAT(Instances(*disk_), IsEmpty());
    EXPECT_THAT(log_->Errors(),
                ElementsAre("TCimHTTPClass::EnumerateInstances from Pegasus for: TEST_Diskreturned exception: "
                            "CIM_ERR_FAILED: provider crashed"));
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    EXPECT_EQ(Instances(*disk_).size(), 1U);
}

TEST_F(InstanceTest, AFailedFetchIsNotRepeatedInTheSameEnumeration) {
    server_.Fail("EnumerateInstances", "TEST_Disk", 1, "provider crashed");
    for (const bool deep : {false, true}) {
        server_.ForgetCalls();
        Instances(*disk_, deep);
        EXPECT_EQ(server_.Calls().size(), 1U);
    }
}

TEST_F(InstanceTest, AServerThatClosesInTheMiddleOfTheInstancesLeavesAnEmptyResult) {
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n"
                           "Transfer-Encoding: chunked\r\n\r\n20\r\n<?xml version=\"1.0\"?><CIM CIMVER");
    EXPECT_THAT(Instances(*disk_), IsEmpty());
    EXPECT_THAT(
        log_->Errors(),
        ElementsAre(StartsWith("TCimHTTPClass::EnumerateInstances from Pegasus for: TEST_Diskreturned exception: ")));
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    EXPECT_EQ(Instances(*disk_).size(), 1U);
}

TEST_F(InstanceTest, ACallbackThatReturnsFalseEndsTheEnumerationBeforeAnySubclass) {
    ServeClass("TEST_Part", "", PropertyXml("Name", "string", KeyXml()));
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "2"));
    disk_->AddChildClass(FetchClass(*namespace_, "TEST_Part"));
    int calls = 0;
    disk_->EnumerateInstances(
        [&](const auto&) {
            ++calls;
            return false;
        },
        true, TCIMContext());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Part"), 0U);
}

TEST_F(InstanceTest, DeepDeliversASubclassesInstancesAsThisClassAndAgainAsTheSubclass) {
    ServeClass("TEST_Part", "TEST_Disk", PropertyXml("Name", "string", KeyXml()) + PropertyXml("Size", "uint64"));
    const auto part = FetchClass(*namespace_, "TEST_Part");
    const std::string partXml =
        InstanceXml("TEST_Part", "Name", "sda1", PropertyXml("Name", "string", ValueXml("sda1")));
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + partXml);
    ServeInstances("TEST_Part", partXml);
    disk_->AddChildClass(part);
    std::vector<std::string> seen;
    for (const auto& instance : Instances(*disk_, true)) {
        seen.push_back(instance->GetClass(TCIMContext())->GetName(TCIMContext()) + " " + Text(*instance, "Name"));
    }
    EXPECT_THAT(seen, ElementsAre("TEST_Disk sda", "TEST_Disk sda1", "TEST_Part sda1"));
}

TEST_F(InstanceTest, WhatIsThrownWhileInstancesAreFiledEndsTheFillingAndTheRestIsServed) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "2") + DiskXml("sdc", "3"));
    const auto fill = [&](const boost::function<void()>& fail) {
        const auto disk = boost::make_shared<OneInstanceClass>(namespace_, "TEST_Disk", nullptr);
        disk->Initialize();
        disk->failure = fail;
        log_->Forget();
        server_.ForgetCalls();
        EXPECT_EQ(Instances(*disk).size(), 1U);
        EXPECT_EQ(Instances(*disk).size(), 1U);
        EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 1U) << "what there is, is not fetched again";
    };
    fill([] { throw Pegasus::Exception("enough"); });
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPClass::EnumerateInstances from Pegasus for: TEST_Diskreturned "
                                            "exception: enough"));
    fill([] { throw std::runtime_error("enough"); });
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InstanceTest, WithoutItsNamespaceAClassServesWhatItHas) {
    ServeClass("TEST_Tape", "", "");
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    const auto tape = FetchClass(*namespace_, "TEST_Tape");
    Instances(*disk_);
    log_->Forget();
    namespace_.reset();
    EXPECT_EQ(Instances(*disk_).size(), 1U);
    EXPECT_THAT(Instances(*tape), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InstanceTest, ADeepEnumerationServesWhatAFlatOneHasFetched) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    Instances(*disk_);
    EXPECT_EQ(Instances(*disk_, true).size(), 1U);
    EXPECT_EQ(CountCalls("EnumerateInstances"), 1U);
}

TEST_F(InstanceTest, ACallbackThatReturnsFalseInASubclassEndsThatSubclassOnly) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    for (const char* name : {"TEST_Tape", "TEST_Drum"}) {
        ServeClass(name, "", PropertyXml("Name", "string", KeyXml()));
        std::string instances;
        for (const char* key : {"0", "1"}) {
            instances += InstanceXml(name, "Name", key, PropertyXml("Name", "string", ValueXml(key)));
        }
        ServeInstances(name, instances);
        disk_->AddChildClass(FetchClass(*namespace_, name));
    }
    std::vector<std::string> seen;
    disk_->EnumerateInstances(
        [&](const auto& instance) {
            seen.push_back(instance->BuildPath(TCIMContext()).GetPath());
            return seen.back() != "TEST_Tape.Name=\"0\"";
        },
        true, TCIMContext());
    EXPECT_THAT(seen, ElementsAre("TEST_Disk.Name=\"sda\"", "TEST_Tape.Name=\"0\"", "TEST_Drum.Name=\"0\"",
                                  "TEST_Drum.Name=\"1\""));
    for (const auto& call : server_.Calls()) {
        if (call.method == "EnumerateInstances") {
            EXPECT_THAT(call.parameters.at("DeepInheritance"), testing::StrCaseEq("true"));
        }
    }
}

TEST_F(InstanceTest, ACallbackMayRemoveTheInstancesThatItSees) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "2"));
    int calls = 0;
    disk_->EnumerateInstances(
        [&](const auto& instance) {
            ++calls;
            disk_->RemoveInstance(instance);
            return true;
        },
        false, TCIMContext());
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Instances(*disk_).size(), 2U);
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 2U);
}

TEST_F(InstanceTest, TheRootClassHasNoInstancesOfItsOwn) {
    EXPECT_THAT(Instances(*namespace_->GetRootClass()), IsEmpty());
    EXPECT_EQ(CountCalls("EnumerateInstances"), 0U);
    EXPECT_THAT(log_->Errors(), ElementsAre(StartsWith(
                                    "TCimHTTPClass::EnumerateInstances from Pegasus for: <root>returned exception: ")));
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    EXPECT_EQ(Instances(*namespace_->GetRootClass(), true).size(), 1U) << "deep gives those of the classes below";
}

TEST_F(InstanceTest, WhatACallbackThrowsReachesTheCallerAndTheCacheStays) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "2"));
    EXPECT_THROW(disk_->EnumerateInstances([](const auto&) -> bool { throw std::runtime_error("enough"); }, false,
                                           TCIMContext()),
                 std::runtime_error);
    EXPECT_THROW(disk_->EnumerateInstances({}, false, TCIMContext()), boost::bad_function_call);
    EXPECT_EQ(Instances(*disk_).size(), 2U);
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 1U);
}

TEST_F(InstanceTest, AnInstanceMayHaveVeryManyProperties) {
    constexpr int kCount = 5000;
    std::string declarations;
    std::string values;
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "P" + std::to_string(i);
        declarations += PropertyXml(name, "uint32", i % 2 == 0 ? KeyXml() : "");
        values.insert(0, PropertyXml(name, "uint32", ValueXml(std::to_string(i))));
    }
    ServeClass("TEST_Huge", "", declarations);
    ServeInstances("TEST_Huge", InstanceXml("TEST_Huge", "P0", "0", values));
    const auto huge = FetchClass(*namespace_, "TEST_Huge");
    const auto instances = Instances(*huge);
    ASSERT_EQ(instances.size(), 1U);
    for (int i = 0; i < kCount; ++i) {
        ASSERT_EQ(Text(*instances[0], "p" + std::to_string(i)), std::to_string(i));
    }
    EXPECT_EQ(huge->GetInstance(instances[0]->BuildPath(TCIMContext()), TCIMContext()), instances[0]);
}

// --- The cache ---------------------------------------------------------------------------------------------------

TEST_F(InstanceTest, GetInstanceFindsWhatWasEnumeratedAndAsksNobody) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    TCIMReference reference{namespace_, {{"Name", TCIMValue("sda")}}};
    reference.SetClassName("TEST_Disk");
    EXPECT_FALSE(namespace_->GetInstance(reference, TCIMContext()));
    const auto disk = Instances(*disk_).at(0);
    server_.ForgetCalls();
    EXPECT_EQ(namespace_->GetInstance(reference, TCIMContext()), disk);
    EXPECT_EQ(disk_->GetInstance(disk->BuildPath(TCIMContext()), TCIMContext()), disk);
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(InstanceTest, GetInstanceFetchesTheClassThatItNeeds) {
    ServeClass("TEST_Tape", "", "");
    TCIMReference reference{namespace_, TCIMContext()};
    reference.SetClassName("TEST_Tape");
    EXPECT_FALSE(namespace_->GetInstance(reference, TCIMContext()));
    EXPECT_EQ(CountCalls("GetClass", "TEST_Tape"), 2U);
}

TEST_F(InstanceTest, GetInstanceWithoutAClassNameLooksIntoTheRootClass) {
    EXPECT_FALSE(namespace_->GetInstance(TCIMReference{namespace_, {{"Name", TCIMValue("sda")}}}, TCIMContext()));
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::GetClass  : return <root>"));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(InstanceTest, AnAllocatedInstanceJoinsTheCacheThroughAddToNamespace) {
    const auto disk = disk_->AllocateInstance(TCIMContext());
    disk->SetPropertyValue("Name", TCIMValue("made here"), TCIMContext());
    EXPECT_FALSE(disk_->GetInstance(disk->BuildPath(TCIMContext()), TCIMContext()));
    disk->AddToNamespace(TCIMContext());
    EXPECT_EQ(disk_->GetInstance(disk->BuildPath(TCIMContext()), TCIMContext()), disk);
    EXPECT_THAT(Instances(*disk_), ElementsAre(disk));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(InstanceTest, AnInstanceIsFiledOnceForItsPathAndRemovedByItsPath) {
    const auto make = [&] {
        auto disk = disk_->AllocateInstance(TCIMContext());
        disk->SetPropertyValue("Name", TCIMValue("made here"), TCIMContext());
        return disk;
    };
    const auto first = make();
    const auto second = make();
    disk_->AddInstance(first);
    disk_->AddInstance(second);
    EXPECT_THAT(Instances(*disk_), ElementsAre(first));
    disk_->RemoveInstance(second);
    EXPECT_FALSE(disk_->GetInstance(first->BuildPath(TCIMContext()), TCIMContext()));
    disk_->RemoveInstance(second);
}

TEST_F(InstanceTest, BuildPathHandsItsContextToGetReference) {
    const auto disk = boost::make_shared<WatchedInstance>(disk_, TCIMContext());
    disk->BuildPath({{"Colour", TCIMValue("red")}});
    EXPECT_EQ(disk->askedWith, (TCIMContext{{"Colour", TCIMValue("red")}}));
}

TEST_F(InstanceTest, BuildPathIsTheReference) {
    const auto disk = disk_->AllocateInstance(TCIMContext());
    disk->SetPropertyValue("Name", TCIMValue("sda"), TCIMContext());
    EXPECT_EQ(disk->BuildPath(TCIMContext()).GetPath(), "TEST_Disk.Name=\"sda\"");
    EXPECT_EQ(disk->BuildPath(TCIMContext()), disk->GetReference(TCIMContext()));
}

TEST_F(InstanceTest, RemoveInstanceTakesOneAway) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1") + DiskXml("sdb", "2"));
    const auto disks = Instances(*disk_);
    disk_->RemoveInstance(disks.at(0));
    EXPECT_THAT(Instances(*disk_), ElementsAre(disks.at(1)));
}

TEST_F(InstanceTest, AHeldInstanceOutlivesItsNamespaceWithoutHarm) {
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    const auto disk = Instances(*disk_).at(0);
    disk_.reset();
    namespace_.reset();
    EXPECT_THROW(disk->GetClass(TCIMContext()), boost::bad_weak_ptr);
}

TEST_F(InstanceTest, ClearInstancesEmptiesTheClassAndAllBelow) {
    ServeClass("TEST_Part", "", PropertyXml("Name", "string", KeyXml()) + "<METHOD NAME=\"Format\" TYPE=\"uint32\"/>");
    ServeInstances("TEST_Disk", DiskXml("sda", "1"));
    const auto part = FetchClass(*namespace_, "TEST_Part");
    disk_->AddChildClass(part);
    Instances(*disk_);
    disk_->ClearInstances();
    for (const auto& cls : {disk_, part}) {
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateQualifiers(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumeratePropertyDecls(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateMethodDecls(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateSubClasses(v, true, TCIMContext()); }), IsEmpty());
    }
    server_.ForgetCalls();
    Instances(*disk_);
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 1U);
}
