// The contract is binary: a host and a plug-in built apart meet in the virtual tables. These tests pin the bases of
// every interface, the order of its operations, and their types.

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
#include "host/TInmemInstance.h"
#include "host/TVYXException.h"
#include "host/TXmlParser.h"

#include <gtest/gtest.h>

#include <cstring>
#include <exception>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace NQORVYX20;

namespace {

template <typename T>
using Shared = boost::shared_ptr<T>;
template <typename T>
using Visitor = boost::function<bool(boost::shared_ptr<T>)>;

using Context = TCIMContext;
using Text = const std::string&;
using Value = const TCIMValue&;
using Type = TCIMValue::TCIMType;
using Flavor = ICIMQualifierDecl::EFlavor;
using Scope = ICIMQualifierDecl::EScope;

/// The operations of the base, as an interface that is derived from it has them.
template <typename Interface>
std::size_t ExpectNamedElementSlots() {
    using Declaration = Shared<ICIMQualifierDecl const>;
    using Qualifier = Shared<ICIMQualifier>;
    return ExpectSlots(kFirstSlot, As<void(Qualifier, Context)>(&Interface::AddQualifier),
                       As<Qualifier(Declaration, Value, Context) const>(&Interface::AllocateQualifier),
                       As<Qualifier(Declaration, Value, Flavor, Context) const>(&Interface::AllocateQualifier),
                       As<Qualifier(Text, Context) const>(&Interface::GetQualifier),
                       As<void(const Visitor<ICIMQualifier>&, Context) const>(&Interface::EnumerateQualifiers),
                       As<Qualifier(Text, bool&, Context) const>(&Interface::GetQualifier));
}

} // namespace

TEST(SlotOrder, ElementHasValidateAlone) {
    using I = ICIMElement;
    ExpectLastSlots<I>(kFirstSlot, As<void(Context) const>(&I::Validate));
}

TEST(SlotOrder, NamedElementKeepsItsOrder) {
    ExpectLastSlots<ICIMNamedElement>(ExpectNamedElementSlots<ICIMNamedElement>());
}

TEST(SlotOrder, NamespaceKeepsItsOrder) {
    using I = ICIMNamespace;
    ExpectLastSlots<I>(kFirstSlot, As<Shared<INamespaceProvider>(Context) const>(&I::GetNamespaceProvider),
                       As<void(Shared<ICIMNamespace>, Context)>(&I::SetUpcallNamespace),
                       As<void(Shared<ICIMNamespace>, Context)>(&I::AddUnderlyingNamespace),
                       As<Shared<ICIMClass>(Text, Shared<ICIMClass>, Context)>(&I::AllocateClass),
                       As<Shared<ICIMClass>(Text, Context)>(&I::GetClass),
                       As<void(const Visitor<ICIMClass>&, Context)>(&I::EnumerateRootClasses),
                       As<void(const Visitor<IProvider>&, Context)>(&I::EnumerateProviders),
                       As<Shared<ICIMQualifierDecl>(Text, Value, Scope, Flavor, Context)>(&I::AllocateQualifierDecl),
                       As<Shared<ICIMQualifierDecl>(Text, Context) const>(&I::GetQualifierDecl),
                       As<void(const Visitor<ICIMQualifierDecl>&, Context) const>(&I::EnumerateQualifierDecls),
                       As<void(Shared<ICIMIndicationFilter>, const Visitor<ICIMInstance>&, Context)>(&I::Subscribe),
                       As<Shared<ICIMInstance>(const TCIMReference&, Context) const>(&I::GetInstance),
                       As<void(const TCIMReference&, Context)>(&I::DeleteInstance),
                       As<void(const TCIMReference&, Context, Context)>(&I::ModifyInstance),
                       As<void(const Visitor<ICIMInstance>&, std::string&, std::string&, Context)>(&I::ExecuteQuery),
                       As<void()>(&I::ClearInstances));
}

TEST(SlotOrder, ClassKeepsItsOrderAfterValidate) {
    using I = ICIMClass;
    const std::size_t maintenance = ExpectSlots(
        kFirstSlot, As<void(Context) const>(&I::Validate), As<void(Context)>(&I::AddToNamespace),
        As<void(Context)>(&I::RemoveFromNamespace), As<void(Shared<ICIMClass>, Context)>(&I::ModifyClass),
        As<Text(Context) const>(&I::GetName), As<Shared<ICIMNamespace>(Context) const>(&I::GetNamespace),
        As<bool(Context) const>(&I::IsAssociation), As<bool(Context) const>(&I::IsAbstract),
        As<bool(Context) const>(&I::IsRootClass), As<Shared<ICIMClass>(Context) const>(&I::GetSuperClass),
        As<void(const Visitor<ICIMClass>&, bool, Context)>(&I::EnumerateSubClasses),
        As<bool(Shared<ICIMClass const>, Context) const>(&I::IsSubclassOf),
        As<void(const Visitor<ICIMClass>&, Text, Text, Text, Text, Context)>(&I::EnumerateAssociatedClasses),
        As<void(const Visitor<ICIMClass>&, Text, Text, Context)>(&I::EnumerateAssociationClasses),
        As<void(const boost::function<bool(const std::string*)>&, Context) const>(&I::EnumerateKeyNames),
        As<Shared<ICIMPropertyDecl>(Text, Value, Context)>(&I::AllocatePropertyDecl),
        As<Shared<ICIMPropertyDecl>(Text, Context) const>(&I::GetPropertyDecl),
        As<void(const Visitor<ICIMPropertyDecl>&, Context) const>(&I::EnumeratePropertyDecls),
        As<Shared<ICIMProperty>(Text, Context)>(&I::GetProperty), As<void(Text, Value, Context)>(&I::SetPropertyValue),
        As<void(const Visitor<ICIMProperty>&, Context)>(&I::EnumerateStaticProperties),
        As<Shared<ICIMInstance>(Context)>(&I::AllocateInstance),
        As<void(const Visitor<ICIMInstance>&, bool, Context)>(&I::EnumerateInstances),
        As<Shared<ICIMMethodDecl>(Text, Type, Context)>(&I::AllocateMethodDecl),
        As<Shared<ICIMMethodDecl>(Text, Context) const>(&I::GetMethodDecl),
        As<void(const Visitor<ICIMMethodDecl>&, Context) const>(&I::EnumerateMethodDecls),
        As<TCIMValue(Text, Context&, Context)>(&I::InvokeMethod), As<bool(ICIMClass&) const>(&I::operator==),
        As<bool(ICIMClass&) const>(&I::operator<), As<ICIMClass&(const ICIMClass&)>(&I::operator=));
    ExpectLastSlots<I>(
        maintenance, As<void(Shared<ICIMClass>)>(&I::AddChildClass), As<void(Shared<ICIMClass>)>(&I::RemoveChildClass),
        As<void(Shared<ICIMInstance>)>(&I::AddInstance), As<void(Shared<ICIMInstance>)>(&I::RemoveInstance),
        As<void(Shared<ICIMClass>)>(&I::AddAssociationClass), As<void(Shared<ICIMClass>)>(&I::RemoveAssociationClass),
        As<void(Shared<ICIMPropertyDecl>)>(&I::AddPropertyDecl),
        As<void(Shared<ICIMPropertyDecl>)>(&I::RemovePropertyDecl), As<void(Shared<ICIMMethodDecl>)>(&I::AddMethodDecl),
        As<void(Shared<ICIMMethodDecl>)>(&I::RemoveMethodDecl));
}

TEST(SlotOrder, InstanceKeepsItsOrderAfterValidate) {
    using I = ICIMInstance;
    ExpectLastSlots<I>(
        kFirstSlot, As<void(Context) const>(&I::Validate), As<void(Context)>(&I::AddToNamespace),
        As<void(Shared<ICIMInstance>, Context)>(&I::ModifyInstance), As<void(Context)>(&I::Delete),
        As<TCIMReference(Context) const>(&I::GetReference), As<TCIMReference(Context) const>(&I::BuildPath),
        As<Shared<ICIMClass>(Context) const>(&I::GetClass),
        As<void(const Visitor<ICIMInstance>&, Text, Text, Text, Text, Context)>(&I::EnumerateAssociatedInstances),
        As<void(const Visitor<ICIMInstance>&, Text, Text, Context)>(&I::EnumerateAssociationInstances),
        As<Shared<ICIMProperty>(Text, Context) const>(&I::GetProperty),
        As<void(Text, Value, Context)>(&I::SetPropertyValue),
        As<void(const Visitor<ICIMProperty>&, Context)>(&I::EnumerateProperties),
        As<TCIMValue(Text, Context&, Context)>(&I::InvokeMethod), As<bool(ICIMInstance&) const>(&I::operator==),
        As<bool(ICIMInstance&) const>(&I::operator<), As<ICIMInstance&(const ICIMInstance&)>(&I::operator=));
}

TEST(SlotOrder, InmemInstanceAppendsNothing) {
    constexpr std::size_t kOperations = 16;
    ExpectLastSlots<TInmemInstance>(kFirstSlot + kOperations);
}

TEST(SlotOrder, PropertyKeepsItsOrder) {
    using I = ICIMProperty;
    ExpectLastSlots<I>(kFirstSlot, As<Type(Context) const>(&I::GetType), As<bool(Context) const>(&I::IsArray),
                       As<bool(Context) const>(&I::IsDefaultValue), As<Value(Context) const>(&I::GetValue),
                       As<void(Value, Context)>(&I::SetValue), As<bool(Context) const>(&I::GetPropagated),
                       As<Shared<ICIMPropertyDecl const>(Context) const>(&I::GetDeclaration),
                       As<bool(ICIMProperty&) const>(&I::operator==), As<bool(ICIMProperty&) const>(&I::operator<),
                       As<ICIMProperty&(const ICIMProperty&)>(&I::operator=), As<Value() const>(&I::GetPrevValue),
                       As<void(Value)>(&I::SetPrevValue), As<void()>(&I::SetPrevValue),
                       As<bool() const>(&I::IsPrevValueDifferent), As<std::string() const>(&I::ToString),
                       As<std::string() const>(&I::PrevValueToString),
                       As<std::vector<std::string>() const>(&I::ToStringVector));
}

TEST(SlotOrder, PropertyDeclKeepsItsOrderAfterTheNamedElement) {
    using I = ICIMPropertyDecl;
    ExpectLastSlots<I>(ExpectNamedElementSlots<I>(), As<void(Context) const>(&I::Validate),
                       As<void(Context)>(&I::AddToClass), As<void(Context)>(&I::RemoveFromClass),
                       As<Text(Context) const>(&I::GetName), As<Shared<ICIMClass>(Context) const>(&I::GetClass),
                       As<Type(Context) const>(&I::GetType), As<bool(Context) const>(&I::IsArray),
                       As<Value(Context) const>(&I::GetDefaultValue), As<void(Value, Context)>(&I::SetDefaultValue),
                       As<bool(ICIMPropertyDecl&) const>(&I::operator==),
                       As<bool(ICIMPropertyDecl&) const>(&I::operator<),
                       As<ICIMPropertyDecl&(const ICIMPropertyDecl&)>(&I::operator=));
}

TEST(SlotOrder, QualifierKeepsItsOrder) {
    using I = ICIMQualifier;
    ExpectLastSlots<I>(
        kFirstSlot, As<void(Context) const>(&I::Validate), As<void(Context) const>(&I::AddToClassOrProperty),
        As<void(Context)>(&I::RemoveFromClassOrProperty), As<Text(Context) const>(&I::GetName),
        As<Shared<ICIMNamedElement const>(Context) const>(&I::GetClassOrProperty), As<Type(Context) const>(&I::GetType),
        As<bool(Context) const>(&I::IsArray), As<Shared<ICIMQualifierDecl const>(Context) const>(&I::GetDeclaration),
        As<Value(Context) const>(&I::GetValue), As<void(Value, Context)>(&I::SetValue),
        As<void(Flavor, Context)>(&I::SetFlavor), As<void(Flavor, Context)>(&I::UnsetFlavor),
        As<Flavor(Context) const>(&I::GetFlavor), As<bool(ICIMQualifier&) const>(&I::operator==),
        As<bool(ICIMQualifier&) const>(&I::operator<), As<bool(Context) const>(&I::GetPropagated),
        As<ICIMQualifier&(const ICIMQualifier&)>(&I::operator=));
}

TEST(SlotOrder, QualifierDeclKeepsItsOrder) {
    using I = ICIMQualifierDecl;
    ExpectLastSlots<I>(kFirstSlot, As<void(Context) const>(&I::Validate), As<void(Context)>(&I::AddToNamespace),
                       As<void(Context)>(&I::RemoveQualifierDecl), As<Text(Context) const>(&I::GetName),
                       As<Shared<ICIMNamespace>(Context) const>(&I::GetNamespace), As<Type(Context) const>(&I::GetType),
                       As<bool(Context) const>(&I::IsArray), As<Value(Context) const>(&I::GetDefaultValue),
                       As<void(Value, Context)>(&I::SetDefaultValue), As<Scope(Context) const>(&I::GetScope),
                       As<void(Flavor, Context)>(&I::SetFlavor), As<void(Flavor, Context)>(&I::UnsetFlavor),
                       As<Flavor(Context) const>(&I::GetFlavor), As<bool(ICIMQualifierDecl&) const>(&I::operator==),
                       As<bool(ICIMQualifierDecl&) const>(&I::operator<),
                       As<ICIMQualifierDecl&(const ICIMQualifierDecl&)>(&I::operator=));
}

TEST(SlotOrder, MethodDeclKeepsItsOrderAfterTheNamedElement) {
    using I = ICIMMethodDecl;
    ExpectLastSlots<I>(ExpectNamedElementSlots<I>(), As<void(Context) const>(&I::Validate),
                       As<void(Context)>(&I::AddToClass), As<Text(Context) const>(&I::GetName),
                       As<Shared<ICIMClass>(Context) const>(&I::GetClass), As<Type(Context) const>(&I::GetReturnType),
                       As<Shared<ICIMParameterDecl>(Text, Type, Context)>(&I::AllocateParameterDecl),
                       As<Shared<ICIMParameterDecl>(Text, Context) const>(&I::GetParameterDecl),
                       As<void(Visitor<ICIMParameterDecl>&, Context) const>(&I::EnumerateParameterDecls),
                       As<bool(ICIMMethodDecl&) const>(&I::operator==), As<bool(ICIMMethodDecl&) const>(&I::operator<),
                       As<ICIMMethodDecl&(const ICIMMethodDecl&)>(&I::operator=));
}

TEST(SlotOrder, ParameterDeclKeepsItsOrderAfterTheNamedElement) {
    using I = ICIMParameterDecl;
    ExpectLastSlots<I>(
        ExpectNamedElementSlots<I>(), As<void(Context) const>(&I::Validate), As<void(Context)>(&I::AddToMethod),
        As<Text(Context) const>(&I::GetName), As<Shared<ICIMMethodDecl>(Context) const>(&I::GetMethodDecl),
        As<Type(Context) const>(&I::GetType), As<bool(Context) const>(&I::IsArray),
        As<bool(ICIMParameterDecl&) const>(&I::operator==), As<bool(ICIMParameterDecl&) const>(&I::operator<),
        As<ICIMParameterDecl&(const ICIMParameterDecl&)>(&I::operator=));
}

TEST(SlotOrder, NamespaceProviderKeepsItsOrder) {
    using I = INamespaceProvider;
    ExpectLastSlots<I>(kFirstSlot, As<Text(Context) const>(&I::GetName),
                       As<Shared<ICIMNamespace>(Context, bool) const>(&I::AllocateNamespace),
                       As<int(Context) const>(&I::GetType), As<bool(Context) const>(&I::IsIndicationsSupported));
}

TEST(SlotOrder, HostServicesBeginWithTheOperationThatThePluginCalls) {
    EXPECT_EQ(SlotOf(As<void(ILogger::EVYXLogSeverity, std::string)>(&ILogger::Log)), kFirstSlot);
    EXPECT_EQ(
        SlotOf(As<TVYXStatusCode(Shared<INamespaceProvider>)>(&INamespaceProviderManager::RegisterNamespaceProvider)),
        kFirstSlot);
}

TEST(SlotOrder, XmlParserKeepsItsOrder) {
    using I = TXmlParser;
    using Attributes = std::map<std::string, std::string>;
    ExpectLastSlots<I>(kFirstSlot, As<void(const char*, Attributes&)>(&I::StartElement),
                       As<void(const char*)>(&I::EndElement),
                       As<void(const char*, const char*)>(&I::processingInstruction),
                       As<void(const char*, unsigned int)>(&I::characters),
                       As<void(const char*, const char*, const char*)>(&I::notationDecl),
                       As<void(const char*)>(&I::FatalError), As<bool()>(&I::ParseJSSP), As<bool()>(&I::ParseCharData));
}

// A virtual table per base, and nothing else: an interface without bases is one pointer large.
TEST(Bases, AreThoseOfTheContract) {
    constexpr std::size_t kOneTable = sizeof(void*);
    EXPECT_EQ(sizeof(ICIMElement), kOneTable);
    EXPECT_EQ(sizeof(ICIMNamedElement), kOneTable);
    EXPECT_EQ(sizeof(ICIMNamespace), kOneTable);
    EXPECT_EQ(sizeof(ICIMClass), 2 * kOneTable);
    EXPECT_EQ(sizeof(ICIMInstance), kOneTable);
    EXPECT_EQ(sizeof(ICIMProperty), kOneTable);
    EXPECT_EQ(sizeof(ICIMPropertyDecl), kOneTable);
    EXPECT_EQ(sizeof(ICIMQualifier), kOneTable);
    EXPECT_EQ(sizeof(ICIMQualifierDecl), kOneTable);
    EXPECT_EQ(sizeof(ICIMMethodDecl), kOneTable);
    EXPECT_EQ(sizeof(ICIMParameterDecl), kOneTable);
    EXPECT_EQ(sizeof(INamespaceProvider), kOneTable);
    static_assert(std::is_convertible_v<ICIMClass*, ICIMElement*> &&
                  std::is_convertible_v<ICIMInstance*, ICIMElement*>);
    static_assert(std::is_convertible_v<ICIMClass*, ICIMNamedElement*>);
    static_assert(std::is_convertible_v<ICIMPropertyDecl*, ICIMNamedElement*>);
    static_assert(std::is_convertible_v<ICIMMethodDecl*, ICIMNamedElement*>);
    static_assert(std::is_convertible_v<ICIMParameterDecl*, ICIMNamedElement*>);
}

TEST(Bases, TheQualifierOperationsOfAClassAreReachedThroughTheSecondOne) {
    // A pointer to a member of the second base, seen from the class, carries the distance to that base.
    const auto adjusted = static_cast<void (ICIMClass::*)(boost::shared_ptr<ICIMQualifier>, TCIMContext)>(
        &ICIMNamedElement::AddQualifier);
    std::size_t parts[2] = {};
    std::memcpy(parts, &adjusted, sizeof parts);
    EXPECT_EQ(parts[1], sizeof(void*));
    EXPECT_EQ((parts[0] - 1) / sizeof(void*), kFirstSlot);
}

TEST(TypeCodes, ArraysAreTheElementCodePlusSixteen) {
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
    EXPECT_EQ(sizeof(Scope), 4U);
    EXPECT_EQ(Decl::eScopeNone, 0U);
    EXPECT_EQ(Decl::eScopeClass, 0x01U);
    EXPECT_EQ(Decl::eScopeAssociation, 0x02U);
    EXPECT_EQ(Decl::eScopeIndication, 0x04U);
    EXPECT_EQ(Decl::eScopeProperty, 0x08U);
    EXPECT_EQ(Decl::eScopeReference, 0x10U);
    EXPECT_EQ(Decl::eScopeMethod, 0x20U);
    EXPECT_EQ(Decl::eScopeParameter, 0x40U);
    EXPECT_EQ(Decl::eScopeAny, 0x7fU);
    EXPECT_EQ(sizeof(Flavor), 4U);
    EXPECT_EQ(Decl::eFlavorNone, 0U);
    EXPECT_EQ(Decl::eFlavorEnableOverride, 0x01U);
    EXPECT_EQ(Decl::eFlavorToSubclass, 0x02U);
    EXPECT_EQ(Decl::eFlavorDefaults, 0x03U);
    EXPECT_EQ(Decl::eFlavorTranslatable, 0x04U);
}

TEST(Severities, AreTheNumbersOfTheContract) {
    EXPECT_EQ(ILogger::eLogError, 0);
    EXPECT_EQ(ILogger::eLogWarning, 1);
    EXPECT_EQ(ILogger::eLogInfo, 2);
    EXPECT_EQ(ILogger::eLogDebug, 3);
}

namespace {

template <typename... Natives>
constexpr bool kValuesAreMadeFrom = (std::is_convertible_v<Natives, TCIMValue> && ...);
template <typename... Natives>
constexpr bool kValuesConvertTo = (std::is_convertible_v<const TCIMValue&, Natives> && ...);

} // namespace

// Code that was written for the host's own values says `unsigned int count = value`, without a cast.
TEST(Values, ConvertFromAndToNativeTypesWithoutACast) {
    static_assert(kValuesAreMadeFrom<bool, unsigned char, signed char, unsigned short, short, unsigned int, int,
                                     unsigned long long, long long, float, double>);
    static_assert(kValuesAreMadeFrom<const char*, Text, const TCIMChar16&, const TCIMDateTime&, TCIMReference&>);
    static_assert(kValuesConvertTo<bool, unsigned char, unsigned short, unsigned int, unsigned long long, std::string,
                                   std::vector<TCIMValue>&>);
    static_assert(std::is_convertible_v<Type::ECIMType, Type> && std::is_convertible_v<const Type&, Type::ECIMType>);
    static_assert(std::is_same_v<Context, std::map<std::string, TCIMValue>>);
}

TEST(Failures, AreAStandardExceptionWithA32BitCode) {
    static_assert(std::is_convertible_v<TVYXException*, std::exception*>);
    EXPECT_EQ(sizeof(TVYXStatusCode), 4U);
    EXPECT_EQ(sizeof(TVYXException), sizeof(std::pair<std::exception, TVYXStatusCode>)) << "the code is all it holds";
}

// Hosts know the numbers, not the names.
TEST(StatusCodes, HaveTheirNumbers) {
    EXPECT_EQ(TVYXStatusCode::eSuccess, 0U);
    EXPECT_EQ(TVYXStatusCode::eNotSupported, 1U);
    EXPECT_EQ(TVYXStatusCode::eTypeMismatch, 14U);
    EXPECT_EQ(TVYXStatusCode::eNotFound, 15U);
    EXPECT_EQ(TVYXStatusCode::eAlreadyExists, 16U);
    EXPECT_EQ(TVYXStatusCode::eInvalidName, 25U);
    EXPECT_EQ(TVYXStatusCode::eQualifierConflict, 28U);
    EXPECT_EQ(TVYXStatusCode::eReadOnly, 31U);
    EXPECT_EQ(TVYXStatusCode::eContextValueMissing, 32U);
    EXPECT_EQ(TVYXStatusCode::eRemoteConnectionFailed, 42U);
}

TEST(StatusCodes, MayBeGivenAsANameOrAsANumber) {
    EXPECT_EQ(TVYXStatusCode().GetCode(), TVYXStatusCode::eSuccess);
    EXPECT_EQ(TVYXStatusCode(TVYXStatusCode::eNotFound).GetCode(), TVYXStatusCode(15).GetCode());
    EXPECT_EQ(TVYXException(TVYXStatusCode::eNotFound).GetStatusCode().GetCode(),
              TVYXException(15).GetStatusCode().GetCode());
}
