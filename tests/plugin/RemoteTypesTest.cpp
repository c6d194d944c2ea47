#include "convert/RemoteTypes.h"

#include <gtest/gtest.h>

using namespace NQORVYX20;

TEST(RemoteTypes, EveryRemoteTypeMapsToItsNeighbourInTheHostsTable) {
    for (int code = 0; code <= 14; ++code) {
        const auto type = static_cast<Pegasus::CIMType>(code);
        EXPECT_EQ(pegTypeToVYXType(type, false), code + 1);
        EXPECT_EQ(pegTypeToVYXType(type, true), code + 17);
    }
    EXPECT_EQ(pegTypeToVYXType(Pegasus::CIMTYPE_BOOLEAN, false), TCIMValue::TCIMType::eCIMBoolean);
    EXPECT_EQ(pegTypeToVYXType(Pegasus::CIMTYPE_REFERENCE, false), TCIMValue::TCIMType::eCIMReference);
    EXPECT_EQ(pegTypeToVYXType(Pegasus::CIMTYPE_STRING, true), TCIMValue::TCIMType::eCIMStringArray);
}

TEST(RemoteTypes, AnUnknownScalarHasNoTypeAndAnUnknownArrayKeepsItsArrayBit) {
    constexpr auto kBeyondTheTable = static_cast<Pegasus::CIMType>(31);
    for (const auto type : {Pegasus::CIMTYPE_OBJECT, Pegasus::CIMTYPE_INSTANCE, kBeyondTheTable}) {
        EXPECT_EQ(pegTypeToVYXType(type, false), TCIMValue::TCIMType::eCIMUnknown);
        EXPECT_EQ(pegTypeToVYXType(type, true), TCIMValue::TCIMType::eCIMArrayUnknown);
    }
}

TEST(RemoteScopes, OneKeywordGivesItsScope) {
    EXPECT_EQ(ScopeOfText("CLASS"), ICIMQualifierDecl::eScopeClass);
    EXPECT_EQ(ScopeOfText("ASSOCIATION"), ICIMQualifierDecl::eScopeAssociation);
    EXPECT_EQ(ScopeOfText("INDICATION"), ICIMQualifierDecl::eScopeIndication);
    EXPECT_EQ(ScopeOfText("PROPERTY"), ICIMQualifierDecl::eScopeProperty);
    EXPECT_EQ(ScopeOfText("REFERENCE"), ICIMQualifierDecl::eScopeReference);
    EXPECT_EQ(ScopeOfText("METHOD"), ICIMQualifierDecl::eScopeMethod);
    EXPECT_EQ(ScopeOfText("PARAMETER"), ICIMQualifierDecl::eScopeParameter);
    EXPECT_EQ(ScopeOfText("ANY"), ICIMQualifierDecl::eScopeAny);
}

TEST(RemoteScopes, AnyOtherTextGivesNone) {
    for (const char* text : {"", "CLASS PROPERTY", "class", "CLASS ", "ANYTHING"}) {
        EXPECT_EQ(ScopeOfText(text), ICIMQualifierDecl::eScopeNone) << text;
    }
}

TEST(RemoteScopes, ARemoteScopeIsDecidedByItsText) {
    EXPECT_EQ(pegScopeToVYXScope(Pegasus::CIMScope::METHOD), ICIMQualifierDecl::eScopeMethod);
    EXPECT_EQ(pegScopeToVYXScope(Pegasus::CIMScope::CLASS + Pegasus::CIMScope::PROPERTY),
              ICIMQualifierDecl::eScopeNone);
    EXPECT_EQ(pegScopeToVYXScope(Pegasus::CIMScope::ANY), ICIMQualifierDecl::eScopeNone) << "its text is seven words";
    EXPECT_EQ(pegScopeToVYXScope(Pegasus::CIMScope::NONE), ICIMQualifierDecl::eScopeNone);
}

TEST(RemoteFlavors, OneKeywordGivesItsFlavor) {
    EXPECT_EQ(FlavorOfText("ENABLEOVERRIDE"), ICIMQualifierDecl::eFlavorEnableOverride);
    EXPECT_EQ(FlavorOfText("TOSUBCLASS"), ICIMQualifierDecl::eFlavorToSubclass);
    EXPECT_EQ(FlavorOfText("TRANSLATABLE"), ICIMQualifierDecl::eFlavorTranslatable);
    EXPECT_EQ(FlavorOfText("DEFAULTS"), ICIMQualifierDecl::eFlavorDefaults);
}

TEST(RemoteFlavors, OverridableRestrictedAndAnyOtherTextGiveNone) {
    for (const char* text : {"OVERRIDABLE", "RESTRICTED", "", "translatable", "OVERRIDABLE TOSUBCLASS"}) {
        EXPECT_EQ(FlavorOfText(text), ICIMQualifierDecl::eFlavorNone) << text;
    }
}

TEST(RemoteFlavors, ARemoteFlavorIsDecidedByItsText) {
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::TOSUBCLASS), ICIMQualifierDecl::eFlavorToSubclass);
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::TRANSLATABLE), ICIMQualifierDecl::eFlavorTranslatable);
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::DEFAULTS), ICIMQualifierDecl::eFlavorNone) << "two words";
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::OVERRIDABLE), ICIMQualifierDecl::eFlavorNone);
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::RESTRICTED), ICIMQualifierDecl::eFlavorNone);
    EXPECT_EQ(pegFlavorToVYXFlavor(Pegasus::CIMFlavor::NONE), ICIMQualifierDecl::eFlavorNone);
}
