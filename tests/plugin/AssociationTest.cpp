#include "PluginTest.h"

using namespace NQORVYX20;

namespace {

using AssociationTest = PluginTest;

bool Unexpected(const boost::shared_ptr<ICIMClass>& cls) {
    ADD_FAILURE() << "called back with " << cls->GetName(TCIMContext());
    return true;
}

} // namespace

TEST_F(AssociationTest, NothingIsReportedBecauseNoClassEverHasAssociations) {
    ServeClass("TEST_Disk", "", "");
    ServeClass("TEST_System", "", "");
    ServeQualifier("Association", "boolean");
    ServeClass("TEST_Link", "",
               QualifierXml("Association", "boolean", "TRUE") +
                   "<PROPERTY.REFERENCE NAME=\"Disk\" REFERENCECLASS=\"TEST_Disk\"/>"
                   "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"TEST_System\"/>");
    const auto nameSpace = ConnectedNamespace();
    const auto link = FetchClass(*nameSpace, "TEST_Link");
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    disk->AddAssociationClass(link);
    for (const auto& cls : {disk, link, nameSpace->GetRootClass()}) {
        cls->EnumerateAssociationClasses(&Unexpected, "", "", TCIMContext());
        cls->EnumerateAssociationClasses(&Unexpected, "TEST_Link", "Disk", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "", "", "", "", TCIMContext());
        cls->EnumerateAssociatedClasses(&Unexpected, "TEST_Link", "TEST_System", "Disk", "System", TCIMContext());
    }
}

TEST_F(AssociationTest, AFilterClassThatCannotBeResolvedIsAnError) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(StatusOf([&] { disk->EnumerateAssociationClasses(&Unexpected, "TEST_None", "", TCIMContext()); }), 15U);
    EXPECT_EQ(StatusOf([&] { disk->EnumerateAssociationClasses(&Unexpected, "2abc", "", TCIMContext()); }), 25U);
    EXPECT_EQ(StatusOf([&] { disk->EnumerateAssociatedClasses(&Unexpected, "TEST_None", "", "", "", TCIMContext()); }),
              15U);
    EXPECT_EQ(StatusOf([&] { disk->EnumerateAssociatedClasses(&Unexpected, "", "TEST_None", "", "", TCIMContext()); }),
              15U);
}
