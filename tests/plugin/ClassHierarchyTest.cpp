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
        namespace_ = ConnectedNamespace();
        a_ = FetchClass(*namespace_, "TEST_A");
    }

    boost::shared_ptr<TCimHTTPClass> Fetch(const std::string& name) { return FetchClass(*namespace_, name); }

    std::vector<std::string> SubClassNames(ICIMClass& cls, bool deep) {
        return VisitedNames([&](const auto& visit) { cls.EnumerateSubClasses(visit, deep, TCIMContext()); });
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> a_;
};

} // namespace

TEST_F(ClassHierarchyTest, EveryFetchedClassHangsUnderTheRoot) {
    ServeClass("TEST_Sub", "TEST_A", "");
    const auto sub = Fetch("TEST_Sub");
    EXPECT_EQ(sub->GetSuperClass(TCIMContext()), namespace_->GetRootClass());
    EXPECT_TRUE(sub->IsRootClass(TCIMContext()));
    EXPECT_TRUE(a_->IsRootClass(TCIMContext()));
    EXPECT_FALSE(namespace_->GetRootClass()->IsRootClass(TCIMContext()));
    EXPECT_THAT(SubClassNames(*namespace_->GetRootClass(), false), ElementsAre("TEST_A", "TEST_Sub"));
}

TEST_F(ClassHierarchyTest, AClassKnowsItsNamespace) { EXPECT_EQ(a_->GetNamespace(TCIMContext()), namespace_); }

TEST_F(ClassHierarchyTest, AClassIsASubclassOfItselfByName) {
    EXPECT_TRUE(a_->IsSubclassOf(a_, TCIMContext()));
    const auto sameName = namespace_->AllocateClass("TEST_A", nullptr, TCIMContext());
    EXPECT_TRUE(a_->IsSubclassOf(sameName, TCIMContext()));
    EXPECT_FALSE(a_->IsSubclassOf(Fetch("TEST_B"), TCIMContext()));
    const auto lower = namespace_->AllocateClass("test_a", nullptr, TCIMContext());
    EXPECT_FALSE(a_->IsSubclassOf(lower, TCIMContext())) << "names are compared with regard to case";
}

TEST_F(ClassHierarchyTest, TheRootIsComparedOnlyWhereTheWalkStarts) {
    const auto root = namespace_->GetRootClass();
    EXPECT_FALSE(a_->IsSubclassOf(root, TCIMContext()));
    EXPECT_TRUE(root->IsSubclassOf(root, TCIMContext()));
    EXPECT_FALSE(root->IsSubclassOf(a_, TCIMContext()));
}

TEST_F(ClassHierarchyTest, DeepVisitsTheSubtreeAndFlatTheDirectSubclasses) {
    a_->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    a_->AddChildClass(Fetch("TEST_D"));
    EXPECT_THAT(SubClassNames(*a_, true), ElementsAre("TEST_B", "TEST_C", "TEST_D"));
    EXPECT_THAT(SubClassNames(*a_, false), ElementsAre("TEST_B", "TEST_D"));
}

TEST_F(ClassHierarchyTest, DeepGoesDownAsFarAsThereAreSubclasses) {
    a_->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    Fetch("TEST_C")->AddChildClass(Fetch("TEST_D"));
    EXPECT_THAT(SubClassNames(*a_, true), ElementsAre("TEST_B", "TEST_C", "TEST_D"));
    EXPECT_THAT(SubClassNames(*namespace_->GetRootClass(), true),
                ElementsAre("TEST_A", "TEST_B", "TEST_C", "TEST_D", "TEST_B", "TEST_C", "TEST_D", "TEST_C", "TEST_D",
                            "TEST_D"));
    std::vector<std::string> visited;
    a_->EnumerateSubClasses(
        [&](const auto& cls) {
            visited.push_back(cls->GetName(TCIMContext()));
            return visited.back() != "TEST_D";
        },
        true, TCIMContext());
    EXPECT_THAT(visited, ElementsAre("TEST_B", "TEST_C", "TEST_D"));
}

TEST_F(ClassHierarchyTest, AGrandchildThatIsRefusedEndsOnlyItsLevel) {
    a_->AddChildClass(Fetch("TEST_B"));
    Fetch("TEST_B")->AddChildClass(Fetch("TEST_C"));
    a_->AddChildClass(Fetch("TEST_D"));
    std::vector<std::string> visited;
    a_->EnumerateSubClasses(
        [&](const auto& cls) {
            visited.push_back(cls->GetName(TCIMContext()));
            return visited.back() != "TEST_C";
        },
        true, TCIMContext());
    EXPECT_THAT(visited, ElementsAre("TEST_B", "TEST_C", "TEST_D"));
}

TEST_F(ClassHierarchyTest, AChildThatIsRefusedEndsTheEnumeration) {
    a_->AddChildClass(Fetch("TEST_B"));
    a_->AddChildClass(Fetch("TEST_D"));
    int calls = 0;
    a_->EnumerateSubClasses(
        [&](const auto&) {
            ++calls;
            return false;
        },
        true, TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(ClassHierarchyTest, AddChildClassKeepsOneEntryPerExactName) {
    a_->AddChildClass(Fetch("TEST_B"));
    const auto again = namespace_->AllocateClass("TEST_B", nullptr, TCIMContext());
    a_->AddChildClass(again);
    a_->AddChildClass(namespace_->AllocateClass("test_b", nullptr, TCIMContext()));
    EXPECT_THAT(SubClassNames(*a_, false), ElementsAre("TEST_B", "test_b"));
    a_->EnumerateSubClasses(
        [&](const auto& first) {
            EXPECT_EQ(first, again) << "the later one has the place of the earlier";
            return false;
        },
        false, TCIMContext());
    a_->RemoveChildClass(again);
    EXPECT_THAT(SubClassNames(*a_, false), ElementsAre("TEST_B", "test_b"));
}

TEST_F(ClassHierarchyTest, AClassWithoutASuperclassEntersTheNamespaceAndJoinsNoClass) {
    const auto loose = boost::make_shared<TCimHTTPClass>(namespace_, "TEST_Loose", a_);
    EXPECT_THROW(loose->AddToNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_EQ(namespace_->GetClass("TEST_Loose", TCIMContext()), loose);
    EXPECT_THAT(SubClassNames(*namespace_->GetRootClass(), true), ElementsAre("TEST_A"));
}

TEST_F(ClassHierarchyTest, ClassesAreComparedByExactName) {
    const auto lower = namespace_->AllocateClass("test_a", nullptr, TCIMContext());
    const auto same = namespace_->AllocateClass("TEST_A", nullptr, TCIMContext());
    EXPECT_TRUE(*a_ == *same);
    EXPECT_FALSE(*a_ == *lower);
    EXPECT_TRUE(*a_ < *lower);
    EXPECT_FALSE(*lower < *a_);
}

TEST_F(ClassHierarchyTest, ChangesToAClassAreRefused) {
    EXPECT_EQ(StatusOf([&] { a_->RemoveFromNamespace(TCIMContext()); }), TVYXStatusCode::eReadOnly);
    EXPECT_EQ(StatusOf([&] { a_->ModifyClass(Fetch("TEST_B"), TCIMContext()); }), TVYXStatusCode::eReadOnly);
}

TEST_F(ClassHierarchyTest, WithoutItsNamespaceAClassThrowsBadWeakPtr) {
    namespace_.reset();
    EXPECT_THROW(a_->GetNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(a_->GetSuperClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(a_->IsRootClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(a_->AddToNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_EQ(a_->GetName(TCIMContext()), "TEST_A");
}

TEST_F(ClassHierarchyTest, TheOperationsKeptForTheInterfaceDoNothing) {
    a_->Validate(TCIMContext());
    a_->AddAssociationClass(Fetch("TEST_B"));
    a_->RemoveAssociationClass(Fetch("TEST_B"));
    ICIMClass& a = *a_;
    EXPECT_EQ(&(a = *Fetch("TEST_B")), &a);
    EXPECT_EQ(a.GetName(TCIMContext()), "TEST_A");
    EXPECT_THAT(SubClassNames(*a_, true), IsEmpty());
}
