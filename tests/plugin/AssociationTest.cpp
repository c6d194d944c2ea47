#include "PluginTest.h"

#include <initializer_list>
#include <utility>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// A class with a superclass of its own: fetched classes all hang under the root. Gives access to the association sets,
/// which no operation fills.
class DerivedClass : public TCimHTTPClass {
  public:
    DerivedClass(boost::shared_ptr<TCimHTTPNamespace> nameSpace, const std::string& name,
                 boost::shared_ptr<TCimHTTPClass> superClass)
        : TCimHTTPClass(nameSpace, name, superClass), superClass_(superClass) {}

    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext /*context*/) const override {
        return boost::shared_ptr<ICIMClass>(superClass_);
    }

    static void Link(TCimHTTPClass& cls, const boost::shared_ptr<TCimHTTPClass>& association) {
        (cls.*&DerivedClass::associations_).insert(association);
    }

  private:
    boost::weak_ptr<ICIMClass> superClass_;
};

bool Unexpected(const boost::shared_ptr<ICIMClass>& cls) {
    ADD_FAILURE() << "called back with " << cls->GetName(TCIMContext());
    return true;
}

/// A disk and a system, and the association TEST_Link between them, linked to the disk.
class AssociationTest : public PluginTest {
  protected:
    using Ends = std::initializer_list<std::pair<std::string, std::string>>;

    AssociationTest() {
        ServeClass("TEST_Disk", "", "");
        ServeClass("TEST_System", "", "");
        disk_ = FetchClass(*namespace_, "TEST_Disk");
        system_ = FetchClass(*namespace_, "TEST_System");
        link_ = LinkDisk("TEST_Link", {{"Disk", "TEST_Disk"}, {"System", "TEST_System"}});
    }

    /// An association whose reference properties refer to classes, by their names; to none where that is empty. It has
    /// a property Note that is no reference.
    boost::shared_ptr<TCimHTTPClass> MakeAssociation(const std::string& name, const Ends& ends) {
        std::string properties = PropertyXml("Note", "string");
        for (const auto& [role, className] : ends) {
            properties.append("<PROPERTY.REFERENCE NAME=\"").append(role).append("\"/>");
        }
        ServeClass(name, "", properties);
        auto association = FetchClass(*namespace_, name);
        for (const auto& [role, className] : ends) {
            TCIMReference reference(nullptr, TCIMContext());
            reference.SetClassName(className);
            association->GetPropertyDecl(role, TCIMContext())->SetDefaultValue(TCIMValue(reference), TCIMContext());
        }
        return association;
    }

    /// Makes an association and links it to the disk.
    boost::shared_ptr<TCimHTTPClass> LinkDisk(const std::string& name, const Ends& ends) {
        auto association = MakeAssociation(name, ends);
        DerivedClass::Link(*disk_, association);
        return association;
    }

    boost::shared_ptr<DerivedClass> Derive(const std::string& name,
                                           const boost::shared_ptr<TCimHTTPClass>& superClass) {
        ServeClass(name, "", "");
        auto derived = boost::make_shared<DerivedClass>(namespace_, name, superClass);
        derived->Initialize();
        namespace_->AddClass(derived);
        return derived;
    }

    std::vector<std::string> Associations(TCimHTTPClass& cls, const std::string& resultClass, const std::string& role) {
        return VisitedNames(
            [&](const auto& visit) { cls.EnumerateAssociationClasses(visit, resultClass, role, TCIMContext()); });
    }

    std::vector<std::string> Associated(TCimHTTPClass& cls, const std::string& assocClass,
                                        const std::string& resultClass, const std::string& role,
                                        const std::string& resultRole) {
        return VisitedNames([&](const auto& visit) {
            cls.EnumerateAssociatedClasses(visit, assocClass, resultClass, role, resultRole, TCIMContext());
        });
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_ = ConnectedNamespace();
    boost::shared_ptr<TCimHTTPClass> disk_;
    boost::shared_ptr<TCimHTTPClass> system_;
    boost::shared_ptr<TCimHTTPClass> link_;
};

} // namespace

TEST_F(AssociationTest, NoOperationLinksAnAssociationToAClass) {
    ServeQualifier("Association", "boolean");
    ServeClass("TEST_Contract", "",
               QualifierXml("Association", "boolean", "TRUE") +
                   "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"TEST_System\"/>");
    const auto contract = FetchClass(*namespace_, "TEST_Contract");
    system_->AddAssociationClass(contract);
    for (const auto& cls : {system_, contract, namespace_->GetRootClass()}) {
        cls->EnumerateAssociationClasses(&Unexpected, "", "", TCIMContext());
        cls->EnumerateAssociationClasses(&Unexpected, "TEST_Contract", "System", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "", "", "", "", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "TEST_Contract", "TEST_Disk", "System", "Disk", TCIMContext());
    }
}

// --- Which associations are reported -----------------------------------------------------------------------------

TEST_F(AssociationTest, EmptyFiltersAcceptEveryAssociation) {
    LinkDisk("TEST_Other", {});
    EXPECT_THAT(Associations(*disk_, "", ""), UnorderedElementsAre("TEST_Link", "TEST_Other"));
    EXPECT_THAT(Associations(*system_, "", ""), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsOfTheFilterClassOrOfASubclassOfIt) {
    DerivedClass::Link(*disk_, Derive("TEST_SpecialLink", link_));
    LinkDisk("TEST_Other", {});
    EXPECT_THAT(Associations(*disk_, "TEST_Link", ""), UnorderedElementsAre("TEST_Link", "TEST_SpecialLink"));
    EXPECT_THAT(Associations(*disk_, "TEST_SpecialLink", ""), ElementsAre("TEST_SpecialLink"));
    EXPECT_THAT(Associations(*disk_, "test_other", ""), ElementsAre("TEST_Other"));
    EXPECT_THAT(Associations(*disk_, "TEST_Disk", ""), IsEmpty());
}

TEST_F(AssociationTest, TheRoleMustReferToTheClass) {
    LinkDisk("TEST_Crossed", {{"Disk", "TEST_System"}, {"System", "TEST_Disk"}});
    EXPECT_THAT(Associations(*disk_, "", "Disk"), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associations(*disk_, "", "system"), ElementsAre("TEST_Crossed"));
    EXPECT_THAT(Associated(*disk_, "", "", "Disk", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*disk_, "TEST_Crossed", "", "Disk", ""), IsEmpty());
}

TEST_F(AssociationTest, TheRoleMustReferToTheObjectItselfAndNotToItsName) {
    const auto twin =
        boost::dynamic_pointer_cast<TCimHTTPClass>(namespace_->AllocateClass("TEST_Disk", nullptr, TCIMContext()));
    DerivedClass::Link(*twin, link_);
    EXPECT_THAT(Associations(*twin, "", ""), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associations(*twin, "", "Disk"), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsPassedOverWhenItsRoleCannotBeFollowed) {
    LinkDisk("TEST_Odd", {{"Nowhere", ""}, {"Unknown", "TEST_None"}, {"Invalid", "not a name"}});
    for (const char* role : {"Absent", "Note", "Nowhere", "Unknown", "Invalid", "not a name", "2nd"}) {
        disk_->EnumerateAssociationClasses(&Unexpected, "", role, TCIMContext());
        disk_->EnumerateAssociatedClasses(&Unexpected, "", "", role, "", TCIMContext());
    }
}

TEST_F(AssociationTest, TheFilterClassIsComparedByItsNameAllTheWayUp) {
    const auto special = Derive("TEST_SpecialLink", link_);
    const auto namesake = namespace_->AllocateClass("TEST_Link", nullptr, TCIMContext());
    EXPECT_TRUE(special->IsSubclassOf(namesake, TCIMContext()));
    EXPECT_FALSE(special->IsSubclassOf(disk_, TCIMContext()));
}

// --- Which far ends are reported ---------------------------------------------------------------------------------

TEST_F(AssociationTest, TheNearEndIsNotReportedAsItsOwnFarEnd) {
    EXPECT_THAT(Associated(*disk_, "", "", "", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*disk_, "", "", "", "Disk"), IsEmpty());
    EXPECT_THAT(Associated(*disk_, "", "", "Disk", "Disk"), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationOfAClassWithItselfHasThatClassAtItsFarEnd) {
    LinkDisk("TEST_Mirror", {{"Copy", "TEST_Disk"}, {"Original", "TEST_Disk"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Mirror", "", "Copy", ""), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Associated(*disk_, "TEST_Mirror", "", "", "Original"), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Associated(*disk_, "TEST_Mirror", "", "", ""), ElementsAre("TEST_Disk", "TEST_Disk"));
}

TEST_F(AssociationTest, AnAssociationThatDoesNotReferToTheClassHasFarEndsOnly) {
    LinkDisk("TEST_Pair", {{"Left", "TEST_System"}, {"Right", "TEST_Link"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Pair", "", "", ""), ElementsAre("TEST_System", "TEST_Link"));
}

TEST_F(AssociationTest, TheAssociationClassFilterAppliesToFarEnds) {
    LinkDisk("TEST_Other", {{"Disk", "TEST_Disk"}, {"Link", "TEST_Link"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Other", "", "", ""), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associated(*disk_, "", "", "", ""), UnorderedElementsAre("TEST_Link", "TEST_System"));
}

TEST_F(AssociationTest, AResultRoleChoosesTheFarEnd) {
    LinkDisk("TEST_Triple", {{"Disk", "TEST_Disk"}, {"Owner", "TEST_System"}, {"Log", "TEST_Link"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Triple", "", "Disk", ""), ElementsAre("TEST_Link", "TEST_System"));
    EXPECT_THAT(Associated(*disk_, "TEST_Triple", "", "Disk", "OWNER"), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*disk_, "TEST_Triple", "", "", "Log"), ElementsAre("TEST_Link"));
    for (const char* resultRole : {"Absent", "Note", "not a name"}) {
        EXPECT_THAT(Associated(*disk_, "TEST_Triple", "", "", resultRole), IsEmpty());
    }
}

TEST_F(AssociationTest, AFarEndIsOfTheResultClassOrOfASubclassOfIt) {
    Derive("TEST_Server", system_);
    LinkDisk("TEST_ServerLink", {{"Disk", "TEST_Disk"}, {"Server", "TEST_Server"}});
    EXPECT_THAT(Associated(*disk_, "", "TEST_System", "", ""), UnorderedElementsAre("TEST_System", "TEST_Server"));
    EXPECT_THAT(Associated(*disk_, "", "TEST_Server", "", ""), ElementsAre("TEST_Server"));
    EXPECT_THAT(Associated(*disk_, "", "TEST_Link", "", ""), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsPassedOverWhenAFarEndCannotBeHad) {
    LinkDisk("TEST_Broken", {{"Disk", "TEST_Disk"}, {"Aside", "TEST_System"}, {"End", "TEST_None"}});
    LinkDisk("TEST_Misnamed", {{"Disk", "TEST_Disk"}, {"Aside", "TEST_System"}, {"End", "not a name"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Broken", "", "Disk", ""), IsEmpty());
    EXPECT_THAT(Associated(*disk_, "TEST_Misnamed", "", "", ""), IsEmpty());
    EXPECT_THAT(Associated(*disk_, "", "", "", ""), ElementsAre("TEST_System")); // through TEST_Link
    EXPECT_THAT(Associated(*disk_, "TEST_Broken", "", "Disk", "Aside"), ElementsAre("TEST_System"));
}

TEST_F(AssociationTest, AReferenceWithoutAClassIsNoFarEnd) {
    LinkDisk("TEST_Loose", {{"Disk", "TEST_Disk"}, {"Nowhere", ""}, {"System", "TEST_System"}});
    EXPECT_THAT(Associated(*disk_, "TEST_Loose", "", "", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*disk_, "TEST_Loose", "", "", "Nowhere"), IsEmpty());
}

// --- The walk ----------------------------------------------------------------------------------------------------

TEST_F(AssociationTest, TheWalkClimbsTheSuperclasses) {
    const auto drive = Derive("TEST_Drive", disk_);
    DerivedClass::Link(*drive, MakeAssociation("TEST_Mount", {{"Drive", "TEST_Drive"}, {"Link", "TEST_Link"}}));
    EXPECT_THAT(Associations(*drive, "", ""), ElementsAre("TEST_Mount", "TEST_Link"));
    EXPECT_THAT(Associations(*drive, "", "Disk"), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associated(*drive, "", "", "", ""), ElementsAre("TEST_Link", "TEST_System"));
    EXPECT_THAT(Associations(*disk_, "", ""), ElementsAre("TEST_Link"));
}

TEST_F(AssociationTest, TheRootsOwnAssociationsAreNeverReported) {
    const auto root = namespace_->GetRootClass();
    DerivedClass::Link(*root, link_);
    for (const auto& cls : {system_, root}) {
        cls->EnumerateAssociationClasses(&Unexpected, "", "", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "", "", "", "", TCIMContext());
    }
}

TEST_F(AssociationTest, ACallbackThatReturnsFalseEndsTheWalk) {
    const auto drive = Derive("TEST_Drive", disk_);
    for (const char* name : {"TEST_One", "TEST_Two"}) {
        DerivedClass::Link(*drive,
                           MakeAssociation(name, {{"Drive", "TEST_Drive"}, {"A", "TEST_Link"}, {"B", "TEST_System"}}));
    }
    int calls = 0;
    const auto refuse = [&](const auto&) {
        ++calls;
        return false;
    };
    drive->EnumerateAssociationClasses(refuse, "", "", TCIMContext());
    EXPECT_EQ(calls, 1);
    drive->EnumerateAssociatedClasses(refuse, "", "", "", "", TCIMContext());
    EXPECT_EQ(calls, 2);
}

TEST_F(AssociationTest, ACallbackMayClearTheClass) {
    LinkDisk("TEST_Other", {});
    int calls = 0;
    disk_->EnumerateAssociationClasses(
        [&](const auto&) {
            ++calls;
            disk_->ClearInstances();
            return true;
        },
        "", "", TCIMContext());
    EXPECT_EQ(calls, 2);
    EXPECT_THAT(Associations(*disk_, "", ""), IsEmpty());
}

TEST_F(AssociationTest, ClearInstancesClearsTheLinkedAssociationsToo) {
    DerivedClass::Link(*link_, disk_); // a way back to where the clearing begins
    disk_->AddChildClass(disk_);
    disk_->ClearInstances();
    for (const auto& cls : {disk_, link_}) {
        EXPECT_THAT(Associations(*cls, "", ""), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateQualifiers(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumeratePropertyDecls(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateSubClasses(v, false, TCIMContext()); }), IsEmpty());
    }
    EXPECT_THAT(VisitedNames([&](const auto& v) { system_->EnumerateQualifiers(v, TCIMContext()); }),
                ElementsAre("PLUGINNAME", "PLUGINVERSION"));
}

TEST_F(AssociationTest, WhatACallbackThrowsReachesTheCaller) {
    const auto fail = [](const auto&) -> bool { throw TVYXException(TVYXStatusCode::eNotSupported); };
    EXPECT_EQ(StatusOf([&] { disk_->EnumerateAssociationClasses(fail, "", "Disk", TCIMContext()); }),
              TVYXStatusCode::eNotSupported);
    EXPECT_EQ(StatusOf([&] { disk_->EnumerateAssociatedClasses(fail, "", "", "Disk", "", TCIMContext()); }),
              TVYXStatusCode::eNotSupported);
}

// --- Filters that cannot be resolved -----------------------------------------------------------------------------

TEST_F(AssociationTest, AFilterClassThatCannotBeResolvedIsAnError) {
    for (const auto& cls : {disk_, system_}) {
        const auto associations = [&](const std::string& resultClass) {
            return StatusOf([&] { cls->EnumerateAssociationClasses(&Unexpected, resultClass, "", TCIMContext()); });
        };
        const auto associated = [&](const std::string& assocClass, const std::string& resultClass) {
            return StatusOf(
                [&] { cls->EnumerateAssociatedClasses(&Unexpected, assocClass, resultClass, "", "", TCIMContext()); });
        };
        EXPECT_EQ(associations("TEST_None"), TVYXStatusCode::eNotFound);
        EXPECT_EQ(associations("2abc"), TVYXStatusCode::eInvalidName);
        EXPECT_EQ(associated("TEST_None", ""), TVYXStatusCode::eNotFound);
        EXPECT_EQ(associated("2abc", ""), TVYXStatusCode::eInvalidName);
        EXPECT_EQ(associated("", "TEST_None"), TVYXStatusCode::eNotFound);
        EXPECT_EQ(associated("", "2abc"), TVYXStatusCode::eInvalidName);
    }
}

TEST_F(AssociationTest, FilterClassesAreFetchedWhenTheyAreNotKnownYet) {
    ServeClass("TEST_New", "", "");
    EXPECT_THAT(Associated(*disk_, "", "TEST_New", "", ""), IsEmpty());
    EXPECT_GT(CountCalls("GetClass", "TEST_New"), 0U);
}

TEST_F(AssociationTest, WithoutItsNamespaceAClassThrowsBadWeakPtr) {
    namespace_.reset();
    EXPECT_THROW(Associations(*disk_, "", ""), boost::bad_weak_ptr);
    EXPECT_THROW(Associated(*disk_, "", "", "", ""), boost::bad_weak_ptr);
}
