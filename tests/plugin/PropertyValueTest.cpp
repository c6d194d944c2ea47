#include "PropertyTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TCIMValue ReferenceTo(const std::string& className) {
    TCIMReference reference({}, {});
    reference.SetClassName(className);
    return {reference};
}

class PropertyValueTest : public PropertyTest {
  protected:
    boost::shared_ptr<TCimHTTPPropertyDecl> seven_ = Declare(Uint32(7));
    TCimHTTPProperty property_{seven_};
};

} // namespace

// --- The value ---------------------------------------------------------------------------------------------------

TEST_F(PropertyValueTest, ShowsTheDefaultUntilItHasAValueOfItsOwn) {
    EXPECT_EQ(property_.GetValue({}), Uint32(7));
    EXPECT_TRUE(property_.IsDefaultValue({}));
    EXPECT_TRUE(property_.GetPropagated({}));
    seven_->SetDefaultValue(Uint32(8), {});
    EXPECT_EQ(property_.GetValue({}), Uint32(8));
    property_.SetValue(Uint32(9), {});
    EXPECT_EQ(property_.GetValue({}), Uint32(9));
    EXPECT_FALSE(property_.IsDefaultValue({}));
    EXPECT_FALSE(property_.GetPropagated({}));
}

TEST_F(PropertyValueTest, AValueThatEqualsTheDefaultIsItsOwnAllTheSame) {
    property_.SetValue(Uint32(7), {});
    EXPECT_EQ(property_.GetValue({}), Uint32(7));
    EXPECT_FALSE(property_.IsDefaultValue({}));
}

TEST_F(PropertyValueTest, ANullOfTheDeclaredTypeIsAValueOfItsOwn) {
    property_.SetValue(NullOf(ECIMType::eCIMUint32), {});
    EXPECT_TRUE(property_.GetValue({}).IsNull());
    EXPECT_FALSE(property_.IsDefaultValue({}));
}

TEST_F(PropertyValueTest, MayBeSetToTheValueThatItHolds) {
    const auto declaration = Declare(TCIMValue(""));
    const std::string text = "long enough to be kept on the heap";
    TCimHTTPProperty property(declaration, TCIMValue(text));
    property.SetValue(property.GetValue({}), {});
    property.SetPrevValue(property.GetValue({}));
    property.SetPrevValue(property.GetPrevValue());
    EXPECT_EQ(property.GetValue({}), TCIMValue(text));
    EXPECT_EQ(property.GetPrevValue(), TCIMValue(text));
}

TEST_F(PropertyValueTest, TypeAndArraynessAreTheDeclaredOnes) {
    property_.SetValue(Uint32(9), {});
    EXPECT_EQ(property_.GetType({}), ECIMType::eCIMUint32);
    EXPECT_FALSE(property_.IsArray({}));
    EXPECT_EQ(property_.GetDeclaration({}), seven_);
    seven_->SetDefaultValue(NullOf(ECIMType::eCIMStringArray), {});
    EXPECT_EQ(property_.GetType({}), ECIMType::eCIMStringArray);
    EXPECT_TRUE(property_.IsArray({}));
}

TEST_F(PropertyValueTest, IsMadeOfADeclarationAndAValue) {
    const TCimHTTPProperty property(seven_, Uint32(9));
    EXPECT_EQ(property.GetValue({}), Uint32(9));
    EXPECT_FALSE(property.IsDefaultValue({}));
    EXPECT_FALSE(property.IsPrevValueDifferent());
}

TEST_F(PropertyValueTest, IsNotMadeOfAValueThatTheDeclarationDoesNotAllow) {
    EXPECT_EQ(StatusOf([&] { const TCimHTTPProperty property(seven_, TCIMValue("9")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: SetValue: decl is type uint32 but value is type string"));
}

TEST_F(PropertyValueTest, ACopyMakesTheDefaultItsOwn) {
    const auto original = boost::make_shared<TCimHTTPProperty>(seven_);
    const TCimHTTPProperty copy{boost::shared_ptr<ICIMProperty const>(original)};
    EXPECT_EQ(copy.GetDeclaration({}), seven_);
    EXPECT_EQ(copy.GetValue({}), Uint32(7));
    EXPECT_FALSE(copy.IsDefaultValue({}));
    EXPECT_TRUE(original->IsDefaultValue({}));
}

TEST_F(PropertyValueTest, ACopyOfANullValueShowsTheDefault) {
    const auto null = boost::make_shared<TCimHTTPProperty>(seven_, NullOf(ECIMType::eCIMUint32));
    const TCimHTTPProperty copy{boost::shared_ptr<ICIMProperty const>(null)};
    EXPECT_EQ(copy.GetValue({}), Uint32(7));
    EXPECT_TRUE(copy.IsDefaultValue({}));
}

TEST_F(PropertyValueTest, ACopyTakesTheValueWithoutThePreviousOne) {
    const auto original = boost::make_shared<TCimHTTPProperty>(seven_, Uint32(9));
    original->SetPrevValue(Uint32(8));
    const TCimHTTPProperty copy{boost::shared_ptr<ICIMProperty const>(original)};
    EXPECT_EQ(copy.GetValue({}), Uint32(9));
    EXPECT_FALSE(copy.IsPrevValueDifferent());
    EXPECT_EQ(copy.GetPrevValue(), Uint32(9));
}

TEST_F(PropertyValueTest, AssignmentCopiesNothing) {
    const TCimHTTPProperty nine(seven_, Uint32(9));
    ICIMProperty& property = property_;
    EXPECT_EQ(&(property = nine), &property_);
    EXPECT_TRUE(property_.IsDefaultValue({}));
}

// --- The check of values -----------------------------------------------------------------------------------------

TEST_F(PropertyValueTest, AValueOfAnotherTypeIsRefusedAndTheOldOneStays) {
    struct TCase {
        TCIMValue defaultValue;
        TCIMValue value;
        std::string types;
    };
    const std::vector<TCase> cases{
        {Uint16(7), Uint32(9), "uint16 but value is type uint32"},
        {TCIMValue(7), Uint32(9), "sint32 but value is type uint32"},
        {TCIMValue("seven"), ArrayOf<std::string>({"nine"}), "string but value is type string[]"},
        {ArrayOf<std::string>({"seven"}), TCIMValue("nine"), "string[] but value is type string"},
        {Uint16(7), NullOf(ECIMType::eCIMUint32), "uint16 but value is type uint32"},
        {Uint16(7), TCIMValue(), "uint16 but value is type unknown"},
        {ReferenceTo("TEST_Disk"), TCIMValue("TEST_Disk"), "reference but value is type string"},
    };
    for (const auto& [defaultValue, value, types] : cases) {
        SCOPED_TRACE(types);
        TCimHTTPProperty property(Declare(defaultValue), defaultValue);
        log_->Forget();
        EXPECT_EQ(StatusOf([&, &refused = value] { property.SetValue(refused, {}); }), TVYXStatusCode::eTypeMismatch);
        EXPECT_EQ(property.GetValue({}), defaultValue);
        EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: SetValue: decl is type " + types));
    }
}

TEST_F(PropertyValueTest, APreviousValueOfAnotherTypeIsRefusedAndTheOldOneStays) {
    EXPECT_EQ(StatusOf([&] { property_.SetPrevValue(Uint16(9)); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_FALSE(property_.IsPrevValueDifferent());
    EXPECT_THAT(log_->Errors(), ElementsAre("SetPrevValue: decl is type uint32 but value is type uint16"));
    property_.SetPrevValue(Uint32(8));
    EXPECT_EQ(StatusOf([&] { property_.SetPrevValue(Uint16(9)); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(property_.GetPrevValue(), Uint32(8));
}

TEST_F(PropertyValueTest, AReferenceToAnotherClassIsRefusedAndTheOldOneStays) {
    for (const std::string other : {"TEST_FastDisk", "test_disk", ""}) { // a subclass is another class as well
        TCimHTTPProperty property(Declare(ReferenceTo("TEST_Disk")));
        log_->Forget();
        EXPECT_EQ(StatusOf([&] { property.SetValue(ReferenceTo(other), {}); }), TVYXStatusCode::eTypeMismatch);
        EXPECT_TRUE(property.IsDefaultValue({}));
        EXPECT_EQ(StatusOf([&] { property.SetPrevValue(ReferenceTo(other)); }), TVYXStatusCode::eTypeMismatch);
        EXPECT_FALSE(property.IsPrevValueDifferent());
        const std::string classes = "decl references type TEST_Disk but value references " + other;
        EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: SetValue: " + classes, "SetPrevValue: " + classes));
    }
}

TEST_F(PropertyValueTest, AReferenceToTheDeclaredClassIsAccepted) {
    TCimHTTPProperty property(Declare(ReferenceTo("TEST_Disk")));
    property.SetValue(ReferenceTo("TEST_Disk"), {});
    property.SetPrevValue(ReferenceTo("TEST_Disk"));
    EXPECT_FALSE(property.IsDefaultValue({}));
    EXPECT_TRUE(property.IsPrevValueDifferent());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(PropertyValueTest, ANullReferenceNamesAnotherClassThanTheDeclaredOne) {
    TCimHTTPProperty property(Declare(ReferenceTo("TEST_Disk")));
    EXPECT_EQ(StatusOf([&] { property.SetValue(NullOf(ECIMType::eCIMReference), {}); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_TRUE(property.IsDefaultValue({}));
    EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: SetValue: decl references type TEST_Disk but value references "));
    property.SetPrevValue(NullOf(ECIMType::eCIMReference));
    EXPECT_TRUE(property.GetPrevValue().IsNull());
}

TEST_F(PropertyValueTest, ADeclarationThatNamesNoClassTakesReferencesWithoutOne) {
    TCimHTTPProperty property(Declare(NullOf(ECIMType::eCIMReference)));
    EXPECT_EQ(StatusOf([&] { property.SetValue(ReferenceTo("TEST_Disk"), {}); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(StatusOf([&] { property.SetValue(ReferenceTo(""), {}); }), TVYXStatusCode::eSuccess);
    EXPECT_FALSE(property.IsDefaultValue({}));
}

TEST_F(PropertyValueTest, OnlyScalarReferencesAreHeldToTheirClass) {
    const auto references = [](const std::string& className) {
        return TCIMValue(ECIMType::eCIMReference, 0, {ReferenceTo(className)});
    };
    TCimHTTPProperty property(Declare(references("TEST_Disk")));
    property.SetValue(references("TEST_Fan"), {});
    EXPECT_EQ(property.GetValue({}), references("TEST_Fan"));
}

// --- The previous value ------------------------------------------------------------------------------------------

TEST_F(PropertyValueTest, ThePreviousValueIsTheCurrentOneUntilItIsSet) {
    EXPECT_EQ(property_.GetPrevValue(), Uint32(7));
    property_.SetValue(Uint32(9), {});
    EXPECT_EQ(property_.GetPrevValue(), Uint32(9));
    EXPECT_FALSE(property_.IsPrevValueDifferent());
}

TEST_F(PropertyValueTest, APreviousValueStaysUntilTheNextOne) {
    property_.SetPrevValue(Uint32(8));
    property_.SetValue(Uint32(9), {});
    EXPECT_EQ(property_.GetPrevValue(), Uint32(8));
    EXPECT_TRUE(property_.IsPrevValueDifferent());
    property_.SetPrevValue(Uint32(9));
    EXPECT_EQ(property_.GetPrevValue(), Uint32(9));
    EXPECT_TRUE(property_.IsPrevValueDifferent()) << "also when it equals the current value";
}

TEST_F(PropertyValueTest, ANullPreviousValueOfAnyTypeIsAccepted) {
    property_.SetPrevValue(NullOf(ECIMType::eCIMDateTime));
    EXPECT_EQ(property_.GetPrevValue(), NullOf(ECIMType::eCIMDateTime));
    EXPECT_TRUE(property_.IsPrevValueDifferent());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(PropertyValueTest, ThePreviousValueIsResetToNull) {
    property_.SetPrevValue(Uint32(8));
    property_.SetPrevValue();
    EXPECT_EQ(property_.GetPrevValue(), TCIMValue());
    EXPECT_TRUE(property_.IsPrevValueDifferent());
    EXPECT_EQ(property_.PrevValueToString(), "");
    EXPECT_EQ(property_.GetValue({}), Uint32(7));
}

// --- Comparison --------------------------------------------------------------------------------------------------

TEST_F(PropertyValueTest, EqualAreValuesOfOneDeclaration) {
    const TCimHTTPProperty seven(seven_, Uint32(7));
    TCimHTTPProperty sameSeven(seven_, Uint32(7));
    TCimHTTPProperty eight(seven_, Uint32(8));
    TCimHTTPProperty otherSeven(Declare(Uint32(7)), Uint32(7));
    EXPECT_TRUE(seven == sameSeven);
    EXPECT_TRUE(seven == property_) << "the other side shows its default";
    EXPECT_FALSE(seven == eight);
    EXPECT_FALSE(seven == otherSeven) << "another declaration of the same name and type";
}

TEST_F(PropertyValueTest, OfOneDeclarationTheLesserValueComesFirst) {
    TCimHTTPProperty six(seven_, Uint32(6));
    TCimHTTPProperty eight(seven_, Uint32(8));
    EXPECT_TRUE(six < eight);
    EXPECT_TRUE(six < property_) << "the other side shows its default";
    EXPECT_FALSE(eight < six);
    EXPECT_FALSE(six < six);
}

TEST_F(PropertyValueTest, OfTwoDeclarationsTheLowerAddressComesFirst) {
    auto low = seven_;
    auto high = Declare(Uint32(7));
    if (std::less<>()(high.get(), low.get())) {
        std::swap(low, high);
    }
    TCimHTTPProperty lowNine(low, Uint32(9));
    TCimHTTPProperty highOne(high, Uint32(1));
    EXPECT_TRUE(lowNine < highOne);
    EXPECT_FALSE(highOne < lowNine);
}

TEST_F(PropertyValueTest, WithoutAValueOfItsOwnItEqualsNothing) {
    TCimHTTPProperty seven(seven_, Uint32(7));
    TCimHTTPProperty eight(seven_, Uint32(8));
    EXPECT_FALSE(property_ == seven);
    EXPECT_FALSE(property_ < eight);
}

// --- The declaration ---------------------------------------------------------------------------------------------

TEST_F(PropertyValueTest, DoesNotKeepItsDeclarationAlive) {
    auto declaration = boost::make_shared<TCimHTTPPropertyDecl>(boost::shared_ptr<TCimHTTPClass>(), "Size", Uint32(7));
    TCimHTTPProperty property(declaration);
    declaration.reset();
    EXPECT_THROW(property.GetDeclaration({}), boost::bad_weak_ptr);
    EXPECT_THROW(property.GetType({}), boost::bad_weak_ptr);
    EXPECT_THROW(property.IsArray({}), boost::bad_weak_ptr);
    EXPECT_THROW(property.GetValue({}), boost::bad_weak_ptr);
    EXPECT_THROW(property.GetPrevValue(), boost::bad_weak_ptr);
    EXPECT_THROW(property.SetValue(Uint32(9), {}), boost::bad_weak_ptr);
    EXPECT_THROW(property.SetPrevValue(Uint32(9)), boost::bad_weak_ptr);
    EXPECT_THROW(static_cast<void>(property == property_), boost::bad_weak_ptr);
    EXPECT_THROW(static_cast<void>(property < property_), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToString(), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToStringVector(), boost::bad_weak_ptr);
    EXPECT_TRUE(property.IsDefaultValue({}));
    property.SetPrevValue();
    EXPECT_EQ(property.GetPrevValue(), TCIMValue()) << "null is not checked against the declaration";
}

TEST_F(PropertyValueTest, ItsOwnValueOutlivesTheDeclarationAndItsTextDoesNot) {
    auto declaration = boost::make_shared<TCimHTTPPropertyDecl>(boost::shared_ptr<TCimHTTPClass>(), "Size", Uint32(7));
    const TCimHTTPProperty property(declaration, Uint32(9));
    declaration.reset();
    EXPECT_EQ(property.GetValue({}), Uint32(9));
    EXPECT_EQ(property.GetPrevValue(), Uint32(9));
    EXPECT_THROW(property.ToString(), boost::bad_weak_ptr);
    EXPECT_THROW(property.PrevValueToString(), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToStringVector(), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToStringVectorWithBase(), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToStringWithQualifiers(Uint32(9)), boost::bad_weak_ptr);
    EXPECT_THROW(property.ToStringWithBase(Uint32(9)), boost::bad_weak_ptr);
}
