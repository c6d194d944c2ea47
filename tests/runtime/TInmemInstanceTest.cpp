#include "host/TInmemInstance.h"

#include "host/ICIMProperty.h"
#include "host/TRootObject.h"
#include "runtime/ExpectStatus.h"
#include "runtime/RecordingLogger.h"
#include "runtime/TestModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <set>
#include <thread>

namespace NQORVYX20 {
namespace {

using namespace testingModel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TType = TCIMValue::TCIMType;

TCIMValue ReferenceTo(ICIMInstance& instance) {
    TCIMReference reference = instance.GetReference({});
    return reference;
}

TCIMValue EmptyReferenceTo(const std::string& className) {
    TCIMReference reference({}, {});
    reference.SetClassName(className);
    return reference;
}

std::string TextOf(const ICIMInstance& instance, const std::string& property) {
    return instance.GetProperty(property, {})->GetValue({}).ToString(10);
}

class TInmemInstanceTest : public testing::Test {
  protected:
    TInmemInstanceTest() {
        TRootObject::SetCoreLogger(log_);
        disk_->Declare("DeviceID", TCIMValue(TType::eCIMString, 0), true);
        disk_->Declare("Bus", static_cast<unsigned short>(0), true);
        disk_->Declare("Size", 512ULL);
        disk_->Declare("Labels", TCIMValue(TType::eCIMStringArray, 0));
        disk_->Declare("Parent", EmptyReferenceTo("Test_Disk"));
        point_->Declare("X", 0);
        point_->Declare("Y", TCIMValue(TType::eCIMSint32, 0));
    }

    ~TInmemInstanceTest() override { TRootObject::SetCoreLogger({}); }

    boost::shared_ptr<TRecordingLogger> log_ = boost::make_shared<TRecordingLogger>();
    boost::shared_ptr<TTestNamespace> namespace_ = boost::make_shared<TTestNamespace>();
    boost::shared_ptr<TTestClass> disk_ = namespace_->AddClass("Test_Disk");
    boost::shared_ptr<TTestClass> point_ = namespace_->AddClass("Test_Point");
};

TEST_F(TInmemInstanceTest, KeepsValuesWithoutRegardToTheCaseOfNames) {
    const auto disk = disk_->Add({{"deviceid", "sda"}});
    EXPECT_EQ(TextOf(*disk, "DeviceID"), "sda");
    disk->SetPropertyValue("DEVICEID", "sdb", {});
    EXPECT_EQ(TextOf(*disk, "deviceid"), "sdb");
}

TEST_F(TInmemInstanceTest, KeepsAnyNumberOfValues) {
    constexpr int kCount = 200;
    const auto cls = namespace_->AddClass("Test_Many");
    const auto name = [](int i) { return "P" + std::to_string(i); };
    for (int i = 0; i < kCount; ++i) {
        cls->Declare(name(i), -1, i < kCount / 2);
    }
    const auto many = cls->Add({});
    for (const int sign : {1, 2}) {
        for (int i = kCount - 2; i >= 0; --i) {
            many->SetPropertyValue(name(i), sign * i, {});
        }
        for (int i = 0; i < kCount - 1; ++i) {
            ASSERT_EQ(TextOf(*many, name(i)), std::to_string(sign * i));
        }
        EXPECT_TRUE(many->GetProperty(name(kCount - 1), {})->IsDefaultValue({}));
    }
    EXPECT_EQ(many->GetReference({}).GetKeyValue("p99"), TCIMValue(198));
    many->Validate({});

    const auto copy = cls->Add({{"P0", 7}});
    copy->ModifyInstance(many, {});
    EXPECT_TRUE(*copy == *many);
    copy->SetPropertyValue("P150", 1, {});
    EXPECT_EQ(TextOf(*copy, "P150"), "1");
    EXPECT_EQ(TextOf(*many, "P150"), "300");

    many->ModifyInstance(cls->Add({{"P1", 5}}), {});
    EXPECT_EQ(TextOf(*many, "P1"), "5");
    EXPECT_TRUE(many->GetProperty("P0", {})->IsDefaultValue({}));
}

TEST_F(TInmemInstanceTest, ShowsTheDefaultOfAPropertyThatWasNotSet) {
    const auto disk = disk_->Add({});
    const auto size = disk->GetProperty("Size", {});
    EXPECT_EQ(size->GetValue({}), TCIMValue(512ULL));
    EXPECT_TRUE(size->IsDefaultValue({}));
    EXPECT_TRUE(size->GetPropagated({}));

    disk->SetPropertyValue("Size", 512ULL, {});
    EXPECT_FALSE(size->IsDefaultValue({}));
    EXPECT_FALSE(size->GetPropagated({}));
}

TEST_F(TInmemInstanceTest, FollowsAChangedDefault) {
    const auto disk = disk_->Add({});
    disk_->GetPropertyDecl("Size", {})->SetDefaultValue(4096ULL, {});
    EXPECT_EQ(TextOf(*disk, "Size"), "4096");
}

TEST_F(TInmemInstanceTest, RefusesAPropertyThatItsClassDoesNotDeclare) {
    const auto disk = disk_->Add({});
    EXPECT_STATUS(TVYXStatusCode::eNotFound, disk->GetProperty("Speed", {}));
    EXPECT_STATUS(TVYXStatusCode::eNotFound, disk->SetPropertyValue("Speed", 1, {}));
    EXPECT_THAT(log_->Lines(), ElementsAre("error TInmemInstance: class Test_Disk declares no property Speed",
                                           "error TInmemInstance: class Test_Disk declares no property Speed"));
}

TEST_F(TInmemInstanceTest, RefusesAValueOfAnotherTypeAndKeepsTheOldOne) {
    const auto disk = disk_->Add({{"Size", 7ULL}});
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, disk->SetPropertyValue("Size", 8U, {}));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, disk->SetPropertyValue("Labels", "text", {}));
    EXPECT_EQ(TextOf(*disk, "Size"), "7");
    EXPECT_THAT(
        log_->Lines(),
        ElementsAre("error TInmemInstance: property Size of class Test_Disk is of type uint64, but the value is "
                    "of type uint32",
                    "error TInmemInstance: property Labels of class Test_Disk is of type string[], but the "
                    "value is of type string"));
}

TEST_F(TInmemInstanceTest, AcceptsANullOfAnyTypeAsItsOwnValue) {
    const auto disk = disk_->Add({{"Size", TCIMValue(TType::eCIMString, 0)}});
    const auto size = disk->GetProperty("Size", {});
    EXPECT_TRUE(size->GetValue({}).IsNull());
    EXPECT_EQ(size->GetValue({}).GetType(), TType::eCIMUint64);
    EXPECT_FALSE(size->IsDefaultValue({}));
}

TEST_F(TInmemInstanceTest, TakesAValueForADeclarationThatItsCallerHasAtHand) {
    const auto disk = disk_->Add({});
    const auto id = disk_->GetPropertyDecl("DeviceID", {});
    disk->TakePropertyValue(id, TCIMValue("sda, a text too long to be kept in place"));
    EXPECT_EQ(TextOf(*disk, "DeviceID"), "sda, a text too long to be kept in place");
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, disk->TakePropertyValue(id, TCIMValue(1)));
    EXPECT_EQ(TextOf(*disk, "DeviceID"), "sda, a text too long to be kept in place");
    disk->TakePropertyValue(id, TCIMValue(TType::eCIMUint64, 0));
    EXPECT_TRUE(disk->GetProperty("DeviceID", {})->GetValue({}).IsNull());
    EXPECT_EQ(disk->GetProperty("DeviceID", {})->GetValue({}).GetType(), TType::eCIMString);
}

TEST_F(TInmemInstanceTest, KnowsOneLayoutOnly) {
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, boost::make_shared<TTestInstance>(disk_, 2));
    EXPECT_THAT(log_->Lines(), ElementsAre("error TInmemInstance: there is no layout 2"));
}

TEST_F(TInmemInstanceTest, EnumeratesPropertiesInTheOrderOfTheirDeclarationsUntilTheCallbackStops) {
    const auto disk = disk_->Add({{"Size", 1ULL}, {"DeviceID", "sda"}});
    std::vector<std::string> names;
    const auto collect = [&](std::size_t limit) {
        names.clear();
        disk->EnumerateProperties(
            [&](boost::shared_ptr<ICIMProperty> property) {
                names.push_back(property->GetDeclaration({})->GetName({}));
                return names.size() < limit;
            },
            {});
        return names;
    };
    EXPECT_THAT(collect(99), ElementsAre("Bus", "DeviceID", "Labels", "Parent", "Size"));
    EXPECT_THAT(collect(1), ElementsAre("Bus"));
}

TEST_F(TInmemInstanceTest, IsReferredToByClassAndKeys) {
    const auto disk = disk_->Add({{"DeviceID", "sda"}, {"Size", 1ULL}});
    EXPECT_EQ(disk->GetReference({}).GetPath(), "Test_Disk.Bus=0,DeviceID=\"sda\"");
    EXPECT_EQ(disk->GetReference({}).GetNamespace(), namespace_);
    EXPECT_EQ(disk->BuildPath({}), disk->GetReference({}));
}

TEST_F(TInmemInstanceTest, IsReferredToByANumberOfItsOwnWhenTheClassHasNoKeys) {
    const auto point = point_->Add({{"Y", 2}});
    const auto next = point_->Add({{"Y", 2}});
    const auto numberOf = [](const ICIMInstance& instance) {
        return static_cast<unsigned long long>(instance.GetReference({}).GetKeyValue("#"));
    };
    const std::string path = "Test_Point.#=" + std::to_string(numberOf(*point));
    EXPECT_EQ(point->GetReference({}).GetPath(), path);
    EXPECT_GT(numberOf(*next), numberOf(*point));
    EXPECT_TRUE(*point == *next) << "they are compared by their values all the same";
    EXPECT_FALSE(*point < *next);

    next->SetPropertyValue("Y", 1, {});
    EXPECT_TRUE(*next < *point);
    *point = *next;
    EXPECT_EQ(point->GetReference({}).GetPath(), path) << "the number stays, whatever values it has";
}

TEST_F(TInmemInstanceTest, HasANumberOfItsOwnWhicheverThreadMadeIt) {
    constexpr std::size_t kCount = 1000;
    std::array<std::vector<std::string>, 2> paths;
    const auto make = [this](std::vector<std::string>& made) {
        for (std::size_t i = 0; i < kCount; ++i) {
            made.push_back(TTestInstance(point_, 1).GetReference({}).GetPath());
        }
    };
    std::thread other(make, std::ref(paths[1]));
    make(paths[0]);
    other.join();
    std::set<std::string> distinct(paths[0].begin(), paths[0].end());
    distinct.insert(paths[1].begin(), paths[1].end());
    EXPECT_EQ(distinct.size(), 2 * kCount);
}

TEST_F(TInmemInstanceTest, LeavesItsClassWhenDeleted) {
    const auto first = point_->Add({{"X", 1}});
    const auto second = point_->Add({{"X", 2}});
    first->Delete({});
    EXPECT_THAT(point_->Instances(), ElementsAre(boost::shared_ptr<ICIMInstance>(second)));
    EXPECT_EQ(TextOf(*first, "X"), "1");
}

TEST_F(TInmemInstanceTest, InvokesTheMethodOfItsClass) {
    TCIMContext parameters;
    EXPECT_EQ(point_->Add({})->InvokeMethod("Move", parameters, {}), TCIMValue(7));
    EXPECT_EQ(parameters["invoked"], TCIMValue("Move"));
}

TEST_F(TInmemInstanceTest, TakesOverTheValuesOfAnother) {
    const auto from = disk_->Add({{"DeviceID", "sda"}, {"Size", 1ULL}});
    const auto modified = disk_->Add({{"Size", 2ULL}, {"Bus", static_cast<unsigned short>(3)}});
    modified->ModifyInstance(from, {});
    EXPECT_EQ(TextOf(*modified, "Size"), "1");
    EXPECT_TRUE(modified->GetProperty("Bus", {})->IsDefaultValue({}));
    EXPECT_TRUE(*modified == *from);

    const auto assigned = disk_->Add({});
    *assigned = *from;
    EXPECT_TRUE(*assigned == *from);
    const auto& itself = *assigned;
    *assigned = itself;
    EXPECT_TRUE(*assigned == *from);

    const auto throughTheInterface = disk_->Add({});
    static_cast<ICIMInstance&>(*throughTheInterface) = *from;
    EXPECT_TRUE(*throughTheInterface == *from);
}

TEST_F(TInmemInstanceTest, StaysAsItWasWhenTheValuesOfAnotherDoNotFit) {
    const auto wide = namespace_->AddClass("Test_Wide");
    wide->Declare("Bus", static_cast<unsigned short>(0));
    wide->Declare("Size", "a text here");
    const auto disk = disk_->Add({{"DeviceID", "sda"}, {"Size", 1ULL}});
    const std::string before = disk->GetReference({}).GetPath();

    const auto badType = wide->Add({{"Bus", static_cast<unsigned short>(9)}, {"Size", "large"}});
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, disk->ModifyInstance(badType, {}));
    wide->Declare("Zone", 1);
    const auto badName = wide->Add({{"Bus", static_cast<unsigned short>(9)}, {"Zone", 2}});
    EXPECT_STATUS(TVYXStatusCode::eNotFound, disk->ModifyInstance(badName, {}));

    EXPECT_EQ(disk->GetReference({}).GetPath(), before);
    EXPECT_EQ(TextOf(*disk, "Size"), "1");
}

TEST_F(TInmemInstanceTest, TakesOverFromAnotherClassWhatBothDeclare) {
    const auto narrow = namespace_->AddClass("Test_Narrow");
    narrow->Declare("SIZE", 0ULL);
    const auto disk = disk_->Add({});
    disk->ModifyInstance(narrow->Add({{"Size", 5ULL}}), {});
    EXPECT_EQ(TextOf(*disk, "Size"), "5");
}

TEST_F(TInmemInstanceTest, IsComparedByClassThenByValues) {
    const auto sda = disk_->Add({{"DeviceID", "sda"}});
    const auto sdaAgain = disk_->Add({{"DeviceID", "sda"}, {"Size", 512ULL}});
    const auto sdb = disk_->Add({{"DeviceID", "sdb"}});
    const auto point = point_->Add({});
    EXPECT_TRUE(*sda == *sdaAgain);
    EXPECT_FALSE(*sda < *sdaAgain);
    EXPECT_FALSE(*sda == *sdb);
    EXPECT_TRUE(*sda < *sdb);
    EXPECT_FALSE(*sdb < *sda);
    EXPECT_TRUE(*sdb < *point);
    EXPECT_FALSE(*sdb == *point);
}

TEST_F(TInmemInstanceTest, IsComparedByTheNameOfItsClassAndNotByTheClassItself) {
    const auto elsewhere = boost::make_shared<TTestNamespace>();
    const auto namesake = elsewhere->AddClass("Test_Point");
    const auto other = elsewhere->AddClass("Test_Other");
    for (const auto& cls : {namesake, other}) {
        cls->Declare("X", 0);
        cls->Declare("Y", TCIMValue(TType::eCIMSint32, 0));
    }
    const auto point = point_->Add({{"X", 1}});
    EXPECT_TRUE(*point == *namesake->Add({{"X", 1}}));
    EXPECT_TRUE(*point < *namesake->Add({{"X", 2}}));
    EXPECT_FALSE(*point == *other->Add({{"X", 1}}));
    EXPECT_TRUE(*other->Add({{"X", 2}}) < *point) << "the name of the class goes before the values";
}

TEST_F(TInmemInstanceTest, ValidatesItsValuesAgainstTheClassAsItIsNow) {
    const auto disk = disk_->Add({{"Size", 1ULL}});
    disk->Validate({});
    disk_->GetPropertyDecl("Size", {})->SetDefaultValue("now a text", {});
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, disk->Validate({}));
    disk_->Undeclare("Size");
    EXPECT_STATUS(TVYXStatusCode::eNotFound, disk->Validate({}));
    disk_->Declare("Size", 0ULL);
    EXPECT_STATUS(TVYXStatusCode::eNotFound, disk->Validate({}));
}

TEST_F(TInmemInstanceTest, DoesNotKeepItsClassAlive) {
    const auto instance = point_->Add({{"X", 5}});
    const auto view = instance->GetProperty("X", {});
    instance->Delete({});
    const boost::weak_ptr<ICIMClass> observer = point_;
    namespace_->RemoveClass("Test_Point");
    point_.reset();

    EXPECT_TRUE(observer.expired());
    EXPECT_THROW(instance->GetClass({}), boost::bad_weak_ptr);
    EXPECT_THROW(instance->GetReference({}), boost::bad_weak_ptr);
    EXPECT_EQ(view->ToString(), "5");
    view->SetValue(6, {});
    EXPECT_EQ(view->ToString(), "6");
}

using TInmemPropertyTest = TInmemInstanceTest;

TEST_F(TInmemPropertyTest, ReadsAndWritesTheInstance) {
    const auto disk = disk_->Add({{"Size", 1ULL}});
    const auto size = disk->GetProperty("size", {});
    EXPECT_EQ(size->GetType({}), TType::eCIMUint64);
    EXPECT_FALSE(size->IsArray({}));
    EXPECT_EQ(size->GetDeclaration({}), disk_->GetPropertyDecl("Size", {}));

    disk->SetPropertyValue("Size", 2ULL, {});
    EXPECT_EQ(size->GetValue({}), TCIMValue(2ULL));
    size->SetValue(3ULL, {});
    EXPECT_EQ(TextOf(*disk, "Size"), "3");
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, size->SetValue("text", {}));
    EXPECT_EQ(TextOf(*disk, "Size"), "3");
}

TEST_F(TInmemPropertyTest, KeepsAReadValueGoodWhileOtherPropertiesChange) {
    const auto disk = disk_->Add({{"DeviceID", "sda, a text too long to be kept in place"}});
    const auto id = disk->GetProperty("DeviceID", {});
    const TCIMValue& value = id->GetValue({});
    disk->SetPropertyValue("Size", 1ULL, {});
    disk->SetPropertyValue("Labels", TCIMValue(TType::eCIMString, 0, {"a"}), {});
    disk->ExpectValues(100);
    disk->ModifyInstance(disk_->Add({}), {});
    EXPECT_EQ(value, TCIMValue("sda, a text too long to be kept in place"));
}

TEST_F(TInmemPropertyTest, KeepsAReadValueGoodWhileItsPropertyChanges) {
    const auto disk = disk_->Add({{"DeviceID", "sda, a text too long to be kept in place"}});
    const auto id = disk->GetProperty("DeviceID", {});
    const TCIMValue& value = id->GetValue({});
    disk->SetPropertyValue("DeviceID", "sdb", {});
    EXPECT_EQ(value, TCIMValue("sda, a text too long to be kept in place"));
    id->SetValue(value, {});
    EXPECT_EQ(id->GetValue({}), TCIMValue("sda, a text too long to be kept in place"));
    EXPECT_EQ(TextOf(*disk, "DeviceID"), "sda, a text too long to be kept in place");
}

TEST_F(TInmemPropertyTest, StaysWhatItIsWhenKeptDuringAnEnumeration) {
    const auto disk = disk_->Add({{"DeviceID", "sda"}, {"Bus", static_cast<unsigned short>(3)}});
    std::vector<boost::shared_ptr<ICIMProperty>> kept;
    disk->EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            EXPECT_FALSE(property->IsPrevValueDifferent());
            property->GetValue({});
            property->SetPrevValue();
            if (kept.size() < 2) {
                kept.push_back(property);
            }
            return true;
        },
        {});
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0]->GetDeclaration({})->GetName({}), "Bus");
    EXPECT_EQ(kept[0]->GetValue({}), TCIMValue(static_cast<unsigned short>(3)));
    EXPECT_TRUE(kept[0]->IsPrevValueDifferent());
    EXPECT_EQ(kept[1]->GetDeclaration({})->GetName({}), "DeviceID");
    EXPECT_EQ(kept[1]->ToString(), "sda");
}

TEST_F(TInmemPropertyTest, MayBeChangedDuringAnEnumeration) {
    const auto point = point_->Add({{"X", 1}, {"Y", 2}});
    point->EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            const TCIMValue& value = property->GetValue({});
            property->SetValue(static_cast<int>(value) + 10, {});
            point->SetPropertyValue("Y", 7, {});
            return true;
        },
        {});
    EXPECT_EQ(TextOf(*point, "X"), "11");
    EXPECT_EQ(TextOf(*point, "Y"), "7");
}

TEST_F(TInmemPropertyTest, KeepsItsInstanceAlive) {
    auto disk = disk_->Add({{"Size", 1ULL}});
    const auto size = disk->GetProperty("Size", {});
    disk->Delete({});
    disk.reset();
    EXPECT_EQ(size->ToString(), "1");
}

TEST_F(TInmemPropertyTest, HasAPreviousValueOfItsOwn) {
    const auto disk = disk_->Add({{"Size", 2ULL}});
    const auto size = disk->GetProperty("Size", {});
    EXPECT_FALSE(size->IsPrevValueDifferent());
    EXPECT_EQ(size->GetPrevValue(), TCIMValue(2ULL));

    size->SetPrevValue(1ULL);
    EXPECT_TRUE(size->IsPrevValueDifferent());
    EXPECT_EQ(size->PrevValueToString(), "1");
    EXPECT_EQ(size->ToString(), "2");
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, size->SetPrevValue("text"));
    EXPECT_EQ(size->PrevValueToString(), "1");
    EXPECT_FALSE(disk->GetProperty("Size", {})->IsPrevValueDifferent());

    size->SetPrevValue(TCIMValue(TType::eCIMString, 0));
    EXPECT_EQ(size->GetPrevValue(), TCIMValue(TType::eCIMString, 0));
    size->SetPrevValue();
    EXPECT_TRUE(size->IsPrevValueDifferent());
    EXPECT_EQ(size->GetPrevValue(), TCIMValue());
}

TEST_F(TInmemPropertyTest, GivesOneTextPerElement) {
    const auto disk = disk_->Add({{"Size", 2ULL}});
    const auto labels = disk->GetProperty("Labels", {});
    EXPECT_TRUE(labels->IsArray({}));
    EXPECT_THAT(labels->ToStringVector(), IsEmpty());
    labels->SetValue(TCIMValue(TType::eCIMString, 0, {"a", "b"}), {});
    EXPECT_THAT(labels->ToStringVector(), ElementsAre("a", "b"));
    EXPECT_EQ(labels->ToString(), "{a, b}");
    EXPECT_THAT(disk->GetProperty("Size", {})->ToStringVector(), ElementsAre("2"));
}

TEST_F(TInmemPropertyTest, IsComparedByDeclarationThenByValue) {
    const auto small = disk_->Add({{"Size", 1ULL}})->GetProperty("Size", {});
    const auto large = disk_->Add({{"Size", 2ULL}})->GetProperty("Size", {});
    const auto bus = disk_->Add({})->GetProperty("Bus", {});
    EXPECT_TRUE(*small < *large);
    EXPECT_FALSE(*large < *small);
    EXPECT_FALSE(*small == *large);
    EXPECT_FALSE(*small == *bus);
    EXPECT_NE(*small < *bus, *bus < *small);
    *small = *large;
    EXPECT_TRUE(*small == *large);
}

class TInmemAssociationTest : public TInmemInstanceTest {
  protected:
    TInmemAssociationTest() {
        link_->Declare("Container", EmptyReferenceTo("Test_Disk"), true);
        link_->Declare("Part", EmptyReferenceTo("Test_Disk"), true);
        disk_->AddAssociationClass(link_);
        point_->AddAssociationClass(link_);
        mark_->Declare("Disk", EmptyReferenceTo("Test_Disk"), true);
        mark_->Declare("Point", EmptyReferenceTo("Test_Point"), true);
        disk_->AddAssociationClass(mark_);
        point_->AddAssociationClass(mark_);
    }

    boost::shared_ptr<TTestInstance> AddDisk(const std::string& name) { return disk_->Add({{"DeviceID", name}}); }

    boost::shared_ptr<TTestInstance> AddLink(ICIMInstance& container, ICIMInstance& part) {
        return link_->Add({{"Container", ReferenceTo(container)}, {"Part", ReferenceTo(part)}});
    }

    using TFound = std::vector<boost::shared_ptr<ICIMInstance>>;

    static TFound AssociationsOf(ICIMInstance& instance, const std::string& resultClass, const std::string& role,
                                 std::size_t limit = 99) {
        TFound found;
        instance.EnumerateAssociationInstances(
            [&](boost::shared_ptr<ICIMInstance> association) {
                found.push_back(association);
                return found.size() < limit;
            },
            resultClass, role, {});
        return found;
    }

    static TFound AssociatedWith(ICIMInstance& instance, const std::string& assocClass, const std::string& resultClass,
                                 const std::string& role, const std::string& resultRole, std::size_t limit = 99) {
        TFound found;
        instance.EnumerateAssociatedInstances(
            [&](boost::shared_ptr<ICIMInstance> other) {
                found.push_back(other);
                return found.size() < limit;
            },
            assocClass, resultClass, role, resultRole, {});
        return found;
    }

    boost::shared_ptr<TTestClass> link_ = namespace_->AddClass("Test_Link");
    boost::shared_ptr<TTestClass> mark_ = namespace_->AddClass("Test_Mark");
};

TEST_F(TInmemAssociationTest, FindsTheAssociationsThatReferToIt) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    const auto other = AddDisk("other");
    const auto link = AddLink(*whole, *part);
    const auto upper = AddLink(*other, *whole);
    AddLink(*other, *part);

    EXPECT_THAT(AssociationsOf(*whole, "", ""), UnorderedElementsAre(link, upper));
    EXPECT_THAT(AssociationsOf(*whole, "", "container"), ElementsAre(link));
    EXPECT_THAT(AssociationsOf(*whole, "", "Part"), ElementsAre(upper));
    EXPECT_THAT(AssociationsOf(*whole, "Test_Mark", ""), IsEmpty());
    EXPECT_THAT(AssociationsOf(*whole, "Test_Link", "Nobody"), IsEmpty());
    EXPECT_EQ(AssociationsOf(*whole, "", "", 1).size(), 1U);
}

TEST_F(TInmemAssociationTest, FindsTheInstancesAtTheOtherEnds) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    const auto upper = AddDisk("upper");
    const auto point = point_->Add({{"X", 1}});
    AddLink(*whole, *part);
    AddLink(*upper, *whole);
    mark_->Add({{"Disk", ReferenceTo(*whole)}, {"Point", ReferenceTo(*point)}});

    EXPECT_THAT(AssociatedWith(*whole, "", "", "", ""), UnorderedElementsAre(part, upper, point));
    EXPECT_THAT(AssociatedWith(*whole, "Test_Link", "", "", ""), UnorderedElementsAre(part, upper));
    EXPECT_THAT(AssociatedWith(*whole, "", "Test_Point", "", ""), ElementsAre(point));
    EXPECT_THAT(AssociatedWith(*whole, "", "", "CONTAINER", ""), ElementsAre(part));
    EXPECT_THAT(AssociatedWith(*whole, "", "", "", "container"), ElementsAre(upper));
    EXPECT_THAT(AssociatedWith(*whole, "", "", "Part", "Part"), IsEmpty());
    EXPECT_THAT(AssociatedWith(*whole, "", "Test_Nowhere", "", ""), IsEmpty());
    EXPECT_THAT(AssociatedWith(*point, "", "", "", ""), ElementsAre(whole));
    EXPECT_EQ(AssociatedWith(*whole, "", "", "", "", 2).size(), 2U);
}

TEST_F(TInmemAssociationTest, AdmitsSubclassesOfTheResultClass) {
    const auto fast = namespace_->AddClass("Test_FastDisk", disk_);
    fast->Declare("DeviceID", TCIMValue(TType::eCIMString, 0), true);
    const auto whole = AddDisk("whole");
    const auto part = fast->Add({{"DeviceID", "nvme"}});
    AddLink(*whole, *part);
    EXPECT_THAT(AssociatedWith(*whole, "", "Test_Disk", "", ""), ElementsAre(part));
    EXPECT_THAT(AssociatedWith(*whole, "", "Test_FastDisk", "", ""), ElementsAre(part));
    EXPECT_THAT(AssociatedWith(*whole, "", "Test_Point", "", ""), IsEmpty());
}

TEST_F(TInmemAssociationTest, ReportsEachInstanceOnce) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    const auto both = AddLink(*whole, *part);
    AddLink(*part, *whole);
    disk_->AddAssociationClass(link_); // as a class does that inherits the association
    EXPECT_THAT(AssociatedWith(*whole, "", "", "", ""), ElementsAre(part));
    EXPECT_THAT(AssociationsOf(*whole, "", "Container"), ElementsAre(both));
}

TEST_F(TInmemAssociationTest, FindsItselfAtTheOtherEndOfALoop) {
    const auto disk = AddDisk("ring");
    AddLink(*disk, *disk);
    EXPECT_THAT(AssociatedWith(*disk, "", "", "", ""), ElementsAre(disk));
}

TEST_F(TInmemAssociationTest, UnderstandsReferencesWithoutClassNameAndWithKeysAsText) {
    const auto whole = AddDisk("whole");
    const auto point = point_->Add({{"X", 1}, {"Y", 2}});
    TCIMReference bare({}, {{"BUS", "0"}, {"DEVICEID", "whole"}});
    const auto mark = mark_->Add({{"Disk", bare}, {"Point", ReferenceTo(*point)}});
    EXPECT_THAT(AssociationsOf(*whole, "", ""), ElementsAre(mark));
    EXPECT_THAT(AssociatedWith(*whole, "", "", "", ""), ElementsAre(point));

    TCIMReference otherKeys({}, {{"BUS", "1"}, {"DEVICEID", "whole"}});
    mark->SetPropertyValue("Disk", otherKeys, {});
    EXPECT_THAT(AssociationsOf(*whole, "", ""), IsEmpty());
    TCIMReference fewerKeys({}, {{"DEVICEID", "whole"}});
    mark->SetPropertyValue("Disk", fewerKeys, {});
    EXPECT_THAT(AssociationsOf(*whole, "", ""), IsEmpty());
}

TEST_F(TInmemAssociationTest, LooksUpAFarEndWithoutClassNameInTheDeclaredClass) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    TCIMReference bare({}, {{"Bus", static_cast<unsigned short>(0)}, {"DeviceID", "part"}});
    link_->Add({{"Container", ReferenceTo(*whole)}, {"Part", bare}});
    EXPECT_THAT(AssociatedWith(*whole, "", "", "", ""), ElementsAre(part));
}

TEST_F(TInmemAssociationTest, PassesOverEndsThatLeadNowhere) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    const auto gone = AddDisk("gone");
    AddLink(*whole, *gone);
    gone->Delete({});
    link_->Add({{"Container", ReferenceTo(*whole)}, {"Part", EmptyReferenceTo("Test_Nowhere")}});
    link_->Add({{"Container", ReferenceTo(*whole)}, {"Part", TCIMValue(TType::eCIMReference, 0)}});
    AddLink(*whole, *part);
    EXPECT_THAT(AssociatedWith(*whole, "", "", "", ""), ElementsAre(part));
}

TEST_F(TInmemAssociationTest, MayBeChangedByTheCallback) {
    const auto whole = AddDisk("whole");
    const auto part = AddDisk("part");
    AddLink(*whole, *part);
    AddLink(*part, *whole);
    std::size_t calls = 0;
    whole->EnumerateAssociationInstances(
        [&](boost::shared_ptr<ICIMInstance> association) {
            association->Delete({});
            return ++calls < 99;
        },
        "", "", {});
    EXPECT_EQ(calls, 2U);
    EXPECT_THAT(link_->Instances(), IsEmpty());
}

} // namespace
} // namespace NQORVYX20
