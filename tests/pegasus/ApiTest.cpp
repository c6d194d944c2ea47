// What code that is written against the client API relies on at compile time.

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Common/CIMObject.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using namespace Pegasus;

template <class T, class U>
constexpr bool same = std::is_same_v<T, U>;

static_assert(same<Boolean, bool> && same<Uint8, unsigned char> && same<Sint8, signed char>);
static_assert(same<Uint16, unsigned short> && same<Sint16, short> && same<Uint32, unsigned int> && same<Sint32, int>);
static_assert(same<Uint64, unsigned long long> && same<Sint64, long long> && same<Real32, float> &&
              same<Real64, double>);
static_assert(std::is_convertible_v<Uint16, Char16> && std::is_convertible_v<Char16, Uint16>);
static_assert(PEG_NOT_FOUND == 0xFFFFFFFFU);

static_assert(CIMTYPE_BOOLEAN == 0 && CIMTYPE_UINT8 == 1 && CIMTYPE_SINT8 == 2 && CIMTYPE_UINT16 == 3);
static_assert(CIMTYPE_SINT16 == 4 && CIMTYPE_UINT32 == 5 && CIMTYPE_SINT32 == 6 && CIMTYPE_UINT64 == 7);
static_assert(CIMTYPE_SINT64 == 8 && CIMTYPE_REAL32 == 9 && CIMTYPE_REAL64 == 10 && CIMTYPE_CHAR16 == 11);
static_assert(CIMTYPE_STRING == 12 && CIMTYPE_DATETIME == 13 && CIMTYPE_REFERENCE == 14);
static_assert(CIMTYPE_OBJECT == 15 && CIMTYPE_INSTANCE == 16);

static_assert(CIM_ERR_SUCCESS == 0 && CIM_ERR_FAILED == 1 && CIM_ERR_NOT_FOUND == 6 && CIM_ERR_METHOD_NOT_FOUND == 17);
static_assert(CIM_ERR_NAMESPACE_NOT_EMPTY == 20 && CIM_ERR_SERVER_IS_SHUTTING_DOWN == 28);

static_assert(!std::is_base_of_v<std::exception, Exception>);
template <class Error>
constexpr bool isError = std::is_base_of_v<Exception, Error>&& std::is_copy_constructible_v<Error>;
static_assert(isError<CIMException> && isError<UninitializedObjectException> && isError<IndexOutOfBoundsException>);
static_assert(isError<TypeMismatchException> && isError<InvalidNameException> &&
              isError<InvalidNamespaceNameException>);
static_assert(isError<InvalidDateTimeFormatException> && isError<DateTimeOutOfRangeException>);
static_assert(isError<MalformedObjectNameException> && isError<CannotConnectException> &&
              isError<InvalidLocatorException>);
static_assert(isError<AlreadyConnectedException> && isError<NotConnectedException> &&
              isError<ConnectionTimeoutException>);
static_assert(isError<SSLException> && isError<CIMClientMalformedHTTPException> &&
              isError<CIMClientHTTPErrorException>);
static_assert(isError<CIMClientXmlException> && isError<CIMClientResponseException>);
static_assert(same<decltype(std::declval<Exception>().getMessage()), const String&>);

static_assert(std::is_convertible_v<const char*, String> && std::is_constructible_v<String, const char*, Uint32>);
static_assert(std::is_convertible_v<CString, const char*>);
static_assert(std::is_convertible_v<const char*, CIMName> && std::is_convertible_v<String, CIMName>);
static_assert(std::is_convertible_v<const char*, CIMNamespaceName> && std::is_convertible_v<String, CIMNamespaceName>);
static_assert(std::is_convertible_v<Array<CIMName>, CIMPropertyList>);
static_assert(std::is_constructible_v<CIMDateTime, String> && std::is_constructible_v<CIMObjectPath, String>);

// A text that loses its String would turn into a boolean.
static_assert(!std::is_constructible_v<CIMValue, const char*> && !std::is_constructible_v<CIMValue, const char (&)[2]>);
static_assert(std::is_constructible_v<CIMValue, CIMType, Boolean, Uint32>);
template <class... T>
constexpr bool areValues = ((std::is_convertible_v<T, CIMValue> && std::is_convertible_v<Array<T>, CIMValue>)&&...);
static_assert(areValues<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32, Real64, Char16,
                        String, CIMDateTime, CIMObjectPath, CIMInstance>);

template <class Handle>
constexpr bool
    isHandle = std::is_nothrow_default_constructible_v<Handle>&& std::is_nothrow_copy_constructible_v<Handle> &&
               sizeof(Handle) == sizeof(void*);
static_assert(isHandle<CIMQualifier> && isHandle<CIMQualifierDecl> && isHandle<CIMProperty> && isHandle<CIMParameter>);
static_assert(isHandle<CIMMethod> && isHandle<CIMClass> && isHandle<CIMInstance> && isHandle<CIMObject>);
static_assert(sizeof(CIMValue) <= 24, "instances are mostly values");

static_assert(!std::is_copy_constructible_v<CIMClient> && !std::is_copy_assignable_v<CIMClient>);
static_assert(same<SSLCertificateVerifyFunction, Boolean(SSLCertificateInfo&)>);
static_assert(std::is_constructible_v<SSLContext, String, SSLCertificateVerifyFunction*>);
static_assert(std::is_constructible_v<SSLContext, String, SSLCertificateVerifyFunction*, String>);

/// Every operation with the defaults that callers leave out. Compiled, not run.
[[maybe_unused]] void callEveryOperation(CIMClient& client, const SSLContext& ssl) {
    client.setTimeout(client.getTimeout());
    client.connect("localhost", 5988, "", "");
    client.connect("localhost", 5989, ssl, "user", "password");
    const CIMNamespaceName nameSpace("root/cimv2");
    CIMClass cimClass = client.getClass(nameSpace, "A");
    cimClass = client.getClass(nameSpace, "A", false, true, true, CIMPropertyList());
    const CIMQualifierDecl decl = client.getQualifier(nameSpace, "Key");
    Array<CIMName> names = client.enumerateClassNames(nameSpace);
    names = client.enumerateClassNames(nameSpace, "A", true);
    Array<CIMInstance> instances = client.enumerateInstances(nameSpace, "A");
    instances = client.enumerateInstances(nameSpace, "A", true, false, false, false, CIMPropertyList(names));
    client.disconnect();
}

TEST(ApiTest, ExceptionsAreCaughtByTheirBase) {
    try {
        throw CIMException(CIM_ERR_FAILED, "x");
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.getMessage(), String("CIM_ERR_FAILED: x"));
    }
}

} // namespace
