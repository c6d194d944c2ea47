#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;

namespace {

class DeclarationTest : public PluginTest {
  protected:
    DeclarationTest() {
        ServeClass("TEST_Disk", "", "");
        namespace_ = ConnectedNamespace();
        disk_ = FetchClass(*namespace_, "TEST_Disk");
        size_ = Property("Size");
        format_ = boost::dynamic_pointer_cast<TCimHTTPMethodDecl>(
            disk_->AllocateMethodDecl("Format", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext()));
        quick_ = Parameter("Quick");
    }

    boost::shared_ptr<TCimHTTPPropertyDecl> Property(const std::string& name) {
        return boost::dynamic_pointer_cast<TCimHTTPPropertyDecl>(
            disk_->AllocatePropertyDecl(name, TCIMValue(7U), TCIMContext()));
    }

    boost::shared_ptr<TCimHTTPParameterDecl> Parameter(const std::string& name) {
        return boost::dynamic_pointer_cast<TCimHTTPParameterDecl>(
            format_->AllocateParameterDecl(name, TCIMValue::TCIMType(ECIMType::eCIMBoolean), TCIMContext()));
    }

    boost::shared_ptr<ICIMQualifierDecl> Declare(const std::string& name, ICIMQualifierDecl::EFlavor flavor) {
        return namespace_->AllocateQualifierDecl(name, TCIMValue(""), ICIMQualifierDecl::eScopeProperty, flavor,
                                                 TCIMContext());
    }

    /// Every kind of element that carries qualifiers by the one rule.
    std::vector<boost::shared_ptr<ICIMNamedElement>> Elements() { return {disk_, size_, format_, quick_}; }

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

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> disk_;
    boost::shared_ptr<TCimHTTPPropertyDecl> size_;
    boost::shared_ptr<TCimHTTPMethodDecl> format_;
    boost::shared_ptr<TCimHTTPParameterDecl> quick_;
};

/// A qualifier of another implementation that says what one of the plug-in's says.
class ForeignQualifier : public ICIMQualifier {
  public:
    explicit ForeignQualifier(boost::shared_ptr<ICIMQualifier> own) : own_(own) {}
    void Validate(TCIMContext /*context*/) const override {}
    void AddToClassOrProperty(TCIMContext /*context*/) const override {}
    void RemoveFromClassOrProperty(TCIMContext /*context*/) override {}
    const std::string& GetName(TCIMContext context) const override { return own_->GetName(context); }
    boost::shared_ptr<ICIMNamedElement const> GetClassOrProperty(TCIMContext context) const override {
        return own_->GetClassOrProperty(context);
    }
    TCIMValue::TCIMType GetType(TCIMContext context) const override { return own_->GetType(context); }
    bool IsArray(TCIMContext context) const override { return own_->IsArray(context); }
    boost::shared_ptr<ICIMQualifierDecl const> GetDeclaration(TCIMContext context) const override {
        return own_->GetDeclaration(context);
    }
    const TCIMValue& GetValue(TCIMContext context) const override { return own_->GetValue(context); }
    void SetValue(const TCIMValue& /*value*/, TCIMContext /*context*/) override {}
    void SetFlavor(ICIMQualifierDecl::EFlavor /*flavor*/, TCIMContext /*context*/) override {}
    void UnsetFlavor(ICIMQualifierDecl::EFlavor /*flavor*/, TCIMContext /*context*/) override {}
    ICIMQualifierDecl::EFlavor GetFlavor(TCIMContext context) const override { return own_->GetFlavor(context); }
    bool operator==(ICIMQualifier& other) const override { return *own_ == other; }
    bool operator<(ICIMQualifier& other) const override { return *own_ < other; }
    bool GetPropagated(TCIMContext context) const override { return own_->GetPropagated(context); }
    ICIMQualifier& operator=(const ICIMQualifier& /*other*/) override { return *this; }

  private:
    boost::shared_ptr<ICIMQualifier> own_;
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
        EXPECT_EQ(StatusOf([&] { second = Add(*element, Declare("Marker", kFixed), "true"); }),
                  TVYXStatusCode::eSuccess);
        EXPECT_EQ(Find(*element, "Marker"), element == disk_ ? second : first) << "a class takes the new one";
    }
}

TEST_F(DeclarationTest, AFixedQualifierRefusesAnotherValue) {
    for (const auto& element : Elements()) {
        const auto first = Add(*element, Declare("Marker", kFixed), "true");
        EXPECT_EQ(StatusOf([&] { Add(*element, Declare("Marker", kFixed), "false"); }),
                  TVYXStatusCode::eQualifierConflict);
        EXPECT_EQ(Find(*element, "Marker"), first);
    }
}

TEST_F(DeclarationTest, ARefusedQualifierIsLoggedWithItsElement) {
    const std::vector<std::string> texts = {"class TEST_Disk", "property Size", "method Format", "parameter Quick"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto element = Elements()[i];
        Add(*element, Declare("Marker", kFixed), "true");
        log_->Forget();
        StatusOf([&] { Add(*element, Declare("MARKER", kFixed), "false"); });
        EXPECT_THAT(log_->Errors(),
                    ElementsAre("TCimHTTP: Attempt to add qualifier MARKER to " + texts[i] +
                                ": already exists with another value or flavor and may not be overridden"));
    }
}

TEST_F(DeclarationTest, AFixedQualifierRefusesAnotherFlavor) {
    for (const auto& element : Elements()) {
        const auto first = Add(*element, Declare("Marker", kFixed), "true");
        EXPECT_EQ(StatusOf([&] { Add(*element, Declare("Marker", kOverridable), "true"); }),
                  TVYXStatusCode::eQualifierConflict);
        EXPECT_EQ(Find(*element, "Marker"), first);
    }
}

TEST_F(DeclarationTest, AnOverridableQualifierIsReplaced) {
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
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(same, TCIMContext()); }), TVYXStatusCode::eSuccess);
        const auto other = foreign(*element, Declare("Marker", kFixed), "false");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(other, TCIMContext()); }), TVYXStatusCode::eQualifierConflict);
        EXPECT_EQ(Find(*element, "Marker"), fixed);

        const auto overridable = Add(*element, Declare("Units", kOverridable), "Bytes");
        const auto successor = foreign(*element, Declare("Units", kOverridable), "Bits");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(successor, TCIMContext()); }), TVYXStatusCode::eTypeMismatch);
        EXPECT_EQ(Find(*element, "Units"), overridable);

        const auto added = foreign(*element, Declare("MaxLen", kFixed), "8");
        EXPECT_EQ(StatusOf([&] { element->AddQualifier(added, TCIMContext()); }), TVYXStatusCode::eTypeMismatch);
        EXPECT_FALSE(Find(*element, "MaxLen"));
        EXPECT_EQ(StatusOf([&] { element->AddQualifier({}, TCIMContext()); }), TVYXStatusCode::eTypeMismatch);
    }
}

TEST_F(DeclarationTest, QualifiersAreEnumeratedByNormalisedNameUntilTheCallbackStops) {
    for (const auto& element :
         {boost::shared_ptr<ICIMNamedElement>(size_), boost::shared_ptr<ICIMNamedElement>(format_),
          boost::shared_ptr<ICIMNamedElement>(quick_)}) {
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
    EXPECT_EQ(StatusOf([&] { size_->GetQualifier("Units", TCIMContext()); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(StatusOf([&] { format_->GetQualifier("Units", TCIMContext()); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(StatusOf([&] { quick_->GetQualifier("Units", TCIMContext()); }), TVYXStatusCode::eNotFound);
    EXPECT_FALSE(disk_->GetQualifier("Units", TCIMContext()));
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
    ICIMClass& cls = *disk_;
    ICIMNamedElement& element = cls;
    const auto units = Add(element, Declare("Units", kFixed), "Bytes");
    EXPECT_EQ(Find(cls, "Units"), units);
    EXPECT_EQ(units->GetClassOrProperty(TCIMContext()).get(), &element);
    EXPECT_EQ(VisitedNames([&](const auto& visit) { cls.EnumerateQualifiers(visit, TCIMContext()); }),
              VisitedNames([&](const auto& visit) { element.EnumerateQualifiers(visit, TCIMContext()); }));
}

TEST_F(DeclarationTest, RemoveQualifierTakesOneAwayAndThrowsForAnUnknownOne) {
    const auto units = Add(*size_, Declare("Units", kFixed), "Bytes");
    size_->RemoveQualifier(units);
    EXPECT_FALSE(size_->LookupQualifier("Units"));
    EXPECT_EQ(StatusOf([&] { size_->RemoveQualifier(units); }), TVYXStatusCode::eNotFound);
    const auto quickUnits = Add(*quick_, Declare("Units", kFixed), "Bytes");
    EXPECT_EQ(quick_->LookupQual("UNITS"), quickUnits);
    quick_->RemoveQualifier(quickUnits);
    EXPECT_FALSE(quick_->LookupQual("Units"));
}

// --- Property declarations ---------------------------------------------------------------------------------------

TEST_F(DeclarationTest, APropertysTypeIsThatOfItsDefault) {
    EXPECT_EQ(size_->GetName(TCIMContext()), "Size");
    EXPECT_EQ(size_->GetType(TCIMContext()), ECIMType::eCIMUint32);
    EXPECT_FALSE(size_->IsArray(TCIMContext()));
    size_->SetDefaultValue(TCIMValue(ECIMType::eCIMStringArray, 0), TCIMContext());
    EXPECT_EQ(size_->GetType(TCIMContext()), ECIMType::eCIMStringArray);
    EXPECT_TRUE(size_->IsArray(TCIMContext()));
    EXPECT_TRUE(size_->GetDefaultValue(TCIMContext()).IsNull());
}

TEST_F(DeclarationTest, APropertyAddsItselfToItsClass) {
    EXPECT_EQ(size_->GetClass(TCIMContext()), disk_);
    EXPECT_FALSE(disk_->GetPropertyDecl("Size", TCIMContext()));
    size_->AddToClass(TCIMContext());
    EXPECT_EQ(disk_->GetPropertyDecl("size", TCIMContext()), size_);
    size_->RemoveFromClass(TCIMContext());
    EXPECT_EQ(disk_->GetPropertyDecl("size", TCIMContext()), size_);
}

TEST_F(DeclarationTest, PropertiesAreComparedByNormalisedName) {
    EXPECT_TRUE(*size_ == *Property("size"));
    EXPECT_FALSE(*size_ == *Property("Name"));
    EXPECT_TRUE(*Property("NAME") < *size_);
    EXPECT_TRUE(*Property("name") < *size_);
    EXPECT_FALSE(*size_ < *Property("size"));
}

TEST_F(DeclarationTest, AnEmptyPropertyTakesNothingOver) {
    const auto copy = boost::make_shared<TCimHTTPPropertyDecl>(boost::shared_ptr<TCimHTTPClass const>(disk_),
                                                               boost::shared_ptr<ICIMPropertyDecl const>(size_));
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
    ICIMPropertyDecl& size = *size_;
    EXPECT_EQ(&(size = *Property("Name")), &size);
    EXPECT_EQ(size.GetName(TCIMContext()), "Size");
    ICIMMethodDecl& format = *format_;
    const auto wipe = disk_->AllocateMethodDecl("Wipe", TCIMValue::TCIMType(ECIMType::eCIMString), TCIMContext());
    EXPECT_EQ(&(format = *wipe), &format);
    EXPECT_EQ(format.GetName(TCIMContext()), "Format");
    EXPECT_EQ(format.GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
    ICIMParameterDecl& quick = *quick_;
    EXPECT_EQ(&(quick = *Parameter("Slow")), &quick);
    EXPECT_EQ(quick.GetName(TCIMContext()), "Quick");
}

TEST_F(DeclarationTest, EveryDeclarationIsValid) {
    EXPECT_NO_THROW(size_->Validate(TCIMContext()));
    EXPECT_NO_THROW(format_->Validate(TCIMContext()));
    EXPECT_NO_THROW(quick_->Validate(TCIMContext()));
}

// --- Methods and parameters --------------------------------------------------------------------------------------

TEST_F(DeclarationTest, AMethodKnowsItsClassAndReturnType) {
    EXPECT_EQ(format_->GetName(TCIMContext()), "Format");
    EXPECT_EQ(format_->GetReturnType(TCIMContext()), ECIMType::eCIMUint32);
    EXPECT_EQ(format_->GetClass(TCIMContext()), disk_);
}

TEST_F(DeclarationTest, AParameterKnowsItsMethodAndType) {
    EXPECT_EQ(quick_->GetName(TCIMContext()), "Quick");
    EXPECT_EQ(quick_->GetMethodDecl(TCIMContext()), format_);
    EXPECT_EQ(quick_->GetType(TCIMContext()), ECIMType::eCIMBoolean);
    EXPECT_FALSE(quick_->IsArray(TCIMContext()));
    for (const auto type : {ECIMType::eCIMBooleanArray, ECIMType::eCIMReferenceArray, ECIMType::eCIMArrayUnknown}) {
        const auto many = format_->AllocateParameterDecl("Many", TCIMValue::TCIMType(type), TCIMContext());
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
    EXPECT_EQ(StatusOf([&] { format_->GetParameterDecl("Quick", TCIMContext()); }), TVYXStatusCode::eNotFound);
    quick_->AddToMethod(TCIMContext());
    EXPECT_EQ(format_->GetParameterDecl("QUICK", TCIMContext()), quick_);
}

TEST_F(DeclarationTest, ASecondParameterOfANameIsRefused) {
    const auto count = Parameter("Count");
    count->AddToMethod(TCIMContext());
    log_->Forget();
    EXPECT_EQ(StatusOf([&] { Parameter("count")->AddToMethod(TCIMContext()); }), TVYXStatusCode::eAlreadyExists);
    EXPECT_THAT(log_->Errors(), ElementsAre("Inmem: Attempt to add property count to method Format: already exists"));
    EXPECT_EQ(format_->GetParameterDecl("Count", TCIMContext()), count);
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
    format_->EnumerateParameterDecls(visit, TCIMContext());
    EXPECT_THAT(names, ElementsAre("alpha", "Beta"));
}

TEST_F(DeclarationTest, RemoveParameterDeclTakesOneAway) {
    quick_->AddToMethod(TCIMContext());
    format_->RemoveParameterDecl(Parameter("Slow"));
    EXPECT_EQ(format_->GetParameterDecl("Quick", TCIMContext()), quick_);
    format_->RemoveParameterDecl(Parameter("QUICK"));
    EXPECT_EQ(StatusOf([&] { format_->GetParameterDecl("Quick", TCIMContext()); }), TVYXStatusCode::eNotFound);
}

TEST_F(DeclarationTest, MethodsAndParametersAreComparedByNormalisedName) {
    const auto upper = disk_->AllocateMethodDecl("FORMAT", TCIMValue::TCIMType(ECIMType::eCIMString), TCIMContext());
    const auto wipe = disk_->AllocateMethodDecl("Wipe", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext());
    EXPECT_TRUE(*format_ == *upper);
    EXPECT_FALSE(*format_ == *wipe);
    EXPECT_TRUE(*format_ < *wipe);
    EXPECT_TRUE(*quick_ == *Parameter("QUICK"));
    EXPECT_FALSE(*quick_ == *Parameter("Slow"));
    EXPECT_TRUE(*Parameter("alpha") < *quick_);
    EXPECT_FALSE(*quick_ < *Parameter("ALPHA"));
}

TEST_F(DeclarationTest, AMethodIsHandedToItsClassWhichKeepsItsOwn) {
    format_->AddToClass(TCIMContext());
    EXPECT_FALSE(disk_->GetMethodDecl("Format", TCIMContext()));
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
    format_.reset();
    EXPECT_THROW(quick_->GetMethodDecl(TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(quick_->AddToMethod(TCIMContext()), boost::bad_weak_ptr);
}
