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
        : TCimHTTPClass(nameSpace, name, superClass), fSuperClass(superClass) {}

    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext /*context*/) const override {
        return boost::shared_ptr<ICIMClass>(fSuperClass);
    }

    static void Link(TCimHTTPClass& cls, const boost::shared_ptr<TCimHTTPClass>& association) {
        (cls.*&DerivedClass::fAssociations).insert(association);
    }

  private:
    boost::weak_ptr<ICIMClass> fSuperClass;
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
        fDisk = FetchClass(*fNamespace, "TEST_Disk");
        fSystem = FetchClass(*fNamespace, "TEST_System");
        fLink = LinkDisk("TEST_Link", {{"Disk", "TEST_Disk"}, {"System", "TEST_System"}});
    }

    /// An association whose reference properties refer to classes, by their names; to none where that is empty. It has
    /// a property Note that is no reference.
    boost::shared_ptr<TCimHTTPClass> MakeAssociation(const std::string& name, const Ends& ends) {
        std::string properties = PropertyXml("Note", "string");
        for (const auto& [role, className] : ends) {
            properties.append("<PROPERTY.REFERENCE NAME=\"").append(role).append("\"/>");
        }
        ServeClass(name, "", properties);
        auto association = FetchClass(*fNamespace, name);
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
        DerivedClass::Link(*fDisk, association);
        return association;
    }

    boost::shared_ptr<DerivedClass> Derive(const std::string& name,
                                           const boost::shared_ptr<TCimHTTPClass>& superClass) {
        ServeClass(name, "", "");
        auto derived = boost::make_shared<DerivedClass>(fNamespace, name, superClass);
        derived->Initialize();
        fNamespace->AddClass(derived);
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

    boost::shared_ptr<TCimHTTPNamespace> fNamespace = ConnectedNamespace();
    boost::shared_ptr<TCimHTTPClass> fDisk;
    boost::shared_ptr<TCimHTTPClass> fSystem;
    boost::shared_ptr<TCimHTTPClass> fLink;
};

} // namespace

TEST_F(AssociationTest, NoOperationLinksAnAssociationToAClass) {
    ServeQualifier("Association", "boolean");
    ServeClass("TEST_Contract", "",
               QualifierXml("Association", "boolean", "TRUE") +
                   "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"TEST_System\"/>");
    const auto contract = FetchClass(*fNamespace, "TEST_Contract");
    fSystem->AddAssociationClass(contract);
    for (const auto& cls : {fSystem, contract, fNamespace->GetRootClass()}) {
        cls->EnumerateAssociationClasses(&Unexpected, "", "", TCIMContext());
        cls->EnumerateAssociationClasses(&Unexpected, "TEST_Contract", "System", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "", "", "", "", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "TEST_Contract", "TEST_Disk", "System", "Disk", TCIMContext());
    }
}

// --- Which associations are reported -----------------------------------------------------------------------------

TEST_F(AssociationTest, EmptyFiltersAcceptEveryAssociation) {
    LinkDisk("TEST_Other", {});
    EXPECT_THAT(Associations(*fDisk, "", ""), UnorderedElementsAre("TEST_Link", "TEST_Other"));
    EXPECT_THAT(Associations(*fSystem, "", ""), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsOfTheFilterClassOrOfASubclassOfIt) {
    DerivedClass::Link(*fDisk, Derive("TEST_SpecialLink", fLink));
    LinkDisk("TEST_Other", {});
    EXPECT_THAT(Associations(*fDisk, "TEST_Link", ""), UnorderedElementsAre("TEST_Link", "TEST_SpecialLink"));
    EXPECT_THAT(Associations(*fDisk, "TEST_SpecialLink", ""), ElementsAre("TEST_SpecialLink"));
    EXPECT_THAT(Associations(*fDisk, "test_other", ""), ElementsAre("TEST_Other"));
    EXPECT_THAT(Associations(*fDisk, "TEST_Disk", ""), IsEmpty());
}

TEST_F(AssociationTest, TheRoleMustReferToTheClass) {
    LinkDisk("TEST_Crossed", {{"Disk", "TEST_System"}, {"System", "TEST_Disk"}});
    EXPECT_THAT(Associations(*fDisk, "", "Disk"), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associations(*fDisk, "", "system"), ElementsAre("TEST_Crossed"));
    EXPECT_THAT(Associated(*fDisk, "", "", "Disk", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Crossed", "", "Disk", ""), IsEmpty());
}

TEST_F(AssociationTest, TheRoleMustReferToTheObjectItselfAndNotToItsName) {
    const auto twin =
        boost::dynamic_pointer_cast<TCimHTTPClass>(fNamespace->AllocateClass("TEST_Disk", nullptr, TCIMContext()));
    DerivedClass::Link(*twin, fLink);
    EXPECT_THAT(Associations(*twin, "", ""), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associations(*twin, "", "Disk"), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsPassedOverWhenItsRoleCannotBeFollowed) {
    LinkDisk("TEST_Odd", {{"Nowhere", ""}, {"Unknown", "TEST_None"}, {"Invalid", "not a name"}});
    for (const char* role : {"Absent", "Note", "Nowhere", "Unknown", "Invalid", "not a name", "2nd"}) {
        fDisk->EnumerateAssociationClasses(&Unexpected, "", role, TCIMContext());
        fDisk->EnumerateAssociatedClasses(&Unexpected, "", "", role, "", TCIMContext());
    }
}

TEST_F(AssociationTest, TheFilterClassIsComparedByItsNameAllTheWayUp) {
    const auto special = Derive("TEST_SpecialLink", fLink);
    const auto namesake = fNamespace->AllocateClass("TEST_Link", nullptr, TCIMContext());
    EXPECT_TRUE(special->IsSubclassOf(namesake, TCIMContext()));
    EXPECT_FALSE(special->IsSubclassOf(fDisk, TCIMContext()));
}

// --- Which far ends are reported ---------------------------------------------------------------------------------

TEST_F(AssociationTest, TheNearEndIsNotReportedAsItsOwnFarEnd) {
    EXPECT_THAT(Associated(*fDisk, "", "", "", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*fDisk, "", "", "", "Disk"), IsEmpty());
    EXPECT_THAT(Associated(*fDisk, "", "", "Disk", "Disk"), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationOfAClassWithItselfHasThatClassAtItsFarEnd) {
    LinkDisk("TEST_Mirror", {{"Copy", "TEST_Disk"}, {"Original", "TEST_Disk"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Mirror", "", "Copy", ""), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Mirror", "", "", "Original"), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Mirror", "", "", ""), ElementsAre("TEST_Disk", "TEST_Disk"));
}

TEST_F(AssociationTest, AnAssociationThatDoesNotReferToTheClassHasFarEndsOnly) {
    LinkDisk("TEST_Pair", {{"Left", "TEST_System"}, {"Right", "TEST_Link"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Pair", "", "", ""), ElementsAre("TEST_System", "TEST_Link"));
}

TEST_F(AssociationTest, TheAssociationClassFilterAppliesToFarEnds) {
    LinkDisk("TEST_Other", {{"Disk", "TEST_Disk"}, {"Link", "TEST_Link"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Other", "", "", ""), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associated(*fDisk, "", "", "", ""), UnorderedElementsAre("TEST_Link", "TEST_System"));
}

TEST_F(AssociationTest, AResultRoleChoosesTheFarEnd) {
    LinkDisk("TEST_Triple", {{"Disk", "TEST_Disk"}, {"Owner", "TEST_System"}, {"Log", "TEST_Link"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Triple", "", "Disk", ""), ElementsAre("TEST_Link", "TEST_System"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Triple", "", "Disk", "OWNER"), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Triple", "", "", "Log"), ElementsAre("TEST_Link"));
    for (const char* resultRole : {"Absent", "Note", "not a name"}) {
        EXPECT_THAT(Associated(*fDisk, "TEST_Triple", "", "", resultRole), IsEmpty());
    }
}

TEST_F(AssociationTest, AFarEndIsOfTheResultClassOrOfASubclassOfIt) {
    Derive("TEST_Server", fSystem);
    LinkDisk("TEST_ServerLink", {{"Disk", "TEST_Disk"}, {"Server", "TEST_Server"}});
    EXPECT_THAT(Associated(*fDisk, "", "TEST_System", "", ""), UnorderedElementsAre("TEST_System", "TEST_Server"));
    EXPECT_THAT(Associated(*fDisk, "", "TEST_Server", "", ""), ElementsAre("TEST_Server"));
    EXPECT_THAT(Associated(*fDisk, "", "TEST_Link", "", ""), IsEmpty());
}

TEST_F(AssociationTest, AnAssociationIsPassedOverWhenAFarEndCannotBeHad) {
    LinkDisk("TEST_Broken", {{"Disk", "TEST_Disk"}, {"Aside", "TEST_System"}, {"End", "TEST_None"}});
    LinkDisk("TEST_Misnamed", {{"Disk", "TEST_Disk"}, {"Aside", "TEST_System"}, {"End", "not a name"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Broken", "", "Disk", ""), IsEmpty());
    EXPECT_THAT(Associated(*fDisk, "TEST_Misnamed", "", "", ""), IsEmpty());
    EXPECT_THAT(Associated(*fDisk, "", "", "", ""), ElementsAre("TEST_System")); // through TEST_Link
    EXPECT_THAT(Associated(*fDisk, "TEST_Broken", "", "Disk", "Aside"), ElementsAre("TEST_System"));
}

TEST_F(AssociationTest, AReferenceWithoutAClassIsNoFarEnd) {
    LinkDisk("TEST_Loose", {{"Disk", "TEST_Disk"}, {"Nowhere", ""}, {"System", "TEST_System"}});
    EXPECT_THAT(Associated(*fDisk, "TEST_Loose", "", "", ""), ElementsAre("TEST_System"));
    EXPECT_THAT(Associated(*fDisk, "TEST_Loose", "", "", "Nowhere"), IsEmpty());
}

// --- The walk ----------------------------------------------------------------------------------------------------

TEST_F(AssociationTest, TheWalkClimbsTheSuperclasses) {
    const auto drive = Derive("TEST_Drive", fDisk);
    DerivedClass::Link(*drive, MakeAssociation("TEST_Mount", {{"Drive", "TEST_Drive"}, {"Link", "TEST_Link"}}));
    EXPECT_THAT(Associations(*drive, "", ""), ElementsAre("TEST_Mount", "TEST_Link"));
    EXPECT_THAT(Associations(*drive, "", "Disk"), ElementsAre("TEST_Link"));
    EXPECT_THAT(Associated(*drive, "", "", "", ""), ElementsAre("TEST_Link", "TEST_System"));
    EXPECT_THAT(Associations(*fDisk, "", ""), ElementsAre("TEST_Link"));
}

TEST_F(AssociationTest, TheRootsOwnAssociationsAreNeverReported) {
    const auto root = fNamespace->GetRootClass();
    DerivedClass::Link(*root, fLink);
    for (const auto& cls : {fSystem, root}) {
        cls->EnumerateAssociationClasses(&Unexpected, "", "", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "", "", "", "", TCIMContext());
    }
}

TEST_F(AssociationTest, ACallbackThatReturnsFalseEndsTheWalk) {
    const auto drive = Derive("TEST_Drive", fDisk);
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
    fDisk->EnumerateAssociationClasses(
        [&](const auto&) {
            ++calls;
            fDisk->ClearInstances();
            return true;
        },
        "", "", TCIMContext());
    EXPECT_EQ(calls, 2);
    EXPECT_THAT(Associations(*fDisk, "", ""), IsEmpty());
}

TEST_F(AssociationTest, ClearInstancesClearsTheLinkedAssociationsToo) {
    DerivedClass::Link(*fLink, fDisk); // a way back to where the clearing begins
    fDisk->AddChildClass(fDisk);
    fDisk->ClearInstances();
    for (const auto& cls : {fDisk, fLink}) {
        EXPECT_THAT(Associations(*cls, "", ""), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateQualifiers(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumeratePropertyDecls(v, TCIMContext()); }), IsEmpty());
        EXPECT_THAT(VisitedNames([&](const auto& v) { cls->EnumerateSubClasses(v, false, TCIMContext()); }), IsEmpty());
    }
    EXPECT_THAT(VisitedNames([&](const auto& v) { fSystem->EnumerateQualifiers(v, TCIMContext()); }),
                ElementsAre("PLUGINNAME", "PLUGINVERSION"));
}

TEST_F(AssociationTest, WhatACallbackThrowsReachesTheCaller) {
    const auto fail = [](const auto&) -> bool { throw TVYXException(1); };
    EXPECT_EQ(StatusOf([&] { fDisk->EnumerateAssociationClasses(fail, "", "Disk", TCIMContext()); }), 1U);
    EXPECT_EQ(StatusOf([&] { fDisk->EnumerateAssociatedClasses(fail, "", "", "Disk", "", TCIMContext()); }), 1U);
}

// --- Filters that cannot be resolved -----------------------------------------------------------------------------

TEST_F(AssociationTest, AFilterClassThatCannotBeResolvedIsAnError) {
    for (const auto& cls : {fDisk, fSystem}) {
        const auto associations = [&](const std::string& resultClass) {
            return StatusOf([&] { cls->EnumerateAssociationClasses(&Unexpected, resultClass, "", TCIMContext()); });
        };
        const auto associated = [&](const std::string& assocClass, const std::string& resultClass) {
            return StatusOf(
                [&] { cls->EnumerateAssociatedClasses(&Unexpected, assocClass, resultClass, "", "", TCIMContext()); });
        };
        EXPECT_EQ(associations("TEST_None"), 15U);
        EXPECT_EQ(associations("2abc"), 25U);
        EXPECT_EQ(associated("TEST_None", ""), 15U);
        EXPECT_EQ(associated("2abc", ""), 25U);
        EXPECT_EQ(associated("", "TEST_None"), 15U);
        EXPECT_EQ(associated("", "2abc"), 25U);
    }
}

TEST_F(AssociationTest, FilterClassesAreFetchedWhenTheyAreNotKnownYet) {
    ServeClass("TEST_New", "", "");
    EXPECT_THAT(Associated(*fDisk, "", "TEST_New", "", ""), IsEmpty());
    EXPECT_GT(CountCalls("GetClass", "TEST_New"), 0U);
}

TEST_F(AssociationTest, WithoutItsNamespaceAClassThrowsBadWeakPtr) {
    fNamespace.reset();
    EXPECT_THROW(Associations(*fDisk, "", ""), boost::bad_weak_ptr);
    EXPECT_THROW(Associated(*fDisk, "", "", "", ""), boost::bad_weak_ptr);
}
