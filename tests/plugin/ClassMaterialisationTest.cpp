#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ClassMaterialisationTest = PluginTest;

std::string Parameter(const std::string& name, const std::string& type) {
    return "<PARAMETER NAME=\"" + name + "\" TYPE=\"" + type + "\">" + QualifierXml("Description", "string", "x") +
           "</PARAMETER>";
}

} // namespace

TEST_F(ClassMaterialisationTest, TheRootClassIsEmptyAndAsksNobody) {
    const auto nameSpace = ConnectedNamespace();
    const auto root = nameSpace->GetRootClass();
    root->Initialize();
    EXPECT_THAT(server_.Calls(), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { root->EnumerateQualifiers(v, TCIMContext()); }), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { root->EnumeratePropertyDecls(v, TCIMContext()); }), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { root->EnumerateMethodDecls(v, TCIMContext()); }), IsEmpty());
}

TEST_F(ClassMaterialisationTest, AClassThatIsNotInitialisedIsEmptyUnderNoClassAndAsksNobody) {
    const auto nameSpace = ConnectedNamespace();
    const auto disk = boost::make_shared<TCimHTTPClass>(nameSpace, "TEST_Disk", nameSpace->GetRootClass());
    EXPECT_THAT(server_.Calls(), IsEmpty());
    EXPECT_EQ(disk->GetName(TCIMContext()), "TEST_Disk");
    EXPECT_EQ(disk->GetNamespace(TCIMContext()), nameSpace);
    EXPECT_THROW(disk->GetSuperClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_FALSE(disk->IsRootClass(TCIMContext()));
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumerateQualifiers(v, TCIMContext()); }), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumeratePropertyDecls(v, TCIMContext()); }), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumerateMethodDecls(v, TCIMContext()); }), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumerateSubClasses(v, true, TCIMContext()); }), IsEmpty());
}

TEST_F(ClassMaterialisationTest, RequestsComeInTheOrderOfTheDefinition) {
    for (const char* name : {"Zone", "Alpha", "Units", "OfMethod"}) {
        ServeQualifier(name);
    }
    ServeClass("TEST_Disk", "TEST_NotAskedFor",
               QualifierXml("Zone", "string", "x") + QualifierXml("Alpha", "string", "x") +
                   PropertyXml("Size", "uint64", QualifierXml("Units", "string", "Bytes")) +
                   PropertyXml("Name", "string", KeyXml() + QualifierXml("Zone", "string", "x")) +
                   "<METHOD NAME=\"Format\" TYPE=\"uint32\">" + QualifierXml("OfMethod", "string", "x") +
                   Parameter("Quick", "boolean") + "</METHOD>");
    ConnectedNamespace()->AllocateClass("TEST_Disk", nullptr, TCIMContext());
    std::vector<std::string> asked;
    for (const auto& call : server_.Calls()) {
        EXPECT_EQ(call.nameSpace, "root/cimv2");
        asked.push_back(call.parameters.at(call.method == "GetClass" ? "ClassName" : "QualifierName"));
    }
    EXPECT_THAT(asked, ElementsAre("TEST_Disk", "Zone", "Alpha", "Units", "Key"));
}

TEST_F(ClassMaterialisationTest, ADeclarationThatTheNamespaceHasGivesAQualifierItsFlavor) {
    const std::string caption = "<QUALIFIER NAME=\"Caption\" TYPE=\"string\"/>";
    ServeClass("TEST_Disk", "", caption + PropertyXml("Size", "uint64", caption));
    const auto nameSpace = ConnectedNamespace();
    const auto declaration = nameSpace->AllocateQualifierDecl("CAPTION", TCIMValue(""), ICIMQualifierDecl::eScopeAny,
                                                              ICIMQualifierDecl::eFlavorTranslatable, TCIMContext());
    declaration->AddToNamespace(TCIMContext());
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    const auto size = disk->GetPropertyDecl("Size", TCIMContext());
    for (const auto& qualifier :
         {disk->GetQualifier("Caption", TCIMContext()), size->GetQualifier("Caption", TCIMContext())}) {
        EXPECT_EQ(qualifier->GetDeclaration(TCIMContext()), declaration);
        EXPECT_EQ(qualifier->GetFlavor(TCIMContext()), ICIMQualifierDecl::eFlavorTranslatable);
    }
    EXPECT_EQ(CountCalls("GetQualifier"), 0U);
}

TEST_F(ClassMaterialisationTest, AFeatureWhoseNameTheHostDoesNotKnowMakesTheClassUnusable) {
    const std::string name = "Gr\xc3\xb6\xc3\x9f"
                             "e";
    for (const std::string& content : {PropertyXml(name, "uint64"), "<METHOD NAME=\"" + name + "\" TYPE=\"uint32\"/>",
                                       QualifierXml(name, "string", "x")}) {
        log_->Forget();
        ServeClass("TEST_Disk", "", content);
        EXPECT_FALSE(ConnectedNamespace()->GetClass("TEST_Disk", TCIMContext()));
        EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '" + name + "' is invalid"));
    }
}

TEST_F(ClassMaterialisationTest, ClassQualifiersAreCopiedWithTheirValues) {
    ServeQualifier("Version", "string", "TOSUBCLASS=\"false\" TRANSLATABLE=\"true\"", "CLASS=\"true\"");
    ServeQualifier("Aliases", "string", "ISARRAY=\"true\"");
    ServeClass("TEST_Disk", "",
               QualifierXml("Version", "string", "2.1") +
                   "<QUALIFIER NAME=\"Aliases\" TYPE=\"string\"><VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE>"
                   "</VALUE.ARRAY></QUALIFIER>");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumerateQualifiers(v, TCIMContext()); }),
                ElementsAre("Aliases", "PLUGINNAME", "PLUGINVERSION", "Version"));
    EXPECT_EQ(disk->GetQualifier("version", TCIMContext())->GetValue(TCIMContext()), TCIMValue("2.1"));
    EXPECT_EQ(disk->GetQualifier("Aliases", TCIMContext())->GetValue(TCIMContext()),
              TCIMValue(ECIMType::eCIMString, 0, {TCIMValue("a"), TCIMValue("b")}));
}

TEST_F(ClassMaterialisationTest, AQualifierDeclarationIsFetchedLazilyAndRegistered) {
    ServeQualifier("Version", "uint16", "", "CLASS=\"true\"");
    ServeClass("TEST_Disk", "", QualifierXml("Version", "uint16", "3"));
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetQualifierDecl("Version", TCIMContext()));
    FetchClass(*nameSpace, "TEST_Disk");
    const auto declaration = nameSpace->GetQualifierDecl("Version", TCIMContext());
    ASSERT_TRUE(declaration);
    EXPECT_EQ(declaration->GetName(TCIMContext()), "Version");
    EXPECT_EQ(declaration->GetType(TCIMContext()), ECIMType::eCIMUint16);
    EXPECT_TRUE(declaration->GetDefaultValue(TCIMContext()).IsNull());
    EXPECT_EQ(declaration->GetScope(TCIMContext()), ICIMQualifierDecl::eScopeClass);
    EXPECT_EQ(declaration->GetFlavor(TCIMContext()), ICIMQualifierDecl::eFlavorNone);
}

TEST_F(ClassMaterialisationTest, AFetchedDeclarationHasTheNameThatWasAskedForAndAnEmptyDefault) {
    server_.Answer("GetQualifier", "version",
                   "<QUALIFIER.DECLARATION NAME=\"Version\" TYPE=\"uint16\"><SCOPE CLASS=\"true\"/><VALUE>7</VALUE>"
                   "</QUALIFIER.DECLARATION>");
    ServeClass("TEST_Disk", "", QualifierXml("VERSION", "uint16", "3"));
    const auto nameSpace = ConnectedNamespace();
    const auto version = FetchClass(*nameSpace, "TEST_Disk")->GetQualifier("Version", TCIMContext());
    const auto declaration = version->GetDeclaration(TCIMContext());
    EXPECT_EQ(declaration, nameSpace->GetQualifierDecl("Version", TCIMContext()));
    EXPECT_EQ(declaration->GetName(TCIMContext()), "VERSION");
    EXPECT_EQ(declaration->GetDefaultValue(TCIMContext()), TCIMValue(ECIMType::eCIMUint16, 0));
    EXPECT_EQ(version->GetValue(TCIMContext()), TCIMValue(static_cast<unsigned short>(3)));
}

TEST_F(ClassMaterialisationTest, ANullQualifierHasTheEmptyValueOfItsTypeAndANullBooleanIsFalse) {
    for (const char* name : {"Flag", "Text", "Number"}) {
        ServeQualifier(name);
    }
    const std::string nulls =
        QualifierXml("Flag", "boolean", "") + QualifierXml("Text", "string", "") + QualifierXml("Number", "uint16", "");
    ServeClass("TEST_Disk", "", nulls + PropertyXml("Size", "uint64", nulls));
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    const auto size = disk->GetPropertyDecl("Size", TCIMContext());
    const auto valueOf = [](const ICIMNamedElement& element, const char* name) {
        return element.GetQualifier(name, TCIMContext())->GetValue(TCIMContext());
    };
    for (const ICIMNamedElement* element :
         {static_cast<ICIMNamedElement*>(disk.get()), static_cast<ICIMNamedElement*>(size.get())}) {
        EXPECT_EQ(valueOf(*element, "Flag"), TCIMValue(false));
        EXPECT_EQ(valueOf(*element, "Text"), TCIMValue(""));
        EXPECT_EQ(valueOf(*element, "Number"), TCIMValue(static_cast<unsigned short>(0)));
    }
}

TEST_F(ClassMaterialisationTest, AnArrayQualifierIsDeclaredWithItsElementType) {
    ServeQualifier("Aliases", "string", "ISARRAY=\"true\"");
    ServeClass("TEST_Disk", "", "<QUALIFIER NAME=\"Aliases\" TYPE=\"string\"><VALUE.ARRAY/></QUALIFIER>");
    const auto nameSpace = ConnectedNamespace();
    FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(nameSpace->GetQualifierDecl("Aliases", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMString);
}

TEST_F(ClassMaterialisationTest, AScopeOfSeveralKindsIsNone) {
    ServeQualifier("Version", "string", "", "CLASS=\"true\" PROPERTY=\"true\"");
    ServeClass("TEST_Disk", "", QualifierXml("Version", "string", "1"));
    const auto nameSpace = ConnectedNamespace();
    FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(nameSpace->GetQualifierDecl("Version", TCIMContext())->GetScope(TCIMContext()),
              ICIMQualifierDecl::eScopeNone);
}

TEST_F(ClassMaterialisationTest, OneRequestPerQualifierNameServesAllClassesOfANamespace) {
    const std::string content = QualifierXml("Description", "string", "x") +
                                PropertyXml("Name", "string", KeyXml() + QualifierXml("Description", "string", "y")) +
                                PropertyXml("Other", "string", QualifierXml("DESCRIPTION", "string", "z"));
    ServeClass("TEST_Disk", "", content);
    ServeClass("TEST_Tape", "", content);
    const auto nameSpace = ConnectedNamespace();
    FetchClass(*nameSpace, "TEST_Disk");
    FetchClass(*nameSpace, "TEST_Tape");
    EXPECT_EQ(CountCalls("GetQualifier"), 2U);
    EXPECT_EQ(CountCalls("GetQualifier", "Description"), 1U);
    EXPECT_EQ(CountCalls("GetQualifier", "Key"), 1U);
    EXPECT_EQ(CountCalls("GetClass"), 4U);
    const auto other = ConnectedNamespace();
    FetchClass(*other, "TEST_Disk");
    EXPECT_EQ(CountCalls("GetQualifier", "Key"), 2U);
}

TEST_F(ClassMaterialisationTest, PropertiesKeepNameAndTypeAndLoseTheirDefault) {
    ServeClass("TEST_Disk", "",
               PropertyXml("BlockSize", "uint64", ValueXml("512")) +
                   "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>"
                   "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"TEST_System\"/>");
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumeratePropertyDecls(v, TCIMContext()); }),
                ElementsAre("BlockSize", "System", "Tags"));
    const auto blockSize = disk->GetPropertyDecl("blocksize", TCIMContext());
    EXPECT_EQ(blockSize->GetDefaultValue(TCIMContext()), TCIMValue(ECIMType::eCIMUint64, 0));
    EXPECT_EQ(disk->GetPropertyDecl("Tags", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMStringArray);
    EXPECT_EQ(disk->GetPropertyDecl("System", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMReference);
    EXPECT_EQ(blockSize->GetClass(TCIMContext()), disk);
}

TEST_F(ClassMaterialisationTest, PropertyQualifiersAreCopied) {
    ServeQualifier("Units");
    ServeClass("TEST_Disk", "", PropertyXml("Size", "uint64", QualifierXml("Units", "string", "Bytes") + KeyXml()));
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    const auto size = disk->GetPropertyDecl("Size", TCIMContext());
    EXPECT_EQ(size->GetQualifier("UNITS", TCIMContext())->GetValue(TCIMContext()), TCIMValue("Bytes"));
    EXPECT_EQ(size->GetQualifier("Key", TCIMContext())->GetValue(TCIMContext()), TCIMValue(true));
    EXPECT_EQ(size->GetQualifier("Key", TCIMContext())->GetClassOrProperty(TCIMContext()), size);
}

TEST_F(ClassMaterialisationTest, OfTwoPropertiesOfOneNameTheFirstStays) {
    ServeClass("TEST_Disk", "", PropertyXml("Size", "uint64") + PropertyXml("SIZE", "string"));
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    EXPECT_EQ(disk->GetPropertyDecl("Size", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMUint64);
}

TEST_F(ClassMaterialisationTest, MethodsKeepTheirParametersWithoutQualifiers) {
    ServeClass("TEST_Disk", "",
               "<METHOD NAME=\"Format\" TYPE=\"uint32\">" + QualifierXml("Description", "string", "x") +
                   Parameter("Quick", "boolean") +
                   "<PARAMETER.ARRAY NAME=\"Blocks\" TYPE=\"uint16\"/>"
                   "<PARAMETER.REFERENCE NAME=\"System\" REFERENCECLASS=\"TEST_System\"/></METHOD>");
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    const auto format = disk->GetMethodDecl("FORMAT", TCIMContext());
    ASSERT_TRUE(format);
    EXPECT_EQ(format->GetName(TCIMContext()), "Format");
    EXPECT_EQ(format->GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
    EXPECT_EQ(format->GetParameterDecl("Quick", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMBoolean);
    EXPECT_EQ(format->GetParameterDecl("Blocks", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMUint16);
    EXPECT_EQ(format->GetParameterDecl("System", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMReference);
    bool found = true;
    format->GetQualifier("Description", found, TCIMContext());
    EXPECT_FALSE(found);
    format->GetParameterDecl("Quick", TCIMContext())->GetQualifier("Description", found, TCIMContext());
    EXPECT_FALSE(found);
}

TEST_F(ClassMaterialisationTest, InitializeAgainFetchesNothing) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    server_.ForgetCalls();
    disk->Initialize();
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(ClassMaterialisationTest, InitializeWithoutItsNamespaceThrows) {
    auto nameSpace = MakeNamespace();
    const auto cls = boost::make_shared<TCimHTTPClass>(nameSpace, "TEST_Disk", boost::shared_ptr<TCimHTTPClass>());
    nameSpace.reset();
    EXPECT_THROW(cls->Initialize(), boost::bad_weak_ptr);
}

TEST_F(ClassMaterialisationTest, ARemoteFailureLeavesAllocateClassAsTheHostsException) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_EQ(StatusOf([&] { nameSpace->AllocateClass("TEST_None", nullptr, TCIMContext()); }),
              TVYXStatusCode::eNotFound);
}

TEST_F(ClassMaterialisationTest, WhatWasReadBeforeARemoteFailureStaysAndIsNotReadAgain) {
    ServeClass("TEST_Disk", "",
               PropertyXml("Name", "string", KeyXml()) +
                   PropertyXml("Size", "uint64", QualifierXml("NoSuchQualifier", "string", "x")) +
                   PropertyXml("Tags", "string"));
    const auto nameSpace = ConnectedNamespace();
    const auto disk = boost::make_shared<TCimHTTPClass>(nameSpace, "TEST_Disk", boost::shared_ptr<TCimHTTPClass>());
    EXPECT_THROW(disk->Initialize(), Pegasus::CIMException);
    server_.ForgetCalls();
    disk->Initialize();
    EXPECT_THAT(server_.Calls(), IsEmpty());
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk->EnumeratePropertyDecls(v, TCIMContext()); }),
                ElementsAre("Name"));
}

TEST_F(ClassMaterialisationTest, OfTwoMethodsOfOneNameTheFirstStays) {
    ServeClass("TEST_Disk", "", "<METHOD NAME=\"Format\" TYPE=\"uint32\"/><METHOD NAME=\"FORMAT\" TYPE=\"string\"/>");
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    EXPECT_EQ(disk->GetMethodDecl("Format", TCIMContext())->GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
}

TEST_F(ClassMaterialisationTest, AMethodWithTwoParametersOfOneNameMakesTheClassUnusable) {
    ServeClass("TEST_Disk", "",
               "<METHOD NAME=\"Format\" TYPE=\"uint32\">" + Parameter("Quick", "boolean") +
                   Parameter("quick", "boolean") + "</METHOD>");
    EXPECT_FALSE(ConnectedNamespace()->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: Attempt to add property quick to method Format: already exists"));
}

TEST_F(ClassMaterialisationTest, ATextStaysOneWhereOnlyItsQualifiersSayThatItIsAnObject) {
    const std::string isObject = QualifierXml("EmbeddedObject", "boolean", "TRUE");
    ServeQualifier("EmbeddedObject", "boolean");
    ServeClass("TEST_Disk", "",
               PropertyXml("Name", "string", KeyXml()) + "<PROPERTY NAME=\"Setting\" TYPE=\"string\">" + isObject +
                   "</PROPERTY>");
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "Name", "sda",
                               PropertyXml("Name", "string", ValueXml("sda")) +
                                   PropertyXml("Setting", "string", ValueXml("a text"))));
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(disk->GetPropertyDecl("Setting", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMString);
    int count = 0;
    disk->EnumerateInstances(
        [&](const auto& instance) {
            ++count;
            EXPECT_EQ(instance->GetProperty("Setting", TCIMContext())->GetValue(TCIMContext()), TCIMValue("a text"));
            return true;
        },
        false, TCIMContext());
    EXPECT_EQ(count, 1);
}

TEST_F(ClassMaterialisationTest, EmbeddedObjectsHaveNoHostType) {
    ServeClass("TEST_Disk", "",
               "<PROPERTY NAME=\"Setting\" TYPE=\"string\" EmbeddedObject=\"object\"/>"
               "<PROPERTY.ARRAY NAME=\"Parts\" TYPE=\"string\" EmbeddedObject=\"instance\"/>");
    const auto disk = FetchClass(*ConnectedNamespace(), "TEST_Disk");
    EXPECT_EQ(disk->GetPropertyDecl("Setting", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMUnknown);
    EXPECT_EQ(disk->GetPropertyDecl("Parts", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMArrayUnknown);
}
