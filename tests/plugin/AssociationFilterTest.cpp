// Which associations a traversal follows, and to which classes.

#include "model/AssociationFilter.h"

#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// An association class with the references Disk and System.
class AssociationFilterTest : public PluginTest {
  protected:
    AssociationFilterTest() {
        for (const char* name : {"TEST_Disk", "TEST_System", "TEST_Other"}) {
            ServeClass(name, "", "");
        }
        ServeClass("TEST_Link", "",
                   "<PROPERTY.REFERENCE NAME=\"System\"/><PROPERTY.REFERENCE NAME=\"Disk\"/>" +
                       PropertyXml("Note", "string"));
        link_ = FetchClass(*namespace_, "TEST_Link");
        disk_ = FetchClass(*namespace_, "TEST_Disk");
        system_ = FetchClass(*namespace_, "TEST_System");
        Refer("Disk", "TEST_Disk");
        Refer("System", "TEST_System");
    }

    void Refer(const std::string& role, const std::string& className) {
        TCIMReference reference(nullptr, TCIMContext());
        reference.SetClassName(className);
        link_->GetPropertyDecl(role, TCIMContext())->SetDefaultValue(TCIMValue(reference), TCIMContext());
    }

    AssociationFilter Filter(const std::string& assocClass = "", const std::string& resultClass = "",
                             const std::string& role = "", const std::string& resultRole = "") {
        return {namespace_, assocClass, resultClass, role, resultRole, TCIMContext()};
    }

    /// The names of the classes at the far ends of the association, seen from the disk.
    std::vector<std::string> FarEnds(const AssociationFilter& filter) {
        std::vector<std::string> names;
        for (const auto& farEnd : filter.FarEnds(*link_, disk_)) {
            names.push_back(farEnd->GetName(TCIMContext()));
        }
        return names;
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_ = ConnectedNamespace();
    boost::shared_ptr<TCimHTTPClass> link_;
    boost::shared_ptr<TCimHTTPClass> disk_;
    boost::shared_ptr<TCimHTTPClass> system_;
};

} // namespace

TEST_F(AssociationFilterTest, AnEmptyFilterAcceptsEverything) {
    EXPECT_TRUE(Filter().AcceptsAssociation(*link_, disk_));
    EXPECT_TRUE(Filter().AcceptsAssociation(*disk_, disk_)) << "whether it has references is not asked";
    EXPECT_THAT(FarEnds(Filter()), ElementsAre("TEST_System"));
}

TEST_F(AssociationFilterTest, TheAssociationIsOfTheFilterClass) {
    EXPECT_TRUE(Filter("TEST_Link").AcceptsAssociation(*link_, disk_));
    EXPECT_FALSE(Filter("TEST_Other").AcceptsAssociation(*link_, disk_));
}

TEST_F(AssociationFilterTest, TheRoleRefersToTheSource) {
    EXPECT_TRUE(Filter("", "", "Disk").AcceptsAssociation(*link_, disk_));
    EXPECT_TRUE(Filter("", "", "dISK").AcceptsAssociation(*link_, disk_));
    EXPECT_FALSE(Filter("", "", "System").AcceptsAssociation(*link_, disk_));
    EXPECT_TRUE(Filter("", "", "System").AcceptsAssociation(*link_, system_));
    for (const char* noReference : {"Note", "Nothing", "2nd"}) {
        EXPECT_FALSE(Filter("", "", noReference).AcceptsAssociation(*link_, disk_)) << noReference;
    }
}

TEST_F(AssociationFilterTest, TheFarEndIsOfTheResultClass) {
    EXPECT_THAT(FarEnds(Filter("", "TEST_System")), ElementsAre("TEST_System"));
    EXPECT_THAT(FarEnds(Filter("", "TEST_Other")), IsEmpty());
}

TEST_F(AssociationFilterTest, AResultRoleChoosesTheFarEnd) {
    EXPECT_THAT(FarEnds(Filter("", "", "", "sYSTEM")), ElementsAre("TEST_System"));
    EXPECT_THAT(FarEnds(Filter("", "", "", "Disk")), IsEmpty()) << "which is the near end";
    EXPECT_THAT(FarEnds(Filter("", "", "", "2nd")), IsEmpty());
}

TEST_F(AssociationFilterTest, ARoleChoosesTheNearEnd) {
    EXPECT_THAT(FarEnds(Filter("", "", "System")), ElementsAre("TEST_Disk"));
}

TEST_F(AssociationFilterTest, WhereBothEndsReferToTheSourceBothAreFarEnds) {
    Refer("System", "TEST_Disk");
    EXPECT_THAT(FarEnds(Filter()), ElementsAre("TEST_Disk", "TEST_Disk"));
    EXPECT_THAT(FarEnds(Filter("", "", "Disk")), ElementsAre("TEST_Disk"));
}

TEST_F(AssociationFilterTest, AReferenceToAClassThatCannotBeHadLeavesNoFarEnd) {
    Refer("System", "TEST_None");
    EXPECT_THAT(FarEnds(Filter()), IsEmpty());
    Refer("System", "");
    EXPECT_THAT(FarEnds(Filter()), IsEmpty());
}

TEST_F(AssociationFilterTest, AFilterClassMustExist) {
    EXPECT_EQ(StatusOf([&] { Filter("TEST_None"); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(StatusOf([&] { Filter("", "TEST_None"); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(StatusOf([&] { Filter("2nd"); }), TVYXStatusCode::eInvalidName);
}
