#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;

namespace {

class DeclarationTest : public PluginTest {
  protected:
    DeclarationTest() {
        ServeClass("TEST_Disk", "", "");
        fNamespace = ConnectedNamespace();
        fDisk = FetchClass(*fNamespace, "TEST_Disk");
        fSize = Property("Size");
        fFormat = boost::dynamic_pointer_cast<TCimHTTPMethodDecl>(
            fDisk->AllocateMethodDecl("Format", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext()));
        fQuick = Parameter("Quick");
    }

    boost::shared_ptr<TCimHTTPPropertyDecl> Property(const std::string& name) {
        return boost::dynamic_pointer_cast<TCimHTTPPropertyDecl>(
            fDisk->AllocatePropertyDecl(name, TCIMValue(7U), TCIMContext()));
    }

    boost::shared_ptr<TCimHTTPParameterDecl> Parameter(const std::string& name) {
        return boost::dynamic_pointer_cast<TCimHTTPParameterDecl>(
            fFormat->AllocateParameterDecl(name, TCIMValue::TCIMType(ECIMType::eCIMBoolean), TCIMContext()));
    }

    boost::shared_ptr<ICIMQualifierDecl> Declare(const std::string& name, ICIMQualifierDecl::EFlavor flavor) {
        return fNamespace->AllocateQualifierDecl(name, TCIMValue(""), ICIMQualifierDecl::eScopeProperty, flavor,
                                                 TCIMContext());
    }

    /// Every kind of element that carries qualifiers by the one rule.
    std::vector<boost::shared_ptr<ICIMNamedElement>> Elements() { return {fDisk, fSize, fFormat, fQuick}; }

    static boost::shared_ptr<ICIMQualifier>
    Add(ICIMNamedElement& element, boost::shared_ptr<ICIMQualifierDecl> declaration, const std::string& value) {
        auto qualifier = element.AllocateQualifier(declaration, TCIMValue(value), TCIMContext());
        element.AddQualifier(qualifier, TCIMContext());
        return qualifier;
    }

    static boost::shared_ptr<ICIMQualifier> Find(const ICIMNamedElement& element, const std::string& name) {
        bool found = false;
        auto qualifier = element.GetQualifier(name, found, TCIMContext());
        EXPECT_EQ(found, qualifier != nullptr);
        return qualifier;
    }

    boost::shared_ptr<TCimHTTPNamespace> fNamespace;
    boost::shared_ptr<TCimHTTPClass> fDisk;
    boost::shared_ptr<TCimHTTPPropertyDecl> fSize;
    boost::shared_ptr<TCimHTTPMethodDecl> fFormat;
    boost::shared_ptr<TCimHTTPParameterDecl> fQuick;
};

/// A qualifier of another implementation that says what one of the plug-in's says.
class ForeignQualifier : public ICIMQualifier {
  public:
    explicit ForeignQualifier(boost::shared_ptr<ICIMQualifier> own) : fOwn(own) {}
    void Validate(TCIMContext /*context*/) const override {}
    void AddToClassOrProperty(TCIMContext /*context*/) const override {}
    void RemoveFromClassOrProperty(TCIMContext /*context*/) override {}
    const std::string& GetName(TCIMContext context) const override { return fOwn->GetName(context); }
    boost::shared_ptr<ICIMNamedElement const> GetClassOrProperty(TCIMContext context) const override {
        return fOwn->GetClassOrProperty(context);
    }
    TCIMValue::TCIMType GetType(TCIMContext context) const override { return fOwn->GetType(context); }
    bool IsArray(TCIMContext context) const override { return fOwn->IsArray(context); }
    boost::shared_ptr<ICIMQualifierDecl const> GetDeclaration(TCIMContext context) const override {
        return fOwn->GetDeclaration(context);
    }
    const TCIMValue& GetValue(TCIMContext context) const override { return fOwn->GetValue(context); }
    void SetValue(const TCIMValue& /*value*/, TCIMContext /*context*/) override {}
    void SetFlavor(ICIMQualifierDecl::EFlavor /*flavor*/, TCIMContext /*context*/) override {}
    void UnsetFlavor(ICIMQualifierDecl::EFlavor /*flavor*/, TCIMContext /*context*/) override {}
    ICIMQualifierDecl::EFlavor GetFlavor(TCIMContext context) const override { return fOwn->GetFlavor(context); }
    bool operator==(ICIMQualifier& other) const override { return *fOwn == other; }
    bool operator<(ICIMQualifier& other) const override { return *fOwn < other; }
    bool GetPropagated(TCIMContext context) const override { return fOwn->GetPropagated(context); }
    ICIMQualifier& operator=(const ICIMQualifier& /*other*/) override { return *this; }

  private:
    boost::shared_ptr<ICIMQualifier> fOwn;
};

constexpr auto kFixed = ICIMQualifierDecl::eFlavorToSubclass;
constexpr auto kOverridable = ICIMQualifierDecl::eFlavorDefaults;

} // namespace

// --- Qualifiers, on every kind of element ------------------------------------------------------------------------

TEST_F(DeclarationTest, AnAllocatedQualifierIsNotAdded) {
    for (const auto& element : Elements()) {
        element->AllocateQualifier(Declare("Units", kFixed), TCIMValue("Bytes"), TCIMContext());
        EXPECT_FALSE(Find(*element, "Units"));
    }
}

TEST_F(DeclarationTest, AnAllocatedQualifierIsItsElementsWithTheFlavorAskedFor) {
    for (const auto& element : Elements()) {
        const auto units = element->AllocateQualifier(Declare("Units", kFixed), TCIMValue("Bytes"), TCIMContext());
        EXPECT_EQ(units->GetValue(TCIMContext()), TCIMValue("Bytes"));
        EXPECT_EQ(units->GetFlavor(TCIMContext()), kFixed) << "that of the declaration";
        EXPECT_EQ(units->GetClassOrProperty(TCIMContext()), element);
        units->AddToClassOrProperty(TCIMContext());
        EXPECT_EQ(Find(*element, "Units"), units);

        const auto bits =
            element->AllocateQualifier(Declare("Units", kFixed), TCIMValue("Bits"), kOverridable, TCIMContext());
        EXPECT_EQ(bits->GetValue(TCIMContext()), TCIMValue("Bits"));
        EXPECT_EQ(bits->GetFlavor(TCIMContext()), kOverridable);
        EXPECT_EQ(bits->GetClassOrProperty(TCIMContext()), element);
    }
}

TEST_F(DeclarationTest, AQualifierIsFoundInAnyCase) {
    for (const auto& element : Elements()) {
        const auto units = Add(*element, Declare("units", kFixed), "Bytes");
        EXPECT_EQ(Find(*element, "UNITS"), units);
        EXPECT_EQ(element->GetQualifier("Units", TCIMContext()), units);
    }
}

TEST_F(DeclarationTest, AFixedQualifierMayBeAddedAgainUnchanged) {
    for (const auto& element : Elements()) {
        const auto first = Add(*element, Declare("Marker", kFixed), "true");
        boost::shared_ptr<ICIMQualifier> second;
        EXPECT_EQ(StatusOf([&] { second = Add(*element, Declare("Marker", kFixed), "true"); }), 0U);
        EXPECT_EQ(Find(*element, "Marker"), element == fDisk ? second : first) << "a class takes the new one";
    }
}

TEST_F(DeclarationTest, AFixedQualifierRefusesAnotherValue) {
    for (const auto& element : Elements()) {
        const auto first = Add(*element, Declare("Marker", kFixed), "true");
        EXPECT_EQ(StatusOf([&] { Add(*element, Declare("Marker", kFixed), "false"); }), 28U);
        EXPECT_EQ(Find(*element, "Marker"), first);
    }
}

TEST_F(DeclarationTest, ARefusedQualifierIsLoggedWithItsElement) {
    const std::vector<std::string> texts = {"class TEST_Disk", "property Size", "method Format", "parameter Quick"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto element = Elements()[i];
        Add(*element, Declare("Marker", kFixed), "true");
        fLog->Forget();
        StatusOf([&] { Add(*element, Declare("MARKER", kFixed), "false"); });
        EXPECT_THAT(fLog->Errors(),
                    ElementsAre("TCimHTTP: Attempt to add qualifier MARKER to " + texts[i] +
                                ": already exists with another value or flavor and may not be overridden"));
    }
}

TEST_F(DeclarationTest, AFixedQualifierRefusesAnotherFlavor) {
    for (const auto& element : Elements()) {
        const auto first = Add(*element, Declare("Marker", kFixed), "true");
        EXPECT_EQ(StatusOf([&] { Add(*element, Declare("Marker", kOverridable), "true"); }), 28U);
        EXPECT_EQ(Find(*element, "Marker"), first);
    }
}

TEST_F(DeclarationTest, AnOverridableQualifierGivesWay) {
    for (const auto& element : Elements()) {
        Add(*element, Declare("Units", kOverridable), "Bytes");
        const auto second = Add(*element, Declare("UNITS", kFixed), "Bits");
        EXPECT_EQ(Find(*element, "Units"), second);
    }
}

TEST_F(DeclarationTest, AForeignQualifierIsComparedAndNeverKept) {
    const auto foreign = [](const ICIMNamedElement& element, boost::shared_ptr<ICIMQualifierDecl> declaration,
                            const std::string& value) {
        return boost::make_shared<ForeignQualifier>(
            element.AllocateQualifier(declaration, TCIMValue(value), TCIMContext()));
    };
    for (const auto& element : Elements()) {
        const auto fixed = Add(*element, Declare("Marker", kFixed), "true");
        const auto same = foreign(*element, Declare("marker", kFixed), "true");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(same, TCIMContext()); }), 0U);
        const auto other = foreign(*element, Declare("Marker", kFixed), "false");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(other, TCIMContext()); }), 28U);
        EXPECT_EQ(Find(*element, "Marker"), fixed);

        const auto overridable = Add(*element, Declare("Units", kOverridable), "Bytes");
        const auto successor = foreign(*element, Declare("Units", kOverridable), "Bits");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(successor, TCIMContext()); }), 14U);
        EXPECT_EQ(Find(*element, "Units"), overridable);

        const auto added = foreign(*element, Declare("MaxLen", kFixed), "8");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(added, TCIMContext()); }), 14U);
        EXPECT_FALSE(Find(*element, "MaxLen"));
        EXPECT_EQ(StatusOf([&] { element->AddQualifier({}, TCIMContext()); }), 14U);
    }
}

TEST_F(DeclarationTest, QualifiersAreEnumeratedByNormalisedNameUntilTheCallbackStops) {
    for (const auto& element :
         {boost::shared_ptr<ICIMNamedElement>(fSize), boost::shared_ptr<ICIMNamedElement>(fFormat),
          boost::shared_ptr<ICIMNamedElement>(fQuick)}) {
        for (const char* name : {"units", "Key", "MaxLen"}) {
            Add(*element, Declare(name, kFixed), "x");
        }
        EXPECT_THAT(VisitedNames([&](const auto& visit) { element->EnumerateQualifiers(visit, TCIMContext()); }),
                    ElementsAre("Key", "MaxLen", "units"));
        int calls = 0;
        element->EnumerateQualifiers([&](const auto&) { return ++calls < 2; }, TCIMContext());
        EXPECT_EQ(calls, 2);
    }
}

TEST_F(DeclarationTest, AnAbsentQualifierThrowsOnADeclarationAndIsEmptyOnAClass) {
    EXPECT_EQ(StatusOf([&] { fSize->GetQualifier("Units", TCIMContext()); }), 15U);
    EXPECT_EQ(StatusOf([&] { fFormat->GetQualifier("Units", TCIMContext()); }), 15U);
    EXPECT_EQ(StatusOf([&] { fQuick->GetQualifier("Units", TCIMContext()); }), 15U);
    EXPECT_FALSE(fDisk->GetQualifier("Units", TCIMContext()));
}

TEST_F(DeclarationTest, TheFormWithTheFlagNeverThrowsForAnAbsentQualifier) {
    for (const auto& element : Elements()) {
        bool found = true;
        EXPECT_FALSE(element->GetQualifier("Units", found, TCIMContext()));
        EXPECT_FALSE(found);
        Add(*element, Declare("Units", kFixed), "Bytes");
        EXPECT_TRUE(element->GetQualifier("Units", found, TCIMContext()));
        EXPECT_TRUE(found);
    }
}

TEST_F(DeclarationTest, TheSecondBaseOfAClassReachesTheSameQualifiers) {
    ICIMClass& cls = *fDisk;
    ICIMNamedElement& element = cls;
    const auto units = Add(element, Declare("Units", kFixed), "Bytes");
    EXPECT_EQ(Find(cls, "Units"), units);
    EXPECT_EQ(units->GetClassOrProperty(TCIMContext()).get(), &element);
    EXPECT_EQ(VisitedNames([&](const auto& visit) { cls.EnumerateQualifiers(visit, TCIMContext()); }),
              VisitedNames([&](const auto& visit) { element.EnumerateQualifiers(visit, TCIMContext()); }));
}

TEST_F(DeclarationTest, RemoveQualifierTakesOneAwayAndThrowsForAnUnknownOne) {
    const auto units = Add(*fSize, Declare("Units", kFixed), "Bytes");
    fSize->RemoveQualifier(units);
    EXPECT_FALSE(fSize->LookupQualifier("Units"));
    EXPECT_EQ(StatusOf([&] { fSize->RemoveQualifier(units); }), 15U);
    const auto quickUnits = Add(*fQuick, Declare("Units", kFixed), "Bytes");
    EXPECT_EQ(fQuick->LookupQual("UNITS"), quickUnits);
    fQuick->RemoveQualifier(quickUnits);
    EXPECT_FALSE(fQuick->LookupQual("Units"));
}

// --- Property declarations ---------------------------------------------------------------------------------------

TEST_F(DeclarationTest, APropertysTypeIsThatOfItsDefault) {
    EXPECT_EQ(fSize->GetName(TCIMContext()), "Size");
    EXPECT_EQ(fSize->GetType(TCIMContext()), ECIMType::eCIMUint32);
    EXPECT_FALSE(fSize->IsArray(TCIMContext()));
    fSize->SetDefaultValue(TCIMValue(ECIMType::eCIMStringArray, 0), TCIMContext());
    EXPECT_EQ(fSize->GetType(TCIMContext()), ECIMType::eCIMStringArray);
    EXPECT_TRUE(fSize->IsArray(TCIMContext()));
    EXPECT_TRUE(fSize->GetDefaultValue(TCIMContext()).IsNull());
}

TEST_F(DeclarationTest, APropertyAddsItselfToItsClass) {
    EXPECT_EQ(fSize->GetClass(TCIMContext()), fDisk);
    EXPECT_FALSE(fDisk->GetPropertyDecl("Size", TCIMContext()));
    fSize->AddToClass(TCIMContext());
    EXPECT_EQ(fDisk->GetPropertyDecl("size", TCIMContext()), fSize);
    fSize->RemoveFromClass(TCIMContext());
    EXPECT_EQ(fDisk->GetPropertyDecl("size", TCIMContext()), fSize);
}

TEST_F(DeclarationTest, PropertiesAreComparedByNormalisedName) {
    EXPECT_TRUE(*fSize == *Property("size"));
    EXPECT_FALSE(*fSize == *Property("Name"));
    EXPECT_TRUE(*Property("NAME") < *fSize);
    EXPECT_TRUE(*Property("name") < *fSize);
    EXPECT_FALSE(*fSize < *Property("size"));
}

TEST_F(DeclarationTest, AnEmptyPropertyTakesNothingOver) {
    const auto copy = boost::make_shared<TCimHTTPPropertyDecl>(boost::shared_ptr<TCimHTTPClass const>(fDisk),
                                                               boost::shared_ptr<ICIMPropertyDecl const>(fSize));
    EXPECT_EQ(copy->GetName(TCIMContext()), "");
    EXPECT_EQ(copy->GetDefaultValue(TCIMContext()), TCIMValue());
    EXPECT_THROW(copy->GetClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_TRUE(VisitedNames([&](const auto& visit) { copy->EnumerateQualifiers(visit, TCIMContext()); }).empty());
}

TEST_F(DeclarationTest, APropertyDoesNotKeepItsClassAlive) {
    auto nameSpace = ConnectedNamespace();
    auto disk = FetchClass(*nameSpace, "TEST_Disk");
    const auto size = disk->AllocatePropertyDecl("Size", TCIMValue(), TCIMContext());
    disk.reset();
    nameSpace.reset();
    EXPECT_THROW(size->GetClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(size->AddToClass(TCIMContext()), boost::bad_weak_ptr);
}

TEST_F(DeclarationTest, AssignmentCopiesNothing) {
    ICIMPropertyDecl& size = *fSize;
    EXPECT_EQ(&(size = *Property("Name")), &size);
    EXPECT_EQ(size.GetName(TCIMContext()), "Size");
    ICIMMethodDecl& format = *fFormat;
    const auto wipe = fDisk->AllocateMethodDecl("Wipe", TCIMValue::TCIMType(ECIMType::eCIMString), TCIMContext());
    EXPECT_EQ(&(format = *wipe), &format);
    EXPECT_EQ(format.GetName(TCIMContext()), "Format");
    EXPECT_EQ(format.GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
    ICIMParameterDecl& quick = *fQuick;
    EXPECT_EQ(&(quick = *Parameter("Slow")), &quick);
    EXPECT_EQ(quick.GetName(TCIMContext()), "Quick");
}

TEST_F(DeclarationTest, EveryDeclarationIsValid) {
    EXPECT_NO_THROW(fSize->Validate(TCIMContext()));
    EXPECT_NO_THROW(fFormat->Validate(TCIMContext()));
    EXPECT_NO_THROW(fQuick->Validate(TCIMContext()));
}

// --- Methods and parameters --------------------------------------------------------------------------------------

TEST_F(DeclarationTest, AMethodKnowsItsClassAndReturnType) {
    EXPECT_EQ(fFormat->GetName(TCIMContext()), "Format");
    EXPECT_EQ(fFormat->GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
    EXPECT_EQ(fFormat->GetClass(TCIMContext()), fDisk);
}

TEST_F(DeclarationTest, AParameterKnowsItsMethodAndType) {
    EXPECT_EQ(fQuick->GetName(TCIMContext()), "Quick");
    EXPECT_EQ(fQuick->GetMethodDecl(TCIMContext()), fFormat);
    EXPECT_EQ(fQuick->GetType(TCIMContext()), ECIMType::eCIMBoolean);
    EXPECT_FALSE(fQuick->IsArray(TCIMContext()));
    for (const auto type : {ECIMType::eCIMBooleanArray, ECIMType::eCIMReferenceArray, ECIMType::eCIMArrayUnknown}) {
        const auto many = fFormat->AllocateParameterDecl("Many", TCIMValue::TCIMType(type), TCIMContext());
        EXPECT_EQ(many->GetType(TCIMContext()), type);
        EXPECT_TRUE(many->IsArray(TCIMContext()));
    }
}

TEST_F(DeclarationTest, AMethodDoesNotKeepItsClassAliveNorAParameterItsMethod) {
    auto nameSpace = ConnectedNamespace();
    auto disk = FetchClass(*nameSpace, "TEST_Disk");
    const TCIMValue::TCIMType type(ECIMType::eCIMUint32);
    auto wipe = disk->AllocateMethodDecl("Wipe", type, TCIMContext());
    const auto passes = wipe->AllocateParameterDecl("Passes", type, TCIMContext());
    disk.reset();
    nameSpace.reset();
    EXPECT_THROW(wipe->GetClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(wipe->AddToClass(TCIMContext()), boost::bad_weak_ptr);
    wipe.reset();
    EXPECT_THROW(passes->GetMethodDecl(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(passes->AddToMethod(TCIMContext()), boost::bad_weak_ptr);
}

TEST_F(DeclarationTest, AnAllocatedParameterIsNotAdded) {
    EXPECT_EQ(StatusOf([&] { fFormat->GetParameterDecl("Quick", TCIMContext()); }), 15U);
    fQuick->AddToMethod(TCIMContext());
    EXPECT_EQ(fFormat->GetParameterDecl("QUICK", TCIMContext()), fQuick);
}

TEST_F(DeclarationTest, ASecondParameterOfANameIsRefused) {
    const auto count = Parameter("Count");
    count->AddToMethod(TCIMContext());
    fLog->Forget();
    EXPECT_EQ(StatusOf([&] { Parameter("count")->AddToMethod(TCIMContext()); }), 16U);
    EXPECT_THAT(fLog->Errors(), ElementsAre("Inmem: Attempt to add property count to method Format: already exists"));
    EXPECT_EQ(fFormat->GetParameterDecl("Count", TCIMContext()), count);
}

TEST_F(DeclarationTest, ParametersAreEnumeratedByNormalisedName) {
    for (const char* name : {"Zone", "alpha", "Beta"}) {
        Parameter(name)->AddToMethod(TCIMContext());
    }
    std::vector<std::string> names;
    boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)> visit = [&](const auto& parameter) {
        names.push_back(parameter->GetName(TCIMContext()));
        return names.size() < 2;
    };
    fFormat->EnumerateParameterDecls(visit, TCIMContext());
    EXPECT_THAT(names, ElementsAre("alpha", "Beta"));
}

TEST_F(DeclarationTest, RemoveParameterDeclTakesOneAway) {
    fQuick->AddToMethod(TCIMContext());
    fFormat->RemoveParameterDecl(Parameter("Slow"));
    EXPECT_EQ(fFormat->GetParameterDecl("Quick", TCIMContext()), fQuick);
    fFormat->RemoveParameterDecl(Parameter("QUICK"));
    EXPECT_EQ(StatusOf([&] { fFormat->GetParameterDecl("Quick", TCIMContext()); }), 15U);
}

TEST_F(DeclarationTest, MethodsAndParametersAreComparedByNormalisedName) {
    const auto upper = fDisk->AllocateMethodDecl("FORMAT", TCIMValue::TCIMType(ECIMType::eCIMString), TCIMContext());
    const auto wipe = fDisk->AllocateMethodDecl("Wipe", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext());
    EXPECT_TRUE(*fFormat == *upper);
    EXPECT_FALSE(*fFormat == *wipe);
    EXPECT_TRUE(*fFormat < *wipe);
    EXPECT_TRUE(*fQuick == *Parameter("QUICK"));
    EXPECT_FALSE(*fQuick == *Parameter("Slow"));
    EXPECT_TRUE(*Parameter("alpha") < *fQuick);
    EXPECT_FALSE(*fQuick < *Parameter("ALPHA"));
}

TEST_F(DeclarationTest, AMethodIsHandedToItsClassWhichKeepsItsOwn) {
    fFormat->AddToClass(TCIMContext());
    EXPECT_FALSE(fDisk->GetMethodDecl("Format", TCIMContext()));
}

TEST_F(DeclarationTest, AMethodDoesNotKeepItsClassAlive) {
    auto nameSpace = ConnectedNamespace();
    auto disk = FetchClass(*nameSpace, "TEST_Disk");
    const auto format = disk->AllocateMethodDecl("Format", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext());
    disk.reset();
    nameSpace.reset();
    EXPECT_THROW(format->GetClass(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(format->AddToClass(TCIMContext()), boost::bad_weak_ptr);
}

TEST_F(DeclarationTest, AParameterDoesNotKeepItsMethodAlive) {
    fFormat.reset();
    EXPECT_THROW(fQuick->GetMethodDecl(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(fQuick->AddToMethod(TCIMContext()), boost::bad_weak_ptr);
}
