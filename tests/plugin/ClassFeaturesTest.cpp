#include "PluginTest.h"

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A class whose superclass cannot be had.
class OrphanClass : public TCimHTTPClass {
  public:
    using TCimHTTPClass::TCimHTTPClass;
    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext /*context*/) const override {
        throw TVYXException(TVYXStatusCode::eInvalidName);
    }
};

/// A property declaration of another implementation that says what one of the plug-in's says. Its look-up of a
/// qualifier without the found flag fails.
class ForeignPropertyDecl : public ICIMPropertyDecl {
  public:
    explicit ForeignPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> own) : own_(own) {}
    void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) override {
        own_->AddQualifier(qualifier, context);
    }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, TCIMContext context) const override {
        return own_->AllocateQualifier(declaration, value, context);
    }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor,
                                                       TCIMContext context) const override {
        return own_->AllocateQualifier(declaration, value, flavor, context);
    }
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext /*context*/) const override {
        ADD_FAILURE() << name << " was looked up without the flag";
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& found,
                                                  TCIMContext context) const override {
        return own_->GetQualifier(name, found, context);
    }
    void EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback,
                             TCIMContext context) const override {
        own_->EnumerateQualifiers(callback, context);
    }
    void Validate(TCIMContext /*context*/) const override {}
    void AddToClass(TCIMContext /*context*/) override {}
    void RemoveFromClass(TCIMContext /*context*/) override {}
    const std::string& GetName(TCIMContext context) const override { return own_->GetName(context); }
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const override { return own_->GetClass(context); }
    TCIMValue::TCIMType GetType(TCIMContext context) const override { return own_->GetType(context); }
    bool IsArray(TCIMContext context) const override { return own_->IsArray(context); }
    const TCIMValue& GetDefaultValue(TCIMContext context) const override { return own_->GetDefaultValue(context); }
    void SetDefaultValue(const TCIMValue& /*value*/, TCIMContext /*context*/) override {}
    bool operator==(ICIMPropertyDecl& other) const override { return *own_ == other; }
    bool operator<(ICIMPropertyDecl& other) const override { return *own_ < other; }
    ICIMPropertyDecl& operator=(const ICIMPropertyDecl& /*other*/) override { return *this; }

  private:
    boost::shared_ptr<ICIMPropertyDecl> own_;
};

class ClassFeaturesTest : public PluginTest {
  protected:
    ClassFeaturesTest() {
        for (const char* name : {"Association", "Abstract", "Override"}) {
            ServeQualifier(name, "boolean");
        }
        ServeClass("TEST_Disk", "", PropertyXml("Size", "uint32"));
        namespace_ = ConnectedNamespace();
        disk_ = FetchClass(*namespace_, "TEST_Disk");
        log_->Forget();
    }

    boost::shared_ptr<TCimHTTPClass> Fetch(const std::string& name, const std::string& content) {
        ServeClass(name, "", content);
        auto cls = FetchClass(*namespace_, name);
        log_->Forget();
        return cls;
    }

    static boost::shared_ptr<ICIMPropertyDecl> Property(TCimHTTPClass& cls, const std::string& name,
                                                        ECIMType type = ECIMType::eCIMString) {
        return cls.AllocatePropertyDecl(name, TCIMValue(TCIMValue::TCIMType(type), 0), TCIMContext());
    }

    boost::shared_ptr<ICIMPropertyDecl> OverridingProperty(TCimHTTPClass& cls, const std::string& name,
                                                           ECIMType type = ECIMType::eCIMString) {
        auto property = Property(cls, name, type);
        const auto declaration =
            namespace_->AllocateQualifierDecl("Override", TCIMValue(""), ICIMQualifierDecl::eScopeProperty,
                                              ICIMQualifierDecl::eFlavorNone, TCIMContext());
        property->AddQualifier(property->AllocateQualifier(declaration, TCIMValue(name), TCIMContext()), TCIMContext());
        return property;
    }

    /// Gives the root class, the base of every class, a property.
    boost::shared_ptr<ICIMPropertyDecl> AddToRoot(const std::string& name, ECIMType type) {
        auto property = Property(*namespace_->GetRootClass(), name, type);
        property->AddToClass(TCIMContext());
        return property;
    }

    std::vector<std::string> KeyNames(const TCimHTTPClass& cls) {
        std::vector<std::string> names;
        cls.EnumerateKeyNames(
            [&](const std::string* name) {
                names.push_back(*name);
                return true;
            },
            TCIMContext());
        return names;
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> disk_;
};

} // namespace

// --- Adding properties -------------------------------------------------------------------------------------------

TEST_F(ClassFeaturesTest, AnAddedPropertyIsFoundByNormalisedName) {
    const auto label = Property(*disk_, "Label");
    disk_->AddPropertyDecl(label);
    EXPECT_EQ(disk_->GetPropertyDecl("LABEL", TCIMContext()), label);
}

TEST_F(ClassFeaturesTest, AnAbsentPropertyOrMethodIsEmpty) {
    EXPECT_FALSE(disk_->GetPropertyDecl("Label", TCIMContext()));
    EXPECT_FALSE(disk_->GetMethodDecl("Format", TCIMContext()));
}

TEST_F(ClassFeaturesTest, AReferenceIsRefusedByAClassThatIsNoAssociation) {
    const std::string attempt = "TCimHTTP: Attempt to add reference property System to non-association class ";
    for (const auto& cls : {disk_, Fetch("TEST_False", QualifierXml("Association", "boolean", "FALSE")),
                            Fetch("TEST_Null", QualifierXml("Association", "boolean", ""))}) {
        EXPECT_EQ(StatusOf([&] { cls->AddPropertyDecl(Property(*cls, "System", ECIMType::eCIMReference)); }),
                  TVYXStatusCode::eTypeMismatch);
        EXPECT_THAT(log_->Errors(), ElementsAre(attempt + cls->GetName(TCIMContext())));
        EXPECT_FALSE(cls->GetPropertyDecl("System", TCIMContext()));
        log_->Forget();
    }
}

TEST_F(ClassFeaturesTest, AReferenceIsAcceptedByAnAssociation) {
    const auto link = Fetch("TEST_Link", QualifierXml("Association", "boolean", "TRUE"));
    link->AddPropertyDecl(Property(*link, "System", ECIMType::eCIMReference));
    EXPECT_TRUE(link->GetPropertyDecl("System", TCIMContext()));
}

TEST_F(ClassFeaturesTest, AnOverrideWithoutABasePropertyIsRefused) {
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(OverridingProperty(*disk_, "Label")); }),
              TVYXStatusCode::eNotFound);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Attempt to override property Label in class TEST_Disk: property "
                                            "doesn't exist in base class"));
    EXPECT_FALSE(disk_->GetPropertyDecl("Label", TCIMContext()));
    const auto ownSize = disk_->GetPropertyDecl("Size", TCIMContext());
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(OverridingProperty(*disk_, "Size", ECIMType::eCIMUint32)); }),
              TVYXStatusCode::eNotFound)
        << "a property of the class itself is no base";
    EXPECT_EQ(disk_->GetPropertyDecl("Size", TCIMContext()), ownSize);
}

TEST_F(ClassFeaturesTest, AnOverrideOfAnotherTypeIsRefused) {
    AddToRoot("Label", ECIMType::eCIMUint16);
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(OverridingProperty(*disk_, "label")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(),
                ElementsAre("TCimHTTP: Attempt to override property label in class TEST_Disk: different types"));
}

TEST_F(ClassFeaturesTest, AnOverrideOfAPropertyOfTheSameClassIsRefused) {
    namespace_->GetRootClass()->AddPropertyDecl(Property(*disk_, "Label"));
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(OverridingProperty(*disk_, "Label")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Attempt to override property Label in class TEST_Disk: original "
                                            "was defined in this class"));
}

TEST_F(ClassFeaturesTest, AnOverrideOfABasePropertyIsAccepted) {
    AddToRoot("Label", ECIMType::eCIMString);
    const auto label = OverridingProperty(*disk_, "Label");
    disk_->AddPropertyDecl(label);
    EXPECT_EQ(disk_->GetPropertyDecl("Label", TCIMContext()), label);
}

TEST_F(ClassFeaturesTest, AnOverrideCheckThatFailsSaysWhy) {
    const auto root = namespace_->GetRootClass(); // it has no superclass to look into
    EXPECT_EQ(StatusOf([&] { root->AddPropertyDecl(OverridingProperty(*root, "Label")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Attempt define property Label in class <root>failed. Reason = "
                                            "tr1::bad_weak_ptr"));
    log_->Forget();
    const auto orphan = boost::make_shared<OrphanClass>(namespace_, "TEST_Orphan", nullptr);
    EXPECT_EQ(StatusOf([&] { orphan->AddPropertyDecl(OverridingProperty(*orphan, "Label")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Attempt define property Label in class TEST_Orphanfailed. "
                                            "Reason = The name is not a valid CIM name."));
}

TEST_F(ClassFeaturesTest, ATakenNameIsRefused) {
    const auto first = disk_->GetPropertyDecl("Size", TCIMContext());
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(Property(*disk_, "SIZE")); }), TVYXStatusCode::eAlreadyExists);
    EXPECT_THAT(log_->Errors(),
                ElementsAre("TCimHTTP: Attempt to add property SIZE to class TEST_Disk: already exists"));
    EXPECT_EQ(disk_->GetPropertyDecl("Size", TCIMContext()), first);
}

TEST_F(ClassFeaturesTest, APortTypePropertyReplacesTheOneBefore) {
    disk_->AddPropertyDecl(Property(*disk_, "OtherPortTypeInfo"));
    const auto second = Property(*disk_, "OtherPortTypeInfo", ECIMType::eCIMUint16);
    disk_->AddPropertyDecl(second);
    EXPECT_EQ(disk_->GetPropertyDecl("OtherPortTypeInfo", TCIMContext()), second);
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(Property(*disk_, "otherporttypeinfo")); }),
              TVYXStatusCode::eAlreadyExists);
    EXPECT_EQ(disk_->GetPropertyDecl("OtherPortTypeInfo", TCIMContext()), second);
}

TEST_F(ClassFeaturesTest, OnlyADeclarationOfThePluginsOwnIsAdded) {
    const auto foreign = boost::make_shared<ForeignPropertyDecl>(Property(*disk_, "Label"));
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(foreign); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Attempt to add property Label to class TEST_Disk: the "
                                            "declaration is another implementation's"));
    EXPECT_FALSE(disk_->GetPropertyDecl("Label", TCIMContext()));
    log_->Forget();
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(nullptr); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(),
                ElementsAre("TCimHTTP: Attempt to add a property without a declaration to class TEST_Disk"));
}

TEST_F(ClassFeaturesTest, TheRulesAreCheckedBeforeWhoseDeclarationItIs) {
    AddToRoot("Zone", ECIMType::eCIMUint16);
    disk_->AddPropertyDecl(Property(*disk_, "PortType"));
    const auto ownPortType = disk_->GetPropertyDecl("PortType", TCIMContext());
    const auto refusal = [&](const boost::shared_ptr<ICIMPropertyDecl>& own) {
        log_->Forget();
        EXPECT_NE(StatusOf([&] { disk_->AddPropertyDecl(boost::make_shared<ForeignPropertyDecl>(own)); }),
                  TVYXStatusCode::eSuccess);
        EXPECT_EQ(log_->Errors().size(), 1U);
        return log_->Errors().at(0);
    };
    EXPECT_EQ(refusal(Property(*disk_, "System", ECIMType::eCIMReference)),
              "TCimHTTP: Attempt to add reference property System to non-association class TEST_Disk");
    EXPECT_EQ(refusal(OverridingProperty(*disk_, "Label")), "TCimHTTP: Attempt to override property Label in class "
                                                            "TEST_Disk: property doesn't exist in base class");
    EXPECT_EQ(refusal(OverridingProperty(*disk_, "Zone")),
              "TCimHTTP: Attempt to override property Zone in class TEST_Disk: different types");
    EXPECT_EQ(refusal(Property(*disk_, "Size")),
              "TCimHTTP: Attempt to add property Size to class TEST_Disk: already exists");
    EXPECT_THAT(refusal(Property(*disk_, "PortType")), testing::HasSubstr("another implementation's"));
    EXPECT_EQ(disk_->GetPropertyDecl("PortType", TCIMContext()), ownPortType) << "it is not replaced by nothing";
}

TEST_F(ClassFeaturesTest, AnOverrideOfAnotherTypeIsCalledThatEvenWhereTheOriginalIsOfTheSameClass) {
    namespace_->GetRootClass()->AddPropertyDecl(Property(*disk_, "Label", ECIMType::eCIMUint16));
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(OverridingProperty(*disk_, "Label")); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(),
                ElementsAre("TCimHTTP: Attempt to override property Label in class TEST_Disk: different types"));
}

TEST_F(ClassFeaturesTest, PropertyDeclsAreEnumeratedByNormalisedNameUntilTheCallbackStops) {
    for (const char* name : {"zone", "Alpha", "beta"}) {
        disk_->AddPropertyDecl(Property(*disk_, name));
    }
    EXPECT_THAT(VisitedNames([&](const auto& v) { disk_->EnumeratePropertyDecls(v, TCIMContext()); }),
                ElementsAre("Alpha", "beta", "Size", "zone"));
    int calls = 0;
    disk_->EnumeratePropertyDecls(
        [&](const auto&) {
            ++calls;
            return false;
        },
        TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(ClassFeaturesTest, PropertyDeclsAddedOrReplacedLaterAreFoundAndEnumerated) {
    const auto names = [&] {
        return VisitedNames([&](const auto& visit) { disk_->EnumeratePropertyDecls(visit, TCIMContext()); });
    };
    EXPECT_THAT(names(), ElementsAre("Size"));
    Property(*disk_, "PortType")->AddToClass(TCIMContext());
    EXPECT_THAT(names(), ElementsAre("PortType", "Size"));

    const auto second = Property(*disk_, "portPortType");
    const auto third = Property(*disk_, "PortPortType");
    second->AddToClass(TCIMContext());
    EXPECT_THAT(names(), ElementsAre("portPortType", "PortType", "Size"));
    third->AddToClass(TCIMContext());
    EXPECT_THAT(names(), ElementsAre("PortPortType", "PortType", "Size"));
    EXPECT_EQ(disk_->GetPropertyDecl("portporttype", TCIMContext()), third);

    disk_->EnumeratePropertyDecls(
        [&](const auto& declaration) {
            if (declaration->GetName(TCIMContext()) == "Size") {
                Property(*disk_, "Zone")->AddToClass(TCIMContext());
            }
            return true;
        },
        TCIMContext());
    EXPECT_THAT(names(), ElementsAre("PortPortType", "PortType", "Size", "Zone"));
    for (const char* name : {"zone", "Zone", "ZONE"}) {
        EXPECT_TRUE(disk_->GetPropertyDecl(name, TCIMContext())) << name;
    }
    disk_->ClearInstances();
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(disk_->GetPropertyDecl("Zone", TCIMContext()));
}

TEST_F(ClassFeaturesTest, MethodDeclsAreEnumeratedByNormalisedNameUntilTheCallbackStops) {
    const auto robot =
        Fetch("TEST_Robot", "<METHOD NAME=\"stop\" TYPE=\"uint32\"/><METHOD NAME=\"Go\" TYPE=\"uint32\"/>");
    EXPECT_THAT(VisitedNames([&](const auto& v) { robot->EnumerateMethodDecls(v, TCIMContext()); }),
                ElementsAre("Go", "stop"));
    int calls = 0;
    robot->EnumerateMethodDecls([&](const auto&) { return ++calls < 1; }, TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(ClassFeaturesTest, MethodDeclsAndQualifiersAreEnumeratedUntilTheCallbackStops) {
    const auto robot = Fetch("TEST_Robot", QualifierXml("Description", "string", "x") +
                                               "<METHOD NAME=\"stop\" TYPE=\"uint32\"/><METHOD NAME=\"Go\" "
                                               "TYPE=\"uint32\"/><METHOD NAME=\"Turn\" TYPE=\"uint32\"/>");
    int methods = 0;
    robot->EnumerateMethodDecls([&](const auto&) { return ++methods < 2; }, TCIMContext());
    EXPECT_EQ(methods, 2);
    int qualifiers = 0;
    robot->EnumerateQualifiers([&](const auto&) { return ++qualifiers < 2; }, TCIMContext());
    EXPECT_EQ(qualifiers, 2);
}

TEST_F(ClassFeaturesTest, ANameThatIsNoneIsRefused) {
    EXPECT_EQ(StatusOf([&] { disk_->GetPropertyDecl("2nd", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_EQ(StatusOf([&] { disk_->GetMethodDecl("2nd", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_EQ(StatusOf([&] { disk_->GetProperty("2nd", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_EQ(StatusOf([&] { disk_->GetQualifier("2nd", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(Property(*disk_, "2nd")); }), TVYXStatusCode::eInvalidName);
    EXPECT_EQ(StatusOf([&] { disk_->AddPropertyDecl(Property(*disk_, "2nd", ECIMType::eCIMReference)); }),
              TVYXStatusCode::eTypeMismatch);
}

TEST_F(ClassFeaturesTest, FeaturesAreNotRemovedNorMethodsAdded) {
    const auto robot = Fetch("TEST_Robot", PropertyXml("Name", "string") + "<METHOD NAME=\"Go\" TYPE=\"uint32\"/>");
    robot->RemovePropertyDecl(robot->GetPropertyDecl("Name", TCIMContext()));
    robot->RemoveMethodDecl(robot->GetMethodDecl("Go", TCIMContext()));
    robot->AddMethodDecl(robot->AllocateMethodDecl("Stop", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext()));
    EXPECT_TRUE(robot->GetPropertyDecl("Name", TCIMContext()));
    EXPECT_THAT(VisitedNames([&](const auto& v) { robot->EnumerateMethodDecls(v, TCIMContext()); }), ElementsAre("Go"));
}

TEST_F(ClassFeaturesTest, AllocatedDeclarationsAreNotAdded) {
    Property(*disk_, "Label");
    disk_->AllocateMethodDecl("Format", TCIMValue::TCIMType(ECIMType::eCIMUint32), TCIMContext());
    EXPECT_FALSE(disk_->GetPropertyDecl("Label", TCIMContext()));
    EXPECT_FALSE(disk_->GetMethodDecl("Format", TCIMContext()));
}

// --- Questions answered from qualifiers --------------------------------------------------------------------------

TEST_F(ClassFeaturesTest, AnAssociationIsWhatItsQualifierSays) {
    EXPECT_FALSE(disk_->IsAssociation(TCIMContext()));
    EXPECT_TRUE(Fetch("TEST_Link", QualifierXml("Association", "boolean", "TRUE"))->IsAssociation(TCIMContext()));
    EXPECT_FALSE(Fetch("TEST_False", QualifierXml("Association", "boolean", "FALSE"))->IsAssociation(TCIMContext()));
    EXPECT_FALSE(Fetch("TEST_Null", QualifierXml("Association", "boolean", ""))->IsAssociation(TCIMContext()));
}

TEST_F(ClassFeaturesTest, AnAbstractClassIsWhatItsQualifierSays) {
    EXPECT_FALSE(disk_->IsAbstract(TCIMContext()));
    EXPECT_TRUE(Fetch("TEST_Base", QualifierXml("Abstract", "boolean", "TRUE"))->IsAbstract(TCIMContext()));
    EXPECT_FALSE(Fetch("TEST_False", QualifierXml("Abstract", "boolean", "FALSE"))->IsAbstract(TCIMContext()));
}

TEST_F(ClassFeaturesTest, AQualifierThatIsNotBooleanIsNotTrue) {
    const auto cls =
        Fetch("TEST_Odd", QualifierXml("Association", "string", "TRUE") + QualifierXml("Abstract", "uint8", "1") +
                              PropertyXml("Name", "string", QualifierXml("Key", "string", "TRUE")));
    EXPECT_FALSE(cls->IsAssociation(TCIMContext()));
    EXPECT_FALSE(cls->IsAbstract(TCIMContext()));
    EXPECT_THAT(KeyNames(*cls), IsEmpty());
}

TEST_F(ClassFeaturesTest, AClassWithoutKeysHasNoKeyNames) { EXPECT_THAT(KeyNames(*disk_), IsEmpty()); }

TEST_F(ClassFeaturesTest, KeyNamesComeByNormalisedNameUntilTheCallbackStops) {
    const auto cls = Fetch("TEST_Keys", PropertyXml("System", "string", KeyXml()) +
                                            PropertyXml("Name", "string", KeyXml()) + PropertyXml("Free", "string"));
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Name", "System"));
    const auto declaration = cls->GetPropertyDecl("Name", TCIMContext());
    int calls = 0;
    cls->EnumerateKeyNames(
        [&](const std::string* name) {
            EXPECT_EQ(name, &declaration->GetName(TCIMContext())) << "it is the declaration's own";
            ++calls;
            return false;
        },
        TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(ClassFeaturesTest, AFalseOrNullKeyQualifierMakesNoKey) {
    const auto cls = Fetch("TEST_Keys", PropertyXml("A", "string", QualifierXml("Key", "boolean", "FALSE")) +
                                            PropertyXml("B", "string", QualifierXml("Key", "boolean", "")));
    const auto declaration = namespace_->GetQualifierDecl("Key", TCIMContext());
    const auto property = Property(*cls, "C");
    property->AddQualifier(property->AllocateQualifier(declaration, TCIMValue(), TCIMContext()), TCIMContext());
    property->AddToClass(TCIMContext());
    EXPECT_THAT(KeyNames(*cls), IsEmpty());
}

TEST_F(ClassFeaturesTest, KeyNamesFollowEveryChangeOfDeclarationsAndTheirQualifiers) {
    const auto cls = Fetch("TEST_Keys", PropertyXml("Name", "string", KeyXml()));
    const auto keyOf = [&](const boost::shared_ptr<ICIMPropertyDecl>& declaration, bool isKey) {
        const auto key = namespace_->GetQualifierDecl("Key", TCIMContext());
        return declaration->AllocateQualifier(key, TCIMValue(isKey), ICIMQualifierDecl::eFlavorEnableOverride,
                                              TCIMContext());
    };
    const auto added = Property(*cls, "Added");
    added->AddToClass(TCIMContext());
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Name"));

    const auto qualifier = keyOf(added, true);
    added->AddQualifier(qualifier, TCIMContext());
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Added", "Name"));
    qualifier->SetValue(TCIMValue(false), TCIMContext());
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Name"));
    const auto successor = keyOf(added, true);
    added->AddQualifier(successor, TCIMContext());
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Added", "Name"));
    boost::dynamic_pointer_cast<TCimHTTPPropertyDecl>(added)->RemoveQualifier(successor);
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Name"));

    const auto declared = Property(*cls, "Later");
    declared->AddQualifier(keyOf(declared, true), TCIMContext());
    declared->AddToClass(TCIMContext());
    EXPECT_THAT(KeyNames(*cls), ElementsAre("Later", "Name"));
}

TEST_F(ClassFeaturesTest, WhatIsThrownDuringTheWalkOverTheKeysLeavesAsTheModelsException) {
    const auto cls = Fetch("TEST_Keys", PropertyXml("Name", "string", KeyXml()));
    const auto walk = [&](const boost::function<bool(const std::string*)>& callback) {
        return StatusOf([&] { cls->EnumerateKeyNames(callback, TCIMContext()); });
    };
    EXPECT_EQ(walk([](const std::string*) -> bool { throw std::runtime_error("oops"); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Enumeration of the keys of class TEST_Keys failed: oops"));
    EXPECT_EQ(walk([](const std::string*) -> bool { throw TVYXException(TVYXStatusCode::eReadOnly); }),
              TVYXStatusCode::eReadOnly);
    EXPECT_EQ(walk(boost::function<bool(const std::string*)>()), TVYXStatusCode::eTypeMismatch);
    log_->Forget();
    EXPECT_EQ(walk([](const std::string*) -> bool { throw Pegasus::Exception("oops"); }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTP: Enumeration of the keys of class TEST_Keys failed"));
}

TEST_F(ClassFeaturesTest, AnEmptyCallbackIsABadFunctionCall) {
    const auto cls =
        Fetch("TEST_Robot", KeyXml() + PropertyXml("Name", "string") + "<METHOD NAME=\"Go\" TYPE=\"uint32\"/>");
    EXPECT_THROW(cls->EnumeratePropertyDecls({}, TCIMContext()), boost::bad_function_call);
    EXPECT_THROW(cls->EnumerateMethodDecls({}, TCIMContext()), boost::bad_function_call);
    EXPECT_THROW(cls->EnumerateQualifiers({}, TCIMContext()), boost::bad_function_call);
    EXPECT_THROW(namespace_->EnumerateRootClasses({}, TCIMContext()), boost::bad_function_call);
}

// --- Static properties and methods -------------------------------------------------------------------------------

TEST_F(ClassFeaturesTest, ThereAreNoStaticProperties) {
    EXPECT_EQ(StatusOf([&] { disk_->GetProperty("Size", TCIMContext()); }), TVYXStatusCode::eNotFound);
    disk_->EnumerateStaticProperties(
        [](const auto&) {
            ADD_FAILURE() << "called back";
            return true;
        },
        TCIMContext());
}

TEST_F(ClassFeaturesTest, SetPropertyValueIsRefused) {
    EXPECT_EQ(StatusOf([&] { disk_->SetPropertyValue("Size", TCIMValue(1U), TCIMContext()); }),
              TVYXStatusCode::eReadOnly);
}

TEST_F(ClassFeaturesTest, InvokeMethodReturnsAnEmptyValueAndAsksNobody) {
    server_.ForgetCalls();
    TCIMContext parameters{{"Quick", TCIMValue(true)}};
    EXPECT_EQ(disk_->InvokeMethod("Format", parameters, TCIMContext()), TCIMValue());
    EXPECT_EQ(parameters.size(), 1U);
    EXPECT_THAT(server_.Calls(), IsEmpty());
}
