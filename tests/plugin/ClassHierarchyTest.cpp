#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ClassHierarchyTest : public PluginTest {
  protected:
    ClassHierarchyTest() {
        for (const char* name : {"TEST_A", "TEST_B", "TEST_C", "TEST_D"}) {
            ServeClass(name, "", "");
        }
        fNamespace = ConnectedNamespace();
        fA = FetchClass(*fNamespace, "TEST_A");
    }

    boost::shared_ptr<TCimHTTPClass> Fetch(const std::string& name) { return FetchClass(*fNamespace, name); }

    std::vector<std::string> SubClassNames(ICIMClass& cls, bool deep) {
        return VisitedNames([&](const auto& visit) { cls.EnumerateSubClasses(visit, deep, TCIMContext()); });
    }

    boost::shared_ptr<TCimHTTPNamespace> fNamespace;
    boost::shared_ptr<TCimHTTPClass> fA;
};

} // namespace

TEST_F(ClassHierarchyTest, EveryFetchedClassHangsUnderTheRoot) {
    ServeClass("TEST_Sub", "TEST_A", "");
    const auto sub = Fetch("TEST_Sub");
    EXPECT_EQ(sub->GetSuperClass(TCIMContext()), fNamespace->GetRootClass());
    EXPECT_TRUE(sub->IsRootClass(TCIMContext()));
    EXPECT_TRUE(fA->IsRootClass(TCIMContext()));
    EXPECT_FALSE(fNamespace->GetRootClass()->IsRootClass(TCIMContext()));
    EXPECT_THAT(SubClassNames(*fNamespace->GetRootClass(), false), ElementsAre("TEST_A", "TEST_Sub"));
}

TEST_F(ClassHierarchyTest, AClassKnowsItsNamespace) { EXPECT_EQ(fA->GetNamespace(TCIMContext()), fNamespace); }

TEST_F(ClassHierarchyTest, AClassIsASubclassOfItselfByName) {
    EXPECT_TRUE(fA->IsSubclassOf(fA, TCIMContext()));
    const auto sameName = fNamespace->AllocateClass("TEST_A", nullptr, TCIMContext());
    EXPECT_TRUE(fA->IsSubclassOf(sameName, TCIMContext()));
    EXPECT_FALSE(fA->IsSubclassOf(Fetch("TEST_B"), TCIMContext()));
    const auto lower = fNamespace->AllocateClass("test_a", nullptr, TCIMContext());
    EXPECT_FALSE(fA->IsSubclassOf(lower, TCIMContext())) << "names are compared with regard to case";
}

TEST_F(ClassHierarchyTest, TheRootIsComparedOnlyWhereTheWalkStarts) {
    const auto root = fNamespace->GetRootClass();
    EXPECT_FALSE(fA->IsSubclassOf(root, TCIMContext()));
    EXPECT_TRUE(root->IsSubclassOf(root, TCIMContext()));
    EXPECT_FALSE(root->IsSubclassOf(fA, TCIMContext()));
}

TEST_F(ClassHierarchyTest, DeepVisitsTheSubtreeAndFlatTheDirectSubclasses) {
    fA->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    fA->AddChildClass(Fetch("TEST_D"));
    EXPECT_THAT(SubClassNames(*fA, true), ElementsAre("TEST_B", "TEST_C", "TEST_D"));
    EXPECT_THAT(SubClassNames(*fA, false), ElementsAre("TEST_B", "TEST_D"));
}

TEST_F(ClassHierarchyTest, DeepGoesDownAsFarAsThereAreSubclasses) {
    fA->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    Fetch("TEST_C")->AddChildClass(Fetch("TEST_D"));
    EXPECT_THAT(SubClassNames(*fA, true), ElementsAre("TEST_B", "TEST_C", "TEST_D"));
    EXPECT_THAT(SubClassNames(*fNamespace->GetRootClass(), true),
                ElementsAre("TEST_A", "TEST_B", "TEST_C", "TEST_D", "TEST_B", "TEST_C", "TEST_D", "TEST_C", "TEST_D",
                            "TEST_D"));
    std::vector<std::string> visited;
    fA->EnumerateSubClasses(
        [&](const auto& cls) {
            visited.push_back(cls->GetName(TCIMContext()));
            return visited.back() != "TEST_D";
        },
        true, TCIMContext());
    EXPECT_THAT(visited, ElementsAre("TEST_B", "TEST_C", "TEST_D"));
}

TEST_F(ClassHierarchyTest, AGrandchildThatIsRefusedEndsOnlyItsLevel) {
    fA->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    fA->AddChildClass(Fetch("TEST_D"));
    std::vector<std::string> visited;
    fA->EnumerateSubClasses(
        [&](const auto& cls) {
            visited.push_back(cls->GetName(TCIMContext()));
            return visited.back() != "TEST_C";
        },
        true, TCIMContext());
    EXPECT_THAT(visited, ElementsAre("TEST_B", "TEST_C", "TEST_D"));
}

TEST_F(ClassHierarchyTest, AChildThatIsRefusedEndsTheEnumeration) {
    fA->AddChildClass(Fetch("TEST_B"));
    fA->AddChildClass(Fetch("TEST_D"));
    int calls = 0;
    fA->EnumerateSubClasses(
        [&](const auto&) {
            ++calls;
            return false;
        },
        true, TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(ClassHierarchyTest, AddChildClassKeepsOneEntryPerExactName) {
    fA->AddChildClass(Fetch("TEST_B"));
    const auto again = fNamespace->AllocateClass("TEST_B", nullptr, TCIMContext());
    fA->AddChildClass(again);
    fA->AddChildClass(fNamespace->AllocateClass("test_b", nullptr, TCIMContext()));
    EXPECT_THAT(SubClassNames(*fA, false), ElementsAre("TEST_B", "test_b"));
    fA->EnumerateSubClasses(
        [&](const auto& first) {
            EXPECT_EQ(first, again) << "the later one has the place of the earlier";
            return false;
        },
        false, TCIMContext());
    fA->RemoveChildClass(again);
    EXPECT_THAT(SubClassNames(*fA, false), ElementsAre("TEST_B", "test_b"));
}

TEST_F(ClassHierarchyTest, AClassWithoutASuperclassEntersTheNamespaceAndJoinsNoClass) {
    const auto loose = boost::make_shared<TCimHTTPClass>(fNamespace, "TEST_Loose", fA);
    EXPECT_THROW(loose->AddToNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_EQ(fNamespace->GetClass("TEST_Loose", TCIMContext()), loose);
    EXPECT_THAT(SubClassNames(*fNamespace->GetRootClass(), true), ElementsAre("TEST_A"));
}

TEST_F(ClassHierarchyTest, ClassesAreComparedByExactName) {
    const auto lower = fNamespace->AllocateClass("test_a", nullptr, TCIMContext());
    const auto same = fNamespace->AllocateClass("TEST_A", nullptr, TCIMContext());
    EXPECT_TRUE(*fA == *same);
    EXPECT_FALSE(*fA == *lower);
    EXPECT_TRUE(*fA < *lower);
    EXPECT_FALSE(*lower < *fA);
}

TEST_F(ClassHierarchyTest, ChangesToAClassAreRefused) {
    EXPECT_EQ(StatusOf([&] { fA->RemoveFromNamespace(TCIMContext()); }), 31U);
    EXPECT_EQ(StatusOf([&] { fA->ModifyClass(Fetch("TEST_B"), TCIMContext()); }), 31U);
}

TEST_F(ClassHierarchyTest, WithoutItsNamespaceAClassThrowsBadWeakPtr) {
    fNamespace.reset();
    EXPECT_THROW(fA->GetNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(fA->GetSuperClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(fA->IsRootClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(fA->AddToNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_EQ(fA->GetName(TCIMContext()), "TEST_A");
}

TEST_F(ClassHierarchyTest, TheOperationsKeptForTheInterfaceDoNothing) {
    fA->Validate(TCIMContext());
    fA->AddAssociationClass(Fetch("TEST_B"));
    fA->RemoveAssociationClass(Fetch("TEST_B"));
    ICIMClass& a = *fA;
    EXPECT_EQ(&(a = *Fetch("TEST_B")), &a);
    EXPECT_EQ(a.GetName(TCIMContext()), "TEST_A");
    EXPECT_THAT(SubClassNames(*fA, true), IsEmpty());
}
