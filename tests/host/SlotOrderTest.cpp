// The contract is binary: a host and a plug-in built apart meet in the virtual tables. These tests pin the order of
// every interface's operations, and the types of those that are overloaded.

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "Slots.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/ILogger.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TXmlParser.h"

using namespace NQORVYX20;

namespace {

template <typename Interface>
std::size_t ExpectNamedElementSlots() {
    using Allocate = boost::shared_ptr<ICIMQualifier> (Interface::*)(boost::shared_ptr<ICIMQualifierDecl const>,
                                                                     const TCIMValue&, TCIMContext) const;
    using AllocateWithFlavor = boost::shared_ptr<ICIMQualifier> (Interface::*)(
        boost::shared_ptr<ICIMQualifierDecl const>, const TCIMValue&, ICIMQualifierDecl::EFlavor, TCIMContext) const;
    using Get = boost::shared_ptr<ICIMQualifier> (Interface::*)(const std::string&, TCIMContext) const;
    using GetIfThere = boost::shared_ptr<ICIMQualifier> (Interface::*)(const std::string&, bool&, TCIMContext) const;
    return ExpectSlots(kFirstSlot, &Interface::AddQualifier, static_cast<Allocate>(&Interface::AllocateQualifier),
                       static_cast<AllocateWithFlavor>(&Interface::AllocateQualifier),
                       static_cast<Get>(&Interface::GetQualifier), &Interface::EnumerateQualifiers,
                       static_cast<GetIfThere>(&Interface::GetQualifier));
}

} // namespace

TEST(SlotOrder, ElementBeginsWithValidate) { ExpectSlots(kFirstSlot, &ICIMElement::Validate); }

TEST(SlotOrder, NamedElementKeepsItsOrder) { EXPECT_EQ(ExpectNamedElementSlots<ICIMNamedElement>(), kFirstSlot + 6); }

TEST(SlotOrder, NamespaceKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &ICIMNamespace::GetNamespaceProvider, &ICIMNamespace::SetUpcallNamespace,
                &ICIMNamespace::AddUnderlyingNamespace, &ICIMNamespace::AllocateClass, &ICIMNamespace::GetClass,
                &ICIMNamespace::EnumerateRootClasses, &ICIMNamespace::EnumerateProviders,
                &ICIMNamespace::AllocateQualifierDecl, &ICIMNamespace::GetQualifierDecl,
                &ICIMNamespace::EnumerateQualifierDecls, &ICIMNamespace::Subscribe, &ICIMNamespace::GetInstance,
                &ICIMNamespace::DeleteInstance, &ICIMNamespace::ModifyInstance, &ICIMNamespace::ExecuteQuery,
                &ICIMNamespace::ClearInstances);
}

TEST(SlotOrder, ClassKeepsItsOrderBehindValidate) {
    ExpectSlots(
        kFirstSlot, &ICIMClass::Validate, &ICIMClass::AddToNamespace, &ICIMClass::RemoveFromNamespace,
        &ICIMClass::ModifyClass, &ICIMClass::GetName, &ICIMClass::GetNamespace, &ICIMClass::IsAssociation,
        &ICIMClass::IsAbstract, &ICIMClass::IsRootClass, &ICIMClass::GetSuperClass, &ICIMClass::EnumerateSubClasses,
        &ICIMClass::IsSubclassOf, &ICIMClass::EnumerateAssociatedClasses, &ICIMClass::EnumerateAssociationClasses,
        &ICIMClass::EnumerateKeyNames, &ICIMClass::AllocatePropertyDecl, &ICIMClass::GetPropertyDecl,
        &ICIMClass::EnumeratePropertyDecls, &ICIMClass::GetProperty, &ICIMClass::SetPropertyValue,
        &ICIMClass::EnumerateStaticProperties, &ICIMClass::AllocateInstance, &ICIMClass::EnumerateInstances,
        &ICIMClass::AllocateMethodDecl, &ICIMClass::GetMethodDecl, &ICIMClass::EnumerateMethodDecls,
        &ICIMClass::InvokeMethod, &ICIMClass::operator==, &ICIMClass::operator<,
        static_cast<ICIMClass& (ICIMClass::*)(const ICIMClass&)>(&ICIMClass::operator=), &ICIMClass::AddChildClass,
        &ICIMClass::RemoveChildClass, &ICIMClass::AddInstance, &ICIMClass::RemoveInstance,
        &ICIMClass::AddAssociationClass, &ICIMClass::RemoveAssociationClass, &ICIMClass::AddPropertyDecl,
        &ICIMClass::RemovePropertyDecl, &ICIMClass::AddMethodDecl, &ICIMClass::RemoveMethodDecl);
}

TEST(SlotOrder, InstanceKeepsItsOrderBehindValidate) {
    ExpectSlots(kFirstSlot, &ICIMInstance::Validate, &ICIMInstance::AddToNamespace, &ICIMInstance::ModifyInstance,
                &ICIMInstance::Delete, &ICIMInstance::GetReference, &ICIMInstance::BuildPath, &ICIMInstance::GetClass,
                &ICIMInstance::EnumerateAssociatedInstances, &ICIMInstance::EnumerateAssociationInstances,
                &ICIMInstance::GetProperty, &ICIMInstance::SetPropertyValue, &ICIMInstance::EnumerateProperties,
                &ICIMInstance::InvokeMethod, &ICIMInstance::operator==, &ICIMInstance::operator<,
                static_cast<ICIMInstance& (ICIMInstance::*)(const ICIMInstance&)>(&ICIMInstance::operator=));
}

TEST(SlotOrder, PropertyKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &ICIMProperty::GetType, &ICIMProperty::IsArray, &ICIMProperty::IsDefaultValue,
                &ICIMProperty::GetValue, &ICIMProperty::SetValue, &ICIMProperty::GetPropagated,
                &ICIMProperty::GetDeclaration, &ICIMProperty::operator==, &ICIMProperty::operator<,
                static_cast<ICIMProperty& (ICIMProperty::*)(const ICIMProperty&)>(&ICIMProperty::operator=),
                &ICIMProperty::GetPrevValue,
                static_cast<void (ICIMProperty::*)(const TCIMValue&)>(&ICIMProperty::SetPrevValue),
                static_cast<void (ICIMProperty::*)()>(&ICIMProperty::SetPrevValue), &ICIMProperty::IsPrevValueDifferent,
                &ICIMProperty::ToString, &ICIMProperty::PrevValueToString, &ICIMProperty::ToStringVector);
}

TEST(SlotOrder, PropertyDeclKeepsItsOrderBehindTheNamedElement) {
    ExpectSlots(
        ExpectNamedElementSlots<ICIMPropertyDecl>(), &ICIMPropertyDecl::Validate, &ICIMPropertyDecl::AddToClass,
        &ICIMPropertyDecl::RemoveFromClass, &ICIMPropertyDecl::GetName, &ICIMPropertyDecl::GetClass,
        &ICIMPropertyDecl::GetType, &ICIMPropertyDecl::IsArray, &ICIMPropertyDecl::GetDefaultValue,
        &ICIMPropertyDecl::SetDefaultValue, &ICIMPropertyDecl::operator==, &ICIMPropertyDecl::operator<,
        static_cast<ICIMPropertyDecl& (ICIMPropertyDecl::*)(const ICIMPropertyDecl&)>(&ICIMPropertyDecl::operator=));
}

TEST(SlotOrder, QualifierKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &ICIMQualifier::Validate, &ICIMQualifier::AddToClassOrProperty,
                &ICIMQualifier::RemoveFromClassOrProperty, &ICIMQualifier::GetName, &ICIMQualifier::GetClassOrProperty,
                &ICIMQualifier::GetType, &ICIMQualifier::IsArray, &ICIMQualifier::GetDeclaration,
                &ICIMQualifier::GetValue, &ICIMQualifier::SetValue, &ICIMQualifier::SetFlavor,
                &ICIMQualifier::UnsetFlavor, &ICIMQualifier::GetFlavor, &ICIMQualifier::operator==,
                &ICIMQualifier::operator<, &ICIMQualifier::GetPropagated,
                static_cast<ICIMQualifier& (ICIMQualifier::*)(const ICIMQualifier&)>(&ICIMQualifier::operator=));
}

TEST(SlotOrder, QualifierDeclKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &ICIMQualifierDecl::Validate, &ICIMQualifierDecl::AddToNamespace,
                &ICIMQualifierDecl::RemoveQualifierDecl, &ICIMQualifierDecl::GetName, &ICIMQualifierDecl::GetNamespace,
                &ICIMQualifierDecl::GetType, &ICIMQualifierDecl::IsArray, &ICIMQualifierDecl::GetDefaultValue,
                &ICIMQualifierDecl::SetDefaultValue, &ICIMQualifierDecl::GetScope, &ICIMQualifierDecl::SetFlavor,
                &ICIMQualifierDecl::UnsetFlavor, &ICIMQualifierDecl::GetFlavor, &ICIMQualifierDecl::operator==,
                &ICIMQualifierDecl::operator<,
                static_cast<ICIMQualifierDecl& (ICIMQualifierDecl::*)(const ICIMQualifierDecl&)>(
                    &ICIMQualifierDecl::operator=));
}

TEST(SlotOrder, MethodDeclKeepsItsOrderBehindTheNamedElement) {
    ExpectSlots(ExpectNamedElementSlots<ICIMMethodDecl>(), &ICIMMethodDecl::Validate, &ICIMMethodDecl::AddToClass,
                &ICIMMethodDecl::GetName, &ICIMMethodDecl::GetClass, &ICIMMethodDecl::GetReturnType,
                &ICIMMethodDecl::AllocateParameterDecl, &ICIMMethodDecl::GetParameterDecl,
                &ICIMMethodDecl::EnumerateParameterDecls, &ICIMMethodDecl::operator==, &ICIMMethodDecl::operator<,
                static_cast<ICIMMethodDecl& (ICIMMethodDecl::*)(const ICIMMethodDecl&)>(&ICIMMethodDecl::operator=));
}

TEST(SlotOrder, ParameterDeclKeepsItsOrderBehindTheNamedElement) {
    ExpectSlots(ExpectNamedElementSlots<ICIMParameterDecl>(), &ICIMParameterDecl::Validate,
                &ICIMParameterDecl::AddToMethod, &ICIMParameterDecl::GetName, &ICIMParameterDecl::GetMethodDecl,
                &ICIMParameterDecl::GetType, &ICIMParameterDecl::IsArray, &ICIMParameterDecl::operator==,
                &ICIMParameterDecl::operator<,
                static_cast<ICIMParameterDecl& (ICIMParameterDecl::*)(const ICIMParameterDecl&)>(
                    &ICIMParameterDecl::operator=));
}

TEST(SlotOrder, NamespaceProviderKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &INamespaceProvider::GetName, &INamespaceProvider::AllocateNamespace,
                &INamespaceProvider::GetType, &INamespaceProvider::IsIndicationsSupported);
}

TEST(SlotOrder, HostServicesBeginWithTheOperationThatThePluginCalls) {
    EXPECT_EQ(SlotOf(&ILogger::Log), kFirstSlot);
    EXPECT_EQ(SlotOf(&INamespaceProviderManager::RegisterNamespaceProvider), kFirstSlot);
}

TEST(SlotOrder, XmlParserKeepsItsOrder) {
    ExpectSlots(kFirstSlot, &TXmlParser::StartElement, &TXmlParser::EndElement, &TXmlParser::processingInstruction,
                &TXmlParser::characters, &TXmlParser::notationDecl, &TXmlParser::FatalError, &TXmlParser::ParseJSSP,
                &TXmlParser::ParseCharData);
}

// A host that was built elsewhere passes its arguments as these types say; most operations take the context by value.
TEST(Signatures, ThoseThatDifferFromTheirNeighboursStay) {
    using ClassVisitor = const boost::function<bool(boost::shared_ptr<ICIMClass>)>&;
    using InstanceVisitor = const boost::function<bool(boost::shared_ptr<ICIMInstance>)>&;
    const auto expect = [](auto operation, auto signature) {
        EXPECT_TRUE((std::is_same_v<decltype(operation), decltype(signature)>));
    };
    using Namespace = ICIMNamespace;
    expect(&Namespace::EnumerateProviders,
           static_cast<void (Namespace::*)(const boost::function<bool(boost::shared_ptr<IProvider>)>&, TCIMContext)>(
               nullptr));
    expect(
        &Namespace::GetInstance,
        static_cast<boost::shared_ptr<ICIMInstance> (Namespace::*)(const TCIMReference&, TCIMContext) const>(nullptr));
    expect(&Namespace::ModifyInstance,
           static_cast<void (Namespace::*)(const TCIMReference&, TCIMContext, TCIMContext)>(nullptr));
    expect(&Namespace::ExecuteQuery,
           static_cast<void (Namespace::*)(InstanceVisitor, std::string&, std::string&, TCIMContext)>(nullptr));
    expect(&Namespace::ClearInstances, static_cast<void (Namespace::*)()>(nullptr));
    expect(&ICIMClass::GetName, static_cast<const std::string& (ICIMClass::*)(TCIMContext) const>(nullptr));
    expect(&ICIMClass::EnumerateSubClasses, static_cast<void (ICIMClass::*)(ClassVisitor, bool, TCIMContext)>(nullptr));
    expect(
        &ICIMClass::EnumerateKeyNames,
        static_cast<void (ICIMClass::*)(const boost::function<bool(const std::string*)>&, TCIMContext) const>(nullptr));
    expect(&ICIMClass::InvokeMethod,
           static_cast<TCIMValue (ICIMClass::*)(const std::string&, TCIMContext&, TCIMContext)>(nullptr));
    expect(&ICIMClass::AddChildClass, static_cast<void (ICIMClass::*)(boost::shared_ptr<ICIMClass>)>(nullptr));
    expect(&ICIMInstance::BuildPath, static_cast<TCIMReference (ICIMInstance::*)(TCIMContext) const>(nullptr));
    expect(&ICIMProperty::GetValue, static_cast<const TCIMValue& (ICIMProperty::*)(TCIMContext) const>(nullptr));
    expect(&ICIMProperty::GetPrevValue, static_cast<const TCIMValue& (ICIMProperty::*)() const>(nullptr));
    expect(&ICIMMethodDecl::EnumerateParameterDecls,
           static_cast<void (ICIMMethodDecl::*)(boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)>&,
                                                TCIMContext) const>(nullptr));
    expect(&ICIMQualifier::AddToClassOrProperty, static_cast<void (ICIMQualifier::*)(TCIMContext) const>(nullptr));
    expect(&INamespaceProvider::GetType, static_cast<int (INamespaceProvider::*)(TCIMContext) const>(nullptr));
}

TEST(ClassBases, TheQualifierOperationsAreReachedThroughTheSecondBase) {
    static_assert(std::is_base_of_v<ICIMElement, ICIMClass> && std::is_base_of_v<ICIMNamedElement, ICIMClass>);
    // A pointer to a member of the second base, seen from the class, carries the distance to that base.
    const auto adjusted = static_cast<void (ICIMClass::*)(boost::shared_ptr<ICIMQualifier>, TCIMContext)>(
        &ICIMNamedElement::AddQualifier);
    std::size_t parts[2] = {};
    std::memcpy(parts, &adjusted, sizeof parts);
    EXPECT_EQ(parts[1], sizeof(void*));
    EXPECT_EQ((parts[0] - 1) / sizeof(void*), kFirstSlot);
}

TEST(TypeCodes, ArraysAreTheElementCodePlusSixteen) {
    using Type = TCIMValue::TCIMType;
    EXPECT_EQ(Type::eCIMUnknown, 0);
    EXPECT_EQ(Type::eCIMArrayUnknown, 16);
    const Type::ECIMType scalars[] = {Type::eCIMBoolean, Type::eCIMUint8,    Type::eCIMSint8,    Type::eCIMUint16,
                                      Type::eCIMSint16,  Type::eCIMUint32,   Type::eCIMSint32,   Type::eCIMUint64,
                                      Type::eCIMSint64,  Type::eCIMReal32,   Type::eCIMReal64,   Type::eCIMChar16,
                                      Type::eCIMString,  Type::eCIMDateTime, Type::eCIMReference};
    const Type::ECIMType arrays[] = {Type::eCIMBooleanArray, Type::eCIMUint8Array,    Type::eCIMSint8Array,
                                     Type::eCIMUint16Array,  Type::eCIMSint16Array,   Type::eCIMUint32Array,
                                     Type::eCIMSint32Array,  Type::eCIMUint64Array,   Type::eCIMSint64Array,
                                     Type::eCIMReal32Array,  Type::eCIMReal64Array,   Type::eCIMChar16Array,
                                     Type::eCIMStringArray,  Type::eCIMDateTimeArray, Type::eCIMReferenceArray};
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(scalars[i], i + 1);
        EXPECT_EQ(arrays[i], i + 17);
    }
}

TEST(ScopesAndFlavors, AreTheBitsOfTheContract) {
    using Decl = ICIMQualifierDecl;
    EXPECT_EQ(Decl::eScopeClass | Decl::eScopeAssociation | Decl::eScopeIndication | Decl::eScopeProperty |
                  Decl::eScopeReference | Decl::eScopeMethod | Decl::eScopeParameter,
              Decl::eScopeAny);
    EXPECT_EQ(Decl::eScopeClass, 0x01U);
    EXPECT_EQ(Decl::eScopeProperty, 0x08U);
    EXPECT_EQ(Decl::eScopeParameter, 0x40U);
    EXPECT_EQ(Decl::eFlavorEnableOverride | Decl::eFlavorToSubclass, Decl::eFlavorDefaults);
    EXPECT_EQ(Decl::eFlavorEnableOverride, 0x01U);
    EXPECT_EQ(Decl::eFlavorToSubclass, 0x02U);
    EXPECT_EQ(Decl::eFlavorTranslatable, 0x04U);
    EXPECT_EQ(ILogger::eLogError, 0);
    EXPECT_EQ(ILogger::eLogDebug, 3);
}
