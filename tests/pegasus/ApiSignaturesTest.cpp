// What code that is written against the client API relies on at compile time: types, constants, every signature.
// CIMClient.h alone has to be enough for all of it. Nearly all of this is checked by compiling it. Nothing here is an
// extension: these files compile wherever the API is.

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <exception>
#include <type_traits>

namespace {

using namespace Pegasus;

template <class T, class U>
constexpr bool same = std::is_same_v<T, U>;
template <class To, class... From>
constexpr bool converts = (std::is_convertible_v<From, To> && ...);
template <class T, class... Arguments>
constexpr bool made = std::is_constructible_v<T, Arguments...>;
template <class T>
constexpr bool isValue =
    std::is_default_constructible_v<T> && std::is_copy_constructible_v<T> && std::is_copy_assignable_v<T>;

// Each takes the address of a function of exactly this result, class and parameters. `reads` is for operations on const
// objects, `changes` for all others, `is` for static and free functions.
template <class Class, class Result, class... Arguments>
constexpr bool reads(Result (Class::*)(Arguments...) const) {
    return true;
}
template <class Class, class Result, class... Arguments>
constexpr bool changes(Result (Class::*)(Arguments...)) {
    return true;
}
template <class Result, class... Arguments>
constexpr bool is(Result (*)(Arguments...)) {
    return true;
}

/// What a call gives on an object, or on a const one, whichever of several functions of one name that is.
template <class T>
T& an();
template <class T>
const T& aConst();

/// Whether objects are compared with ==.
template <class T, class = void>
struct Comparison : std::false_type {};
template <class T>
struct Comparison<T, std::void_t<decltype(aConst<T>() == aConst<T>())>> : std::true_type {};
template <class T>
constexpr bool isCompared = Comparison<T>::value;

// ---- Base types

static_assert(same<Boolean, bool> && same<Uint8, unsigned char> && same<Sint8, signed char>);
static_assert(same<Uint16, unsigned short> && same<Sint16, short> && same<Uint32, unsigned int> && same<Sint32, int>);
static_assert(same<Uint64, unsigned long long> && same<Sint64, long long>);
static_assert(same<Real32, float> && same<Real64, double>);
static_assert(converts<Char16, Uint16> && converts<Uint16, Char16> && isValue<Char16>);
static_assert(same<decltype(PEG_NOT_FOUND), const Uint32> && PEG_NOT_FOUND == 0xFFFFFFFFU);

static_assert(CIMTYPE_BOOLEAN == 0 && CIMTYPE_UINT8 == 1 && CIMTYPE_SINT8 == 2 && CIMTYPE_UINT16 == 3);
static_assert(CIMTYPE_SINT16 == 4 && CIMTYPE_UINT32 == 5 && CIMTYPE_SINT32 == 6 && CIMTYPE_UINT64 == 7);
static_assert(CIMTYPE_SINT64 == 8 && CIMTYPE_REAL32 == 9 && CIMTYPE_REAL64 == 10 && CIMTYPE_CHAR16 == 11);
static_assert(CIMTYPE_STRING == 12 && CIMTYPE_DATETIME == 13 && CIMTYPE_REFERENCE == 14);
static_assert(CIMTYPE_OBJECT == 15 && CIMTYPE_INSTANCE == 16);
static_assert(is<const char*, CIMType>(&cimTypeToString));

static_assert(isValue<String> && converts<String, const char*> && made<String, const char*, Uint32>);
static_assert(reads<String, Uint32>(&String::size) && reads<String, CString>(&String::getCString));
static_assert(changes<String, String&, const String&>(&String::append) && changes<String, void>(&String::clear));
static_assert(is<Boolean, const String&, const String&>(&String::equal));
static_assert(is<Boolean, const String&, const String&>(&String::equalNoCase));
static_assert(same<decltype(String::EMPTY), const String> && isCompared<String>);
static_assert(same<decltype(aConst<String>() != aConst<String>()), bool>);
static_assert(is<bool, const String&, const String&>(&operator<) &&
              is<bool, const String&, const String&>(&operator<=));
static_assert(is<bool, const String&, const String&>(&operator>) &&
              is<bool, const String&, const String&>(&operator>=));
static_assert(is<String, const String&, const String&>(&operator+));
static_assert(same<decltype(an<String>().assign(aConst<String>())), String&>);
static_assert(same<decltype(String::compare(aConst<String>(), aConst<String>())), int>);
static_assert(same<decltype(String::compare(aConst<String>(), aConst<String>(), Uint32())), int>);
static_assert(same<decltype(String::compareNoCase(aConst<String>(), aConst<String>())), int>);
static_assert(same<decltype(aConst<String>().find(Char16('a'))), Uint32>);
static_assert(same<decltype(aConst<String>().find(Uint32(), Char16('a'))), Uint32>);
static_assert(same<decltype(aConst<String>().find(aConst<String>())), Uint32>);
static_assert(same<decltype(aConst<String>().reverseFind(Char16('a'))), Uint32>);
static_assert(same<decltype(aConst<String>().subString(Uint32())), String>);
static_assert(same<decltype(aConst<String>().subString(Uint32(), Uint32())), String>);
static_assert(same<decltype(an<String>().remove(Uint32())), void>);
static_assert(same<decltype(an<String>().remove(Uint32(), Uint32())), void>);
static_assert(same<decltype(an<String>().toLower()), void> && same<decltype(an<String>().toUpper()), void>);
static_assert(same<decltype(an<String>().reserveCapacity(Uint32())), void>);
static_assert(is<std::ostream&, std::ostream&, const String&>(&operator<<));
static_assert(isValue<CString> && converts<const char*, CString>);

template <class T>
constexpr bool isArray =
    isValue<Array<T>> && made<Array<T>, Uint32> && !converts<Array<T>, Uint32> &&
    reads<Array<T>, Uint32>(&Array<T>::size) && reads<Array<T>, const T*>(&Array<T>::getData) &&
    changes<Array<T>, T&, Uint32>(&Array<T>::operator[]) && reads<Array<T>, const T&, Uint32>(&Array<T>::operator[]) &&
    changes<Array<T>, void, const T&>(&Array<T>::append) && changes<Array<T>, void>(&Array<T>::clear) &&
    changes<Array<T>, void, Uint32>(&Array<T>::reserveCapacity) && changes<Array<T>, void, Array<T>&>(&Array<T>::swap);
template <class... T>
constexpr bool areArrays = (isArray<T> && ...);
static_assert(areArrays<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32, Real64, Char16>);
static_assert(areArrays<String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance, CIMClass, CIMName, CIMKeyBinding>);
static_assert(isArray<CIMQualifierDecl>);

// ---- Values of the model

template <class Name>
constexpr bool isName = isValue<Name> && converts<Name, const String&, const char*> && isCompared<Name> &&
                        reads<Name, const String&>(&Name::getString) && reads<Name, Boolean>(&Name::isNull) &&
                        reads<Name, Boolean, const Name&>(&Name::equal) && is<Boolean, const String&>(&Name::legal);
static_assert(isName<CIMName> && isName<CIMNamespaceName>);

template <class... T>
constexpr bool areHeld = ((converts<CIMValue, T, Array<T>> && same<decltype(aConst<CIMValue>().get(an<T>())), void> &&
                           same<decltype(aConst<CIMValue>().get(an<Array<T>>())), void> &&
                           same<decltype(an<CIMValue>().set(aConst<T>())), void> &&
                           same<decltype(an<CIMValue>().set(aConst<Array<T>>())), void>)&&...);
static_assert(areHeld<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32, Real64, Char16>);
static_assert(areHeld<String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance>);
static_assert(isValue<CIMValue> && made<CIMValue, CIMType, Boolean> && made<CIMValue, CIMType, Boolean, Uint32>);
static_assert(reads<CIMValue, CIMType>(&CIMValue::getType) && reads<CIMValue, Boolean>(&CIMValue::isArray));
static_assert(reads<CIMValue, Boolean>(&CIMValue::isNull) && reads<CIMValue, Uint32>(&CIMValue::getArraySize));
static_assert(changes<CIMValue, void, CIMType, Boolean, Uint32>(&CIMValue::setNullValue));
static_assert(reads<CIMValue, Boolean, const CIMValue&>(&CIMValue::equal) && isCompared<CIMValue>);
static_assert(same<decltype(aConst<CIMValue>() != aConst<CIMValue>()), bool>);
static_assert(reads<CIMValue, String>(&CIMValue::toString));
static_assert(changes<CIMValue, void, const CIMValue&>(&CIMValue::assign));
static_assert(changes<CIMValue, void>(&CIMValue::clear));
static_assert(reads<CIMValue, Boolean, const CIMValue&>(&CIMValue::typeCompatible));

static_assert(isValue<CIMFlavor>);
static_assert(changes<CIMFlavor, void, const CIMFlavor&>(&CIMFlavor::addFlavor));
static_assert(changes<CIMFlavor, void, const CIMFlavor&>(&CIMFlavor::removeFlavor));
static_assert(reads<CIMFlavor, Boolean, const CIMFlavor&>(&CIMFlavor::hasFlavor));
static_assert(reads<CIMFlavor, Boolean, const CIMFlavor&>(&CIMFlavor::equal));
static_assert(reads<CIMFlavor, String>(&CIMFlavor::toString));
static_assert(same<decltype(CIMFlavor::NONE + CIMFlavor::DEFAULTS), CIMFlavor>);

static_assert(isValue<CIMScope>);
static_assert(changes<CIMScope, void, const CIMScope&>(&CIMScope::addScope));
static_assert(reads<CIMScope, Boolean, const CIMScope&>(&CIMScope::hasScope));
static_assert(reads<CIMScope, Boolean, const CIMScope&>(&CIMScope::equal));
static_assert(reads<CIMScope, String>(&CIMScope::toString));
static_assert(same<decltype(CIMScope::NONE + CIMScope::ANY), CIMScope>);

static_assert(isValue<CIMDateTime> && made<CIMDateTime, const String&> && isCompared<CIMDateTime>);
static_assert(converts<String, decltype(std::declval<const CIMDateTime>().toString())>);
static_assert(reads<CIMDateTime, Boolean>(&CIMDateTime::isInterval));
static_assert(reads<CIMDateTime, Boolean, const CIMDateTime&>(&CIMDateTime::equal));
static_assert(reads<CIMDateTime, Boolean>(&CIMDateTime::isTimeStamp));
static_assert(reads<CIMDateTime, Uint64>(&CIMDateTime::toMicroSeconds));
static_assert(is<Sint64, CIMDateTime, CIMDateTime>(&CIMDateTime::getDifference));
static_assert(is<CIMDateTime>(&CIMDateTime::getCurrentDateTime));
static_assert(changes<CIMDateTime, void, const String&>(&CIMDateTime::set));
static_assert(changes<CIMDateTime, void, Uint32, Uint32, Uint32, Uint32, Uint32, Uint32>(&CIMDateTime::setInterval));
static_assert(changes<CIMDateTime, void, Uint32, Uint32, Uint32, Uint32, Uint32, Uint32, Uint32, Uint32, Sint32>(
    &CIMDateTime::setTimeStamp));
static_assert(changes<CIMDateTime, void>(&CIMDateTime::clear));

static_assert(CIMKeyBinding::BOOLEAN == 0 && CIMKeyBinding::STRING == 1 && CIMKeyBinding::NUMERIC == 2);
static_assert(CIMKeyBinding::REFERENCE == 3 && std::is_enum_v<CIMKeyBinding::Type>);
static_assert(isValue<CIMKeyBinding> && made<CIMKeyBinding, const CIMName&, const String&, CIMKeyBinding::Type>);
static_assert(reads<CIMKeyBinding, const CIMName&>(&CIMKeyBinding::getName));
static_assert(reads<CIMKeyBinding, const String&>(&CIMKeyBinding::getValue));
static_assert(reads<CIMKeyBinding, CIMKeyBinding::Type>(&CIMKeyBinding::getType));
static_assert(same<decltype(an<CIMKeyBinding>().equal(an<CIMKeyBinding>())), Boolean>);

static_assert(isValue<CIMObjectPath> && converts<CIMObjectPath, const String&, const char*>);
static_assert(made<CIMObjectPath, const String&, const CIMNamespaceName&, const CIMName&>);
static_assert(made<CIMObjectPath, const String&, const CIMNamespaceName&, const CIMName&, const Array<CIMKeyBinding>&>);
static_assert(reads<CIMObjectPath, const String&>(&CIMObjectPath::getHost));
static_assert(reads<CIMObjectPath, const CIMNamespaceName&>(&CIMObjectPath::getNameSpace));
static_assert(reads<CIMObjectPath, const CIMName&>(&CIMObjectPath::getClassName));
static_assert(reads<CIMObjectPath, const Array<CIMKeyBinding>&>(&CIMObjectPath::getKeyBindings));
static_assert(reads<CIMObjectPath, String>(&CIMObjectPath::toString) && isCompared<CIMObjectPath>);
static_assert(reads<CIMObjectPath, Boolean, const CIMObjectPath&>(&CIMObjectPath::identical));
static_assert(changes<CIMObjectPath, void>(&CIMObjectPath::clear));
static_assert(changes<CIMObjectPath, void, const String&>(&CIMObjectPath::set));
static_assert(changes<CIMObjectPath, void, const String&>(&CIMObjectPath::setHost));
static_assert(changes<CIMObjectPath, void, const CIMNamespaceName&>(&CIMObjectPath::setNameSpace));
static_assert(changes<CIMObjectPath, void, const CIMName&>(&CIMObjectPath::setClassName));
static_assert(changes<CIMObjectPath, void, const Array<CIMKeyBinding>&>(&CIMObjectPath::setKeyBindings));
static_assert(reads<CIMObjectPath, Uint32>(&CIMObjectPath::makeHashCode));

static_assert(isValue<CIMPropertyList> && converts<CIMPropertyList, const Array<CIMName>&>);
static_assert(reads<CIMPropertyList, Boolean>(&CIMPropertyList::isNull));
static_assert(reads<CIMPropertyList, Uint32>(&CIMPropertyList::size));
static_assert(converts<const CIMName&, decltype(aConst<CIMPropertyList>()[0])>);
static_assert(changes<CIMPropertyList, void, const Array<CIMName>&>(&CIMPropertyList::set));
static_assert(same<decltype(an<CIMPropertyList>().append(aConst<CIMName>())), void>);
static_assert(changes<CIMPropertyList, void>(&CIMPropertyList::clear));
static_assert(reads<CIMPropertyList, Boolean, const CIMName&>(&CIMPropertyList::contains));
static_assert(converts<Array<CIMName>, decltype(aConst<CIMPropertyList>().getPropertyNameArray())>);
static_assert(reads<CIMPropertyList, String>(&CIMPropertyList::toString));

// ---- Handles of the model

template <class Handle>
constexpr bool isHandle =
    isValue<Handle> && reads<Handle, Handle>(&Handle::clone) && reads<Handle, Boolean>(&Handle::isUninitialized);
/// What has a name, a type and an array-ness.
template <class Handle>
constexpr bool isTyped = reads<Handle, const CIMName&>(&Handle::getName) && reads<Handle, CIMType>(&Handle::getType) &&
                         reads<Handle, Boolean>(&Handle::isArray);
template <class Handle>
constexpr bool hasQualifiers =
    reads<Handle, Uint32>(&Handle::getQualifierCount) && changes<Handle, CIMQualifier, Uint32>(&Handle::getQualifier) &&
    reads<Handle, CIMConstQualifier, Uint32>(&Handle::getQualifier) &&
    reads<Handle, Uint32, const CIMName&>(&Handle::findQualifier);
template <class Handle>
constexpr bool isQualified =
    hasQualifiers<Handle> && changes<Handle, Handle&, const CIMQualifier&>(&Handle::addQualifier);
template <class Handle>
constexpr bool hasProperties =
    reads<Handle, Uint32>(&Handle::getPropertyCount) && changes<Handle, CIMProperty, Uint32>(&Handle::getProperty) &&
    reads<Handle, CIMConstProperty, Uint32>(&Handle::getProperty) &&
    reads<Handle, Uint32, const CIMName&>(&Handle::findProperty);
template <class Handle>
constexpr bool takesProperties =
    hasProperties<Handle> && changes<Handle, Handle&, const CIMProperty&>(&Handle::addProperty);
/// What has a class's name and a path.
template <class Handle>
constexpr bool hasPath =
    reads<Handle, const CIMName&>(&Handle::getClassName) && reads<Handle, const CIMObjectPath&>(&Handle::getPath) &&
    changes<Handle, void, const CIMObjectPath&>(&Handle::setPath);

static_assert(isHandle<CIMQualifier> && isTyped<CIMQualifier>);
static_assert(made<CIMQualifier, CIMName, CIMValue> && made<CIMQualifier, CIMName, CIMValue, CIMFlavor> &&
              made<CIMQualifier, CIMName, CIMValue, CIMFlavor, Boolean>);
static_assert(reads<CIMQualifier, const CIMValue&>(&CIMQualifier::getValue));
static_assert(reads<CIMQualifier, const CIMFlavor&>(&CIMQualifier::getFlavor));
static_assert(reads<CIMQualifier, Boolean>(&CIMQualifier::getPropagated));

static_assert(isHandle<CIMQualifierDecl> && isTyped<CIMQualifierDecl>);
static_assert(made<CIMQualifierDecl, CIMName, CIMValue, CIMScope> &&
              made<CIMQualifierDecl, CIMName, CIMValue, CIMScope, CIMFlavor> &&
              made<CIMQualifierDecl, CIMName, CIMValue, CIMScope, CIMFlavor, Uint32>);
static_assert(reads<CIMQualifierDecl, const CIMValue&>(&CIMQualifierDecl::getValue));
static_assert(reads<CIMQualifierDecl, const CIMScope&>(&CIMQualifierDecl::getScope));
static_assert(reads<CIMQualifierDecl, const CIMFlavor&>(&CIMQualifierDecl::getFlavor));
static_assert(reads<CIMQualifierDecl, Uint32>(&CIMQualifierDecl::getArraySize));

static_assert(isHandle<CIMProperty> && isTyped<CIMProperty> && isQualified<CIMProperty>);
static_assert(made<CIMProperty, CIMName, CIMValue> && made<CIMProperty, CIMName, CIMValue, Uint32> &&
              made<CIMProperty, CIMName, CIMValue, Uint32, CIMName> &&
              made<CIMProperty, CIMName, CIMValue, Uint32, CIMName, CIMName> &&
              made<CIMProperty, CIMName, CIMValue, Uint32, CIMName, CIMName, Boolean>);
static_assert(reads<CIMProperty, const CIMValue&>(&CIMProperty::getValue));
static_assert(reads<CIMProperty, Uint32>(&CIMProperty::getArraySize));
static_assert(reads<CIMProperty, const CIMName&>(&CIMProperty::getReferenceClassName));
static_assert(reads<CIMProperty, const CIMName&>(&CIMProperty::getClassOrigin));
static_assert(reads<CIMProperty, Boolean>(&CIMProperty::getPropagated));

static_assert(isHandle<CIMParameter> && isTyped<CIMParameter> && isQualified<CIMParameter>);
static_assert(made<CIMParameter, CIMName, CIMType> && made<CIMParameter, CIMName, CIMType, Boolean> &&
              made<CIMParameter, CIMName, CIMType, Boolean, Uint32> &&
              made<CIMParameter, CIMName, CIMType, Boolean, Uint32, CIMName>);
static_assert(reads<CIMParameter, Uint32>(&CIMParameter::getArraySize));
static_assert(reads<CIMParameter, const CIMName&>(&CIMParameter::getReferenceClassName));

static_assert(isHandle<CIMMethod> && isQualified<CIMMethod>);
static_assert(made<CIMMethod, CIMName, CIMType> && made<CIMMethod, CIMName, CIMType, CIMName> &&
              made<CIMMethod, CIMName, CIMType, CIMName, Boolean>);
static_assert(reads<CIMMethod, const CIMName&>(&CIMMethod::getName));
static_assert(reads<CIMMethod, CIMType>(&CIMMethod::getType));
static_assert(reads<CIMMethod, const CIMName&>(&CIMMethod::getClassOrigin));
static_assert(reads<CIMMethod, Boolean>(&CIMMethod::getPropagated));
static_assert(changes<CIMMethod, CIMMethod&, const CIMParameter&>(&CIMMethod::addParameter));
static_assert(reads<CIMMethod, Uint32>(&CIMMethod::getParameterCount));
static_assert(changes<CIMMethod, CIMParameter, Uint32>(&CIMMethod::getParameter));
static_assert(reads<CIMMethod, CIMConstParameter, Uint32>(&CIMMethod::getParameter));

static_assert(isHandle<CIMClass> && hasPath<CIMClass> && isQualified<CIMClass> && takesProperties<CIMClass>);
static_assert(reads<CIMClass, void, Array<CIMName>&>(&CIMClass::getKeyNames));
static_assert(reads<CIMClass, Boolean>(&CIMClass::hasKeys));
static_assert(made<CIMClass, CIMName> && made<CIMClass, CIMName, CIMName> && made<CIMClass, const CIMObject&>);
static_assert(reads<CIMClass, const CIMName&>(&CIMClass::getSuperClassName));
static_assert(reads<CIMClass, Boolean>(&CIMClass::isAssociation) && reads<CIMClass, Boolean>(&CIMClass::isAbstract));
static_assert(changes<CIMClass, CIMClass&, const CIMMethod&>(&CIMClass::addMethod));
static_assert(reads<CIMClass, Uint32>(&CIMClass::getMethodCount));
static_assert(changes<CIMClass, CIMMethod, Uint32>(&CIMClass::getMethod));
static_assert(reads<CIMClass, CIMConstMethod, Uint32>(&CIMClass::getMethod));
static_assert(reads<CIMClass, Uint32, const CIMName&>(&CIMClass::findMethod));

static_assert(isHandle<CIMInstance> && hasPath<CIMInstance> && isQualified<CIMInstance> &&
              takesProperties<CIMInstance>);
static_assert(reads<CIMInstance, CIMObjectPath, const CIMClass&>(&CIMInstance::buildPath));
static_assert(made<CIMInstance, CIMName> && made<CIMInstance, const CIMObject&>);

static_assert(isHandle<CIMObject> && hasPath<CIMObject> && converts<CIMObject, CIMClass, CIMInstance>);
static_assert(hasQualifiers<CIMObject> && hasProperties<CIMObject> && reads<CIMObject, String>(&CIMObject::toString));
static_assert(!converts<CIMClass, CIMObject> && !converts<CIMInstance, CIMObject>, "each way back may throw");
static_assert(reads<CIMObject, Boolean>(&CIMObject::isClass) && reads<CIMObject, Boolean>(&CIMObject::isInstance));

/// The parts of const objects, and what they tell of themselves. Compiled, not run.
[[maybe_unused]] void lookAtParts(const CIMClass& cimClass, const CIMInstance& instance, const CIMObject& object) {
    CIMConstProperty property = cimClass.getProperty(0);
    property = instance.getProperty(0);
    property = object.getProperty(0);
    const CIMConstMethod method = cimClass.getMethod(0);
    const CIMConstParameter parameter = method.getParameter(0);
    CIMConstQualifier qualifier = cimClass.getQualifier(0);
    qualifier = instance.getQualifier(0);
    qualifier = object.getQualifier(0);
    qualifier = method.getQualifier(method.findQualifier("Q"));
    qualifier = parameter.getQualifier(parameter.findQualifier("Q"));
    qualifier = property.getQualifier(property.findQualifier("Q"));
    Array<CIMName> names;
    for (const CIMName& name :
         {property.getName(), property.getReferenceClassName(), property.getClassOrigin(), method.getName(),
          method.getClassOrigin(), parameter.getName(), parameter.getReferenceClassName(), qualifier.getName()}) {
        names.append(name);
    }
    CIMType type = property.getType();
    type = method.getType();
    type = parameter.getType();
    type = qualifier.getType();
    Boolean flag = type == CIMTYPE_STRING || property.isArray() || parameter.isArray() || qualifier.isArray();
    flag = property.getPropagated() || method.getPropagated() || qualifier.getPropagated() || flag;
    flag = property.isUninitialized() || method.isUninitialized() || parameter.isUninitialized() ||
           qualifier.isUninitialized() || flag;
    Uint32 count = property.getArraySize() + parameter.getArraySize() + method.getParameterCount();
    count += property.getQualifierCount() + parameter.getQualifierCount() + method.getQualifierCount();
    CIMValue value = property.getValue();
    value = qualifier.getValue();
    flag = qualifier.getFlavor().hasFlavor(CIMFlavor::TOSUBCLASS) || flag;
    CIMProperty ownProperty = property.clone();
    CIMMethod ownMethod = method.clone();
    CIMParameter ownParameter = parameter.clone();
    CIMQualifier ownQualifier = qualifier.clone();
}

// ---- Errors

static_assert(!std::is_base_of_v<std::exception, Exception> && made<Exception, const String&>);
static_assert(reads<Exception, const String&>(&Exception::getMessage));
static_assert(made<ContentLanguageList, decltype(aConst<Exception>().getContentLanguages())>);
static_assert(same<decltype(an<Exception>().setContentLanguages(aConst<ContentLanguageList>())), void>);
static_assert(same<decltype(aConst<CIMException>().getErrorCount()), Uint32>);
static_assert(made<CIMConstInstance, decltype(aConst<CIMException>().getError(Uint32()))>);
template <class... Errors>
constexpr bool areErrors = ((std::is_base_of_v<Exception, Errors> && std::is_copy_constructible_v<Errors>)&&...);
static_assert(areErrors<CIMException, UninitializedObjectException, IndexOutOfBoundsException, TypeMismatchException,
                        InvalidNameException, InvalidNamespaceNameException, InvalidDateTimeFormatException>);
static_assert(areErrors<DateTimeOutOfRangeException, MalformedObjectNameException, DynamicCastFailedException,
                        CannotConnectException, InvalidLocatorException, AlreadyConnectedException>);
static_assert(areErrors<AlreadyExistsException, NullPointer>);
static_assert(
    areErrors<NotConnectedException, ConnectionTimeoutException, SSLException, CIMClientMalformedHTTPException,
              CIMClientHTTPErrorException, CIMClientXmlException, CIMClientResponseException>);
static_assert(made<CIMException, CIMStatusCode, const String&> &&
              reads<CIMException, CIMStatusCode>(&CIMException::getCode));
static_assert(reads<CIMClientHTTPErrorException, Uint32>(&CIMClientHTTPErrorException::getCode));
static_assert(reads<CIMClientHTTPErrorException, const String&>(&CIMClientHTTPErrorException::getCIMError));
static_assert(reads<CIMClientHTTPErrorException, const String&>(&CIMClientHTTPErrorException::getCIMErrorDetail));

static_assert(CIM_ERR_SUCCESS == 0 && CIM_ERR_FAILED == 1 && CIM_ERR_ACCESS_DENIED == 2);
static_assert(CIM_ERR_INVALID_NAMESPACE == 3 && CIM_ERR_INVALID_PARAMETER == 4 && CIM_ERR_INVALID_CLASS == 5);
static_assert(CIM_ERR_NOT_FOUND == 6 && CIM_ERR_NOT_SUPPORTED == 7 && CIM_ERR_CLASS_HAS_CHILDREN == 8);
static_assert(CIM_ERR_CLASS_HAS_INSTANCES == 9 && CIM_ERR_INVALID_SUPERCLASS == 10 && CIM_ERR_ALREADY_EXISTS == 11);
static_assert(CIM_ERR_NO_SUCH_PROPERTY == 12 && CIM_ERR_TYPE_MISMATCH == 13);
static_assert(CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED == 14 && CIM_ERR_INVALID_QUERY == 15);
static_assert(CIM_ERR_METHOD_NOT_AVAILABLE == 16 && CIM_ERR_METHOD_NOT_FOUND == 17);
static_assert(CIM_ERR_NAMESPACE_NOT_EMPTY == 20 && CIM_ERR_INVALID_ENUMERATION_CONTEXT == 21);
static_assert(CIM_ERR_INVALID_OPERATION_TIMEOUT == 22 && CIM_ERR_PULL_HAS_BEEN_ABANDONED == 23);
static_assert(CIM_ERR_PULL_CANNOT_BE_ABANDONED == 24 && CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED == 25);
static_assert(CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED == 26 && CIM_ERR_SERVER_LIMITS_EXCEEDED == 27);
static_assert(CIM_ERR_SERVER_IS_SHUTTING_DOWN == 28);

// ---- The client

static_assert(same<SSLCertificateVerifyFunction, Boolean(SSLCertificateInfo&)>);
static_assert(made<SSLContext, const String&, SSLCertificateVerifyFunction*> &&
              std::is_copy_constructible_v<SSLContext>);
static_assert(made<SSLContext, const String&, SSLCertificateVerifyFunction*, const String&>);
static_assert(reads<SSLCertificateInfo, const String&>(&SSLCertificateInfo::getSubjectName));
static_assert(reads<SSLCertificateInfo, const String&>(&SSLCertificateInfo::getIssuerName));
static_assert(reads<SSLCertificateInfo, Uint32>(&SSLCertificateInfo::getErrorDepth));
static_assert(reads<SSLCertificateInfo, Sint32>(&SSLCertificateInfo::getErrorCode));
static_assert(reads<SSLCertificateInfo, const String&>(&SSLCertificateInfo::getErrorString));
static_assert(reads<SSLCertificateInfo, CIMDateTime>(&SSLCertificateInfo::getNotBefore));
static_assert(reads<SSLCertificateInfo, CIMDateTime>(&SSLCertificateInfo::getNotAfter));
static_assert(reads<SSLCertificateInfo, long>(&SSLCertificateInfo::getSerialNumber));
static_assert(converts<Uint32, decltype(aConst<SSLCertificateInfo>().getVersionNumber())>);
static_assert(reads<SSLCertificateInfo, String>(&SSLCertificateInfo::toString));

static_assert(std::is_default_constructible_v<CIMClient> && !std::is_copy_constructible_v<CIMClient> &&
              !std::is_copy_assignable_v<CIMClient>);
static_assert(changes<CIMClient, void, Uint32>(&CIMClient::setTimeout));
static_assert(reads<CIMClient, Uint32>(&CIMClient::getTimeout));
static_assert(changes<CIMClient, void, const String&, Uint32, const String&, const String&>(&CIMClient::connect));
static_assert(changes<CIMClient, void, const String&, Uint32, const SSLContext&, const String&, const String&>(
    &CIMClient::connect));
static_assert(changes<CIMClient, void>(&CIMClient::disconnect));

using NameSpace = const CIMNamespaceName&;
using Name = const CIMName&;
using Path = const CIMObjectPath&;
using Text = const String&;
using List = const CIMPropertyList&;
template <class Result, class... Arguments>
constexpr bool asks(Result (CIMClient::*)(NameSpace, Arguments...)) {
    return true;
}
static_assert(asks<CIMClass, Name, Boolean, Boolean, Boolean, List>(&CIMClient::getClass));
static_assert(asks<Array<CIMClass>, Name, Boolean, Boolean, Boolean, Boolean>(&CIMClient::enumerateClasses));
static_assert(asks<Array<CIMName>, Name, Boolean>(&CIMClient::enumerateClassNames));
static_assert(asks<CIMInstance, Path, Boolean, Boolean, Boolean, List>(&CIMClient::getInstance));
static_assert(asks<Array<CIMInstance>, Name, Boolean, Boolean, Boolean, Boolean, List>(&CIMClient::enumerateInstances));
static_assert(asks<Array<CIMObjectPath>, Name>(&CIMClient::enumerateInstanceNames));
static_assert(asks<Array<CIMObject>, Path, Name, Name, Text, Text, Boolean, Boolean, List>(&CIMClient::associators));
static_assert(asks<Array<CIMObjectPath>, Path, Name, Name, Text, Text>(&CIMClient::associatorNames));
static_assert(asks<Array<CIMObject>, Path, Name, Text, Boolean, Boolean, List>(&CIMClient::references));
static_assert(asks<Array<CIMObjectPath>, Path, Name, Text>(&CIMClient::referenceNames));
static_assert(asks<CIMQualifierDecl, Name>(&CIMClient::getQualifier));
static_assert(asks<Array<CIMQualifierDecl>>(&CIMClient::enumerateQualifiers));
static_assert(asks<CIMValue, Path, Name>(&CIMClient::getProperty));
static_assert(asks<Array<CIMObject>, Text, Text>(&CIMClient::execQuery));

static_assert(made<AcceptLanguageList, decltype(aConst<CIMClient>().getRequestAcceptLanguages())>);
static_assert(changes<CIMClient, void, const AcceptLanguageList&>(&CIMClient::setRequestAcceptLanguages));
static_assert(
    changes<CIMClient, void, ClientOpPerformanceDataHandler&>(&CIMClient::registerClientOpPerformanceDataHandler));
static_assert(changes<CIMClient, void>(&CIMClient::deregisterClientOpPerformanceDataHandler));
using Performance = ClientOpPerformanceData;
static_assert(same<decltype(Performance::operationType), CIMOperationType>);
static_assert(same<decltype(Performance::serverTimeKnown), Boolean>);
static_assert(same<decltype(Performance::serverTime), Uint64> && same<decltype(Performance::roundTripTime), Uint64>);
static_assert(same<decltype(Performance::requestSize), Uint64> && same<decltype(Performance::responseSize), Uint64>);
static_assert(std::is_abstract_v<ClientOpPerformanceDataHandler> &&
              std::has_virtual_destructor_v<ClientOpPerformanceDataHandler>);
static_assert(changes<ClientOpPerformanceDataHandler, void, const Performance&>(
    &ClientOpPerformanceDataHandler::handleClientOpPerformanceData));

/// Every operation with each number of arguments that callers may leave out, and texts as literals. Compiled, not run;
/// the values of the defaults are seen in what is sent.
[[maybe_unused]] void callEveryOperation(CIMClient& client, const SSLContext& ssl) {
    client.connect("localhost", 5988, "", "");
    client.connect("localhost", 5989, ssl, "user", "password");
    const CIMNamespaceName nameSpace("root/cimv2");
    const CIMPropertyList list;
    CIMClass cimClass = client.getClass(nameSpace, "A");
    cimClass = client.getClass(nameSpace, "A", true);
    cimClass = client.getClass(nameSpace, "A", true, true);
    cimClass = client.getClass(nameSpace, "A", true, true, true);
    cimClass = client.getClass(nameSpace, "A", true, true, true, list);
    Array<CIMClass> classes = client.enumerateClasses(nameSpace);
    classes = client.enumerateClasses(nameSpace, "A");
    classes = client.enumerateClasses(nameSpace, "A", true);
    classes = client.enumerateClasses(nameSpace, "A", true, true);
    classes = client.enumerateClasses(nameSpace, "A", true, true, true);
    Array<CIMName> names = client.enumerateClassNames(nameSpace);
    names = client.enumerateClassNames(nameSpace, "A");
    CIMInstance instance = client.getInstance(nameSpace, "A.K=1");
    instance = client.getInstance(nameSpace, "A.K=1", true);
    instance = client.getInstance(nameSpace, "A.K=1", true, true);
    instance = client.getInstance(nameSpace, "A.K=1", true, true, true);
    Array<CIMInstance> instances = client.enumerateInstances(nameSpace, "A");
    instances = client.enumerateInstances(nameSpace, "A", true);
    instances = client.enumerateInstances(nameSpace, "A", true, true);
    instances = client.enumerateInstances(nameSpace, "A", true, true, true);
    instances = client.enumerateInstances(nameSpace, "A", true, true, true, true);
    instances = client.enumerateInstances(nameSpace, "A", true, true, true, true, names);
    Array<CIMObject> objects = client.associators(nameSpace, "A");
    objects = client.associators(nameSpace, "A", "B");
    objects = client.associators(nameSpace, "A", "B", "C");
    objects = client.associators(nameSpace, "A", "B", "C", "role");
    objects = client.associators(nameSpace, "A", "B", "C", "role", "result");
    objects = client.associators(nameSpace, "A", "B", "C", "role", "result", true);
    objects = client.associators(nameSpace, "A", "B", "C", "role", "result", true, true);
    objects = client.references(nameSpace, "A");
    objects = client.references(nameSpace, "A", "B");
    objects = client.references(nameSpace, "A", "B", "role");
    objects = client.references(nameSpace, "A", "B", "role", true);
    objects = client.references(nameSpace, "A", "B", "role", true, true);
    Array<CIMObjectPath> paths = client.associatorNames(nameSpace, "A");
    paths = client.associatorNames(nameSpace, "A", "B");
    paths = client.associatorNames(nameSpace, "A", "B", "C");
    paths = client.associatorNames(nameSpace, "A", "B", "C", "role");
    paths = client.referenceNames(nameSpace, "A");
    paths = client.referenceNames(nameSpace, "A", "B");
}

// ---- Pulled enumerations

template <class Argument, class Number>
constexpr bool isArgument =
    isValue<Argument> && made<Argument, Number> && same<decltype(aConst<Argument>().getValue()), Number> &&
    same<decltype(aConst<Argument>().isNull()), Boolean> && same<decltype(an<Argument>().setValue(Number())), void> &&
    same<decltype(an<Argument>().setNullValue()), void> &&
    same<decltype(aConst<Argument>().equal(aConst<Argument>())), Boolean> &&
    same<decltype(aConst<Argument>().toString()), String>;
static_assert(isArgument<Uint32Arg, Uint32> && isArgument<Uint64Arg, Uint64>);
static_assert(isValue<CIMEnumerationContext> && changes<CIMEnumerationContext, void>(&CIMEnumerationContext::clear));

using Context = CIMEnumerationContext&;
using Seconds = const Uint32Arg&;
template <class Result, class... Arguments>
constexpr bool opens(Result (CIMClient::*)(Context, Boolean&, NameSpace, Arguments...)) {
    return true;
}
template <class Result>
constexpr bool pulls(Result (CIMClient::*)(Context, Boolean&, Uint32)) {
    return true;
}
using Instances = Array<CIMInstance>;
using Paths = Array<CIMObjectPath>;
static_assert(opens<Instances, Name, Boolean, Boolean, List, Text, Text, Seconds, Boolean, Uint32>(
    &CIMClient::openEnumerateInstances));
static_assert(opens<Paths, Name, Text, Text, Seconds, Boolean, Uint32>(&CIMClient::openEnumerateInstancePaths));
static_assert(opens<Instances, Path, Name, Text, Boolean, List, Text, Text, Seconds, Boolean, Uint32>(
    &CIMClient::openReferenceInstances));
static_assert(
    opens<Paths, Path, Name, Text, Text, Text, Seconds, Boolean, Uint32>(&CIMClient::openReferenceInstancePaths));
static_assert(opens<Instances, Path, Name, Name, Text, Text, Boolean, List, Text, Text, Seconds, Boolean, Uint32>(
    &CIMClient::openAssociatorInstances));
static_assert(opens<Paths, Path, Name, Name, Text, Text, Text, Text, Seconds, Boolean, Uint32>(
    &CIMClient::openAssociatorInstancePaths));
static_assert(
    opens<Instances, Text, Text, CIMClass&, Boolean, Seconds, Boolean, Uint32>(&CIMClient::openQueryInstances));
static_assert(pulls<Instances>(&CIMClient::pullInstancesWithPath) && pulls<Paths>(&CIMClient::pullInstancePaths));
static_assert(pulls<Instances>(&CIMClient::pullInstances));
static_assert(changes<CIMClient, void, Context>(&CIMClient::closeEnumeration));
static_assert(changes<CIMClient, Uint64Arg, Context>(&CIMClient::enumerationCount));

[[maybe_unused]] void callPulledEnumerations(CIMClient& client) {
    CIMEnumerationContext context;
    Boolean end = false;
    const CIMNamespaceName nameSpace("root/cimv2");
    const CIMPropertyList list;
    const Uint32Arg seconds(30);
    CIMClass cimClass;
    Array<CIMInstance> instances = client.openEnumerateInstances(context, end, nameSpace, "A");
    instances = client.openEnumerateInstances(context, end, nameSpace, "A", true, false, list, "DMTF:FQL", "K=1",
                                              seconds, false, 10);
    instances = client.openReferenceInstances(context, end, nameSpace, "A.K=1", "B", "role", false, list, "", "",
                                              seconds, false, 10);
    instances = client.openAssociatorInstances(context, end, nameSpace, "A.K=1", "B", "C", "role", "result", false,
                                               list, "", "", seconds, false, 10);
    instances = client.openQueryInstances(context, end, nameSpace, "WQL", "SELECT * FROM A", cimClass, true, seconds,
                                          false, 10);
    Array<CIMObjectPath> paths = client.openEnumerateInstancePaths(context, end, nameSpace, "A");
    paths = client.openEnumerateInstancePaths(context, end, nameSpace, "A", "", "", seconds, false, 10);
    paths =
        client.openReferenceInstancePaths(context, end, nameSpace, "A.K=1", "B", "role", "", "", seconds, false, 10);
    paths = client.openAssociatorInstancePaths(context, end, nameSpace, "A.K=1", "B", "C", "role", "result", "", "",
                                               seconds, false, 10);
    instances = client.pullInstancesWithPath(context, end, 10);
    instances = client.pullInstances(context, end, 10);
    paths = client.pullInstancePaths(context, end, 10);
    const Uint64Arg count = client.enumerationCount(context);
    if (!count.isNull()) {
        client.closeEnumeration(context);
    }
}

TEST(ApiSignatures, ANumberForAParameterMayBeNull) {
    Uint32Arg number;
    EXPECT_TRUE(number.isNull());
    EXPECT_EQ(number.getValue(), 0U);
    EXPECT_EQ(number.toString(), String("NULL"));
    number.setValue(0);
    EXPECT_FALSE(number.isNull());
    EXPECT_EQ(number.toString(), String("0"));
    EXPECT_FALSE(number.equal(Uint32Arg()));
    EXPECT_TRUE(number.equal(Uint32Arg(0)));
    number.setNullValue();
    EXPECT_TRUE(number.equal(Uint32Arg()));
    EXPECT_EQ(Uint64Arg(18446744073709551615ULL).toString(), String("18446744073709551615"));
}

TEST(ApiSignatures, LetExceptionsBeCaughtByTheirBaseAndOnlyByIt) {
    try {
        throw CIMException(CIM_ERR_FAILED, "x");
    } catch (const std::exception&) {
        FAIL() << "no std::exception was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.getMessage(), String("CIM_ERR_FAILED: x"));
    }
}

} // namespace
