#include "PluginTest.h"

using namespace NQORVYX20;

namespace {

class QualifierTest : public PluginTest {
  protected:
    QualifierTest() {
        ServeClass("TEST_Disk", "", "");
        namespace_ = ConnectedNamespace();
        disk_ = FetchClass(*namespace_, "TEST_Disk");
    }

    boost::shared_ptr<ICIMQualifierDecl> Declare(const std::string& name, const TCIMValue& defaultValue,
                                                 ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::eFlavorNone) {
        return namespace_->AllocateQualifierDecl(name, defaultValue, ICIMQualifierDecl::eScopeClass, flavor,
                                                 TCIMContext());
    }

    boost::shared_ptr<TCimHTTPQualifier> Allocate(boost::shared_ptr<ICIMQualifierDecl> declaration,
                                                  const TCIMValue& value) {
        return boost::dynamic_pointer_cast<TCimHTTPQualifier>(
            disk_->AllocateQualifier(declaration, value, TCIMContext()));
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> disk_;
};

constexpr auto kEnableOverride = ICIMQualifierDecl::eFlavorEnableOverride;
constexpr auto kToSubclass = ICIMQualifierDecl::eFlavorToSubclass;
constexpr auto kTranslatable = ICIMQualifierDecl::eFlavorTranslatable;

} // namespace

TEST_F(QualifierTest, TakesItsFlavorFromTheDeclaration) {
    const auto colour = Declare("Colour", TCIMValue("red"), kToSubclass);
    EXPECT_EQ(Allocate(colour, TCIMValue("blue"))->GetFlavor(TCIMContext()), kToSubclass);
    EXPECT_EQ(
        disk_->AllocateQualifier(colour, TCIMValue("blue"), kTranslatable, TCIMContext())->GetFlavor(TCIMContext()),
        kTranslatable);
}

TEST_F(QualifierTest, KnowsItsDeclarationElementAndValue) {
    const auto declaration = Declare("Colour", TCIMValue("red"));
    const auto colour = Allocate(declaration, TCIMValue("blue"));
    EXPECT_EQ(colour->GetName(TCIMContext()), "Colour");
    EXPECT_EQ(colour->GetDeclaration(TCIMContext()), declaration);
    EXPECT_EQ(colour->GetClassOrProperty(TCIMContext()), disk_);
    EXPECT_EQ(colour->GetValue(TCIMContext()), TCIMValue("blue"));
    EXPECT_EQ(colour->GetType(TCIMContext()), ECIMType::eCIMString);
    EXPECT_FALSE(colour->IsArray(TCIMContext()));
    EXPECT_FALSE(colour->GetPropagated(TCIMContext()));
}

TEST_F(QualifierTest, ItsTypeIsThatOfItsValue) {
    const auto colour = Allocate(Declare("Colour", TCIMValue("red")),
                                 TCIMValue(ECIMType::eCIMUint16, 0, {TCIMValue(static_cast<unsigned short>(1))}));
    EXPECT_EQ(colour->GetType(TCIMContext()), ECIMType::eCIMUint16Array);
    EXPECT_TRUE(colour->IsArray(TCIMContext()));
}

TEST_F(QualifierTest, SetFlavorAddsBitsAndUnsetFlavorTakesThemAway) {
    const auto colour = Allocate(Declare("Colour", TCIMValue("red"), kToSubclass), TCIMValue("blue"));
    colour->SetFlavor(kTranslatable, TCIMContext());
    EXPECT_EQ(colour->GetFlavor(TCIMContext()), kToSubclass | kTranslatable);
    colour->UnsetFlavor(kToSubclass, TCIMContext());
    EXPECT_EQ(colour->GetFlavor(TCIMContext()), kTranslatable);
}

TEST_F(QualifierTest, APropagatedCopyTakesEverythingOver) {
    const auto original = Allocate(Declare("Colour", TCIMValue("red"), kToSubclass), TCIMValue("blue"));
    original->SetFlavor(kTranslatable, TCIMContext());
    const auto root = namespace_->GetRootClass();
    EXPECT_FALSE(TCimHTTPQualifier(root, original).GetPropagated(TCIMContext()));
    original->SetPropagated(true);
    const TCimHTTPQualifier copy(root, original);
    EXPECT_EQ(copy.GetClassOrProperty(TCIMContext()), root);
    EXPECT_EQ(copy.GetDeclaration(TCIMContext()), original->GetDeclaration(TCIMContext()));
    EXPECT_EQ(copy.GetValue(TCIMContext()), TCIMValue("blue"));
    EXPECT_EQ(copy.GetFlavor(TCIMContext()), kToSubclass | kTranslatable) << "the original's, not the declaration's";
    EXPECT_TRUE(copy.GetPropagated(TCIMContext()));
}

TEST_F(QualifierTest, AnyChangeMakesItItsElementsOwn) {
    const auto colour = Allocate(Declare("Colour", TCIMValue("red")), TCIMValue("blue"));
    colour->SetPropagated(true);
    colour->SetFlavor(kTranslatable, TCIMContext());
    EXPECT_FALSE(colour->GetPropagated(TCIMContext()));
    colour->SetPropagated(true);
    colour->UnsetFlavor(kTranslatable, TCIMContext());
    EXPECT_FALSE(colour->GetPropagated(TCIMContext()));
    colour->SetPropagated(true);
    colour->SetValue(TCIMValue("green"), TCIMContext());
    EXPECT_FALSE(colour->GetPropagated(TCIMContext()));
    EXPECT_EQ(colour->GetValue(TCIMContext()), TCIMValue("green"));
}

TEST_F(QualifierTest, IsComparedByNameAlone) {
    const auto declaration = Declare("Colour", TCIMValue("red"));
    const auto blue = Allocate(declaration, TCIMValue("blue"));
    const auto green = Allocate(declaration, TCIMValue("green"));
    const auto size = Allocate(Declare("SIZE", TCIMValue("")), TCIMValue("blue"));
    const auto lowerColour = Allocate(Declare("colour", TCIMValue("")), TCIMValue("blue"));
    EXPECT_TRUE(*blue == *green);
    EXPECT_TRUE(*blue == *lowerColour);
    EXPECT_FALSE(*blue == *size);
    EXPECT_TRUE(*blue < *size);
    EXPECT_TRUE(*lowerColour < *size);
    EXPECT_FALSE(*size < *blue);
    EXPECT_FALSE(*blue < *green);
}

TEST_F(QualifierTest, AddsItselfToItsElement) {
    const auto colour = Allocate(Declare("Colour", TCIMValue("red")), TCIMValue("blue"));
    colour->AddToClassOrProperty(TCIMContext());
    EXPECT_EQ(disk_->GetQualifier("colour", TCIMContext()), colour);
    colour->RemoveFromClassOrProperty(TCIMContext());
    EXPECT_EQ(disk_->GetQualifier("colour", TCIMContext()), colour);
}

TEST_F(QualifierTest, DoesNotKeepItsElementAlive) {
    auto property = disk_->AllocatePropertyDecl("Size", TCIMValue(), TCIMContext());
    const auto colour =
        property->AllocateQualifier(Declare("Colour", TCIMValue("red")), TCIMValue("blue"), TCIMContext());
    property.reset();
    EXPECT_THROW(colour->GetClassOrProperty(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(colour->AddToClassOrProperty(TCIMContext()), boost::bad_weak_ptr);
}

TEST_F(QualifierTest, ADeclarationKeepsWhatItWasMadeOf) {
    const auto declaration = Declare("Colour", TCIMValue("red"), kToSubclass);
    EXPECT_EQ(declaration->GetName(TCIMContext()), "Colour");
    EXPECT_EQ(declaration->GetDefaultValue(TCIMContext()), TCIMValue("red"));
    EXPECT_EQ(declaration->GetType(TCIMContext()), ECIMType::eCIMString);
    EXPECT_FALSE(declaration->IsArray(TCIMContext()));
    EXPECT_EQ(declaration->GetScope(TCIMContext()), ICIMQualifierDecl::eScopeClass);
    EXPECT_EQ(declaration->GetFlavor(TCIMContext()), kToSubclass);
    declaration->SetDefaultValue(TCIMValue(ECIMType::eCIMStringArray, 0), TCIMContext());
    EXPECT_EQ(declaration->GetType(TCIMContext()), ECIMType::eCIMStringArray);
    EXPECT_TRUE(declaration->IsArray(TCIMContext()));
    declaration->SetFlavor(kEnableOverride, TCIMContext());
    EXPECT_EQ(declaration->GetFlavor(TCIMContext()), ICIMQualifierDecl::eFlavorDefaults);
    declaration->UnsetFlavor(kToSubclass, TCIMContext());
    EXPECT_EQ(declaration->GetFlavor(TCIMContext()), kEnableOverride);
}

TEST_F(QualifierTest, DeclarationsAreComparedByNormalisedName) {
    const auto colour = Declare("Colour", TCIMValue("red"));
    EXPECT_TRUE(*colour == *Declare("COLOUR", TCIMValue(1)));
    EXPECT_FALSE(*colour == *Declare("Size", TCIMValue("red")));
    EXPECT_TRUE(*colour < *Declare("SIZE", TCIMValue("red")));
    EXPECT_TRUE(*Declare("colour", TCIMValue("red")) < *Declare("SIZE", TCIMValue("red")));
    EXPECT_FALSE(*colour < *Declare("COLOUR", TCIMValue("red")));
}

TEST_F(QualifierTest, AssignmentCopiesNothing) {
    const auto red = Declare("Colour", TCIMValue("red"), kToSubclass);
    const auto size = Declare("Size", TCIMValue(1), kTranslatable);
    const boost::shared_ptr<ICIMQualifier> colour = Allocate(red, TCIMValue("blue"));
    const boost::shared_ptr<ICIMQualifier> other = Allocate(size, TCIMValue(2));
    EXPECT_EQ(&(*colour = *other), colour.get());
    EXPECT_EQ(colour->GetName(TCIMContext()), "Colour");
    EXPECT_EQ(colour->GetValue(TCIMContext()), TCIMValue("blue"));
    EXPECT_EQ(&(*red = *size), red.get());
    EXPECT_EQ(red->GetName(TCIMContext()), "Colour");
    EXPECT_EQ(red->GetDefaultValue(TCIMContext()), TCIMValue("red"));
    EXPECT_EQ(red->GetFlavor(TCIMContext()), kToSubclass);
}

TEST_F(QualifierTest, ADeclarationStaysInItsNamespace) {
    const auto colour = Declare("Colour", TCIMValue("red"));
    EXPECT_NO_THROW(colour->Validate(TCIMContext()));
    EXPECT_NO_THROW(Allocate(colour, TCIMValue("blue"))->Validate(TCIMContext()));
    colour->AddToNamespace(TCIMContext());
    colour->RemoveQualifierDecl(TCIMContext());
    EXPECT_EQ(namespace_->GetQualifierDecl("colour", TCIMContext()), colour);
}

TEST_F(QualifierTest, ADeclarationDoesNotKeepItsNamespaceAlive) {
    auto nameSpace = MakeNamespace();
    const auto declaration = nameSpace->AllocateQualifierDecl("Colour", TCIMValue(), ICIMQualifierDecl::eScopeNone,
                                                              ICIMQualifierDecl::eFlavorNone, TCIMContext());
    nameSpace.reset();
    EXPECT_THROW(declaration->GetNamespace(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(declaration->AddToNamespace(TCIMContext()), boost::bad_weak_ptr);
}
