// What code that is written against the client API relies on at run time, beyond what the tests of each type say:
// the same rules for all handles, all defaults, all indices, all flags and all errors.

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Pegasus;

std::string text(const String& string) { return std::string(static_cast<const char*>(string.getCString())); }

// ---- Handles ----

/// Expects that using an object that was never initialised throws, whatever the operation.
template <class Handle>
void expectUninitialized(std::initializer_list<void (*)(Handle&)> operations) {
    int index = 0;
    for (const auto operation : operations) {
        Handle handle;
        EXPECT_THROW(operation(handle), UninitializedObjectException) << "operation " << index;
        ++index;
    }
}

template <class Handle>
void expectUninitializedQualifiers() {
    expectUninitialized<Handle>({[](Handle& h) { h.addQualifier(CIMQualifier("Q", CIMValue())); },
                                 [](Handle& h) { h.getQualifierCount(); }, [](Handle& h) { h.getQualifier(0); },
                                 [](Handle& h) { h.findQualifier("Q"); }});
}

template <class Handle>
void expectUninitializedProperties() {
    expectUninitialized<Handle>({[](Handle& h) { h.addProperty(CIMProperty("P", CIMValue())); },
                                 [](Handle& h) { h.getPropertyCount(); }, [](Handle& h) { h.getProperty(0); },
                                 [](Handle& h) { h.findProperty("P"); }, [](Handle& h) { h.getClassName(); },
                                 [](Handle& h) { h.getPath(); }, [](Handle& h) { h.setPath("A"); }});
}

TEST(ApiFacts, EveryOperationOnAnUninitialisedObjectThrows) {
    using Qualifier = CIMQualifier;
    expectUninitialized<Qualifier>({[](Qualifier& q) { q.getName(); }, [](Qualifier& q) { q.getType(); },
                                    [](Qualifier& q) { q.isArray(); }, [](Qualifier& q) { q.getValue(); },
                                    [](Qualifier& q) { q.getFlavor(); }, [](Qualifier& q) { q.getPropagated(); }});
    using Declaration = CIMQualifierDecl;
    expectUninitialized<Declaration>({[](Declaration& d) { d.getName(); }, [](Declaration& d) { d.getType(); },
                                      [](Declaration& d) { d.isArray(); }, [](Declaration& d) { d.getValue(); },
                                      [](Declaration& d) { d.getScope(); }, [](Declaration& d) { d.getFlavor(); },
                                      [](Declaration& d) { d.getArraySize(); }});
    using Property = CIMProperty;
    expectUninitialized<Property>({[](Property& p) { p.getName(); }, [](Property& p) { p.getValue(); },
                                   [](Property& p) { p.getType(); }, [](Property& p) { p.isArray(); },
                                   [](Property& p) { p.getArraySize(); },
                                   [](Property& p) { p.getReferenceClassName(); },
                                   [](Property& p) { p.getClassOrigin(); }, [](Property& p) { p.getPropagated(); }});
    expectUninitializedQualifiers<Property>();
    using Parameter = CIMParameter;
    expectUninitialized<Parameter>({[](Parameter& p) { p.getName(); }, [](Parameter& p) { p.getType(); },
                                    [](Parameter& p) { p.isArray(); }, [](Parameter& p) { p.getArraySize(); },
                                    [](Parameter& p) { p.getReferenceClassName(); }});
    expectUninitializedQualifiers<Parameter>();
    using Method = CIMMethod;
    expectUninitialized<Method>({[](Method& m) { m.getName(); }, [](Method& m) { m.getType(); },
                                 [](Method& m) { m.getClassOrigin(); }, [](Method& m) { m.getPropagated(); },
                                 [](Method& m) { m.addParameter(CIMParameter("P", CIMTYPE_UINT8)); },
                                 [](Method& m) { m.getParameterCount(); }, [](Method& m) { m.getParameter(0); }});
    expectUninitializedQualifiers<Method>();
    using Class = CIMClass;
    expectUninitialized<Class>(
        {[](Class& c) { c.getSuperClassName(); }, [](Class& c) { c.isAssociation(); }, [](Class& c) { c.isAbstract(); },
         [](Class& c) { c.addMethod(CIMMethod("M", CIMTYPE_UINT8)); }, [](Class& c) { c.getMethodCount(); },
         [](Class& c) { c.getMethod(0); }, [](Class& c) { c.findMethod("M"); }});
    expectUninitializedQualifiers<Class>();
    expectUninitializedProperties<Class>();
    expectUninitializedProperties<CIMInstance>();
    expectUninitializedQualifiers<CIMInstance>();
    using Object = CIMObject;
    expectUninitialized<Object>({[](Object& o) { o.isClass(); }, [](Object& o) { o.isInstance(); },
                                 [](Object& o) { o.getClassName(); }, [](Object& o) { o.getPath(); },
                                 [](Object& o) { o.setPath("A"); }, [](Object& o) { CIMClass{o}; },
                                 [](Object& o) { CIMInstance{o}; }, [](Object& o) { o.getPropertyCount(); },
                                 [](Object& o) { o.getProperty(0); }, [](Object& o) { o.findProperty("P"); },
                                 [](Object& o) { o.getQualifierCount(); }, [](Object& o) { o.getQualifier(0); },
                                 [](Object& o) { o.findQualifier("Q"); }, [](Object& o) { o.toString(); }});
}

/// Expects that a default-constructed handle alone is uninitialised, and has nothing that could be cloned.
template <class Handle>
void expectTold(const Handle& made) {
    EXPECT_FALSE(made.isUninitialized());
    EXPECT_FALSE(made.clone().isUninitialized());
    EXPECT_TRUE(Handle().isUninitialized());
    EXPECT_THROW(Handle().clone(), UninitializedObjectException);
}

TEST(ApiFacts, AHandleTellsWhetherItIsInitialised) {
    expectTold(CIMQualifier("Q", CIMValue()));
    expectTold(CIMQualifierDecl("Q", CIMValue(), CIMScope::ANY));
    expectTold(CIMProperty("P", CIMValue()));
    expectTold(CIMParameter("P", CIMTYPE_UINT8));
    expectTold(CIMMethod("M", CIMTYPE_UINT8));
    expectTold(CIMClass("A"));
    expectTold(CIMInstance(CIMName("A")));
    expectTold(CIMObject(CIMClass("A")));
}

TEST(ApiFacts, AnUninitialisedObjectCannotBePartOfAnother) {
    EXPECT_THROW(CIMClass("A").addQualifier(CIMQualifier()), UninitializedObjectException);
    EXPECT_THROW(CIMClass("A").addProperty(CIMProperty()), UninitializedObjectException);
    EXPECT_THROW(CIMClass("A").addMethod(CIMMethod()), UninitializedObjectException);
    EXPECT_THROW(CIMMethod("M", CIMTYPE_UINT8).addParameter(CIMParameter()), UninitializedObjectException);
    EXPECT_THROW(CIMInstance(CIMName("A")).addProperty(CIMProperty()), UninitializedObjectException);
}

template <class Handle>
void expectShared(Handle handle) {
    const Handle copy(handle);
    Handle assigned;
    assigned = handle;
    handle.addQualifier(CIMQualifier("Q", CIMValue()));
    EXPECT_EQ(copy.getQualifierCount(), 1U);
    EXPECT_EQ(assigned.getQualifierCount(), 1U);
}

TEST(ApiFacts, ACopyOfAHandleRefersToTheSameObject) {
    expectShared(CIMProperty("P", CIMValue()));
    expectShared(CIMParameter("P", CIMTYPE_UINT8));
    expectShared(CIMMethod("M", CIMTYPE_UINT8));
    expectShared(CIMClass("A"));
    expectShared(CIMInstance(CIMName("A")));

    CIMInstance instance(CIMName("A"));
    const CIMInstance copy(instance);
    instance.addProperty(CIMProperty("P", CIMValue(Uint8(1))));
    instance.setPath("A.P=1");
    EXPECT_EQ(copy.getPropertyCount(), 1U);
    EXPECT_EQ(copy.getPath(), CIMObjectPath("A.P=1"));
}

/// Expects that a clone has the content of its original and nothing that happens to that afterwards.
template <class Handle>
void expectCloned(Handle handle) {
    handle.addQualifier(CIMQualifier("Q", CIMValue(true)));
    const Handle clone = handle.clone();
    handle.addQualifier(CIMQualifier("R", CIMValue()));
    ASSERT_EQ(clone.getQualifierCount(), 1U);
    EXPECT_EQ(clone.getQualifier(0).getValue(), CIMValue(true));
}

TEST(ApiFacts, ACloneIsOneOfItsOwn) {
    expectCloned(CIMProperty("P", CIMValue()));
    expectCloned(CIMParameter("P", CIMTYPE_UINT8));
    expectCloned(CIMMethod("M", CIMTYPE_UINT8));
    expectCloned(CIMClass("A"));
    expectCloned(CIMInstance(CIMName("A")));
}

TEST(ApiFacts, ACloneHasPartsOfItsOwn) {
    CIMProperty property("P", CIMValue(Uint8(1)));
    CIMParameter parameter("X", CIMTYPE_UINT8);
    CIMMethod method("M", CIMTYPE_UINT8);
    method.addParameter(parameter);
    CIMClass cimClass("A");
    cimClass.addProperty(property).addMethod(method);
    CIMInstance instance(CIMName("A"));
    instance.addProperty(property);
    CIMClass classClone = cimClass.clone();
    CIMInstance instanceClone = instance.clone();
    CIMObject objectClone = CIMObject(instance).clone();
    property.setValue(CIMValue(Uint8(2)));
    parameter.addQualifier(CIMQualifier("Q", CIMValue()));
    EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(Uint8(2)));
    EXPECT_EQ(classClone.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(instanceClone.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(objectClone.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(cimClass.getMethod(0).getParameter(0).getQualifierCount(), 1U);
    EXPECT_EQ(classClone.getMethod(0).getParameter(0).getQualifierCount(), 0U);
}

TEST(ApiFacts, ACopyOfAValueIsAValueOfItsOwn) {
    CIMValue value(Uint8(1));
    const CIMValue valueCopy(value);
    value.setNullValue(CIMTYPE_STRING, true);
    EXPECT_EQ(valueCopy, CIMValue(Uint8(1)));

    CIMFlavor flavor(CIMFlavor::TOSUBCLASS);
    const CIMFlavor flavorCopy(flavor);
    flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    EXPECT_TRUE(flavorCopy.equal(CIMFlavor::TOSUBCLASS));

    CIMScope scope(CIMScope::CLASS);
    const CIMScope scopeCopy(scope);
    scope.addScope(CIMScope::METHOD);
    EXPECT_TRUE(scopeCopy.equal(CIMScope::CLASS));

    CIMName name("A");
    const CIMName nameCopy(name);
    name = CIMName("B");
    EXPECT_EQ(nameCopy, CIMName("A"));
}

// ---- Defaults ----

TEST(ApiFacts, WhatAConstructorIsNotToldHasADefault) {
    const CIMProperty property("P", CIMValue());
    EXPECT_EQ(property.getArraySize(), 0U);
    EXPECT_TRUE(property.getReferenceClassName().isNull());
    EXPECT_TRUE(property.getClassOrigin().isNull());
    EXPECT_FALSE(property.getPropagated());

    const CIMParameter parameter("P", CIMTYPE_UINT8);
    EXPECT_FALSE(parameter.isArray());
    EXPECT_EQ(parameter.getArraySize(), 0U);
    EXPECT_TRUE(parameter.getReferenceClassName().isNull());

    const CIMMethod method("M", CIMTYPE_UINT8);
    EXPECT_EQ(method.getName(), CIMName("M"));
    EXPECT_EQ(method.getType(), CIMTYPE_UINT8);
    EXPECT_TRUE(method.getClassOrigin().isNull());
    EXPECT_FALSE(method.getPropagated());

    const CIMQualifierDecl declaration("Q", CIMValue(true), CIMScope::ANY);
    EXPECT_EQ(declaration.getName(), CIMName("Q"));
    EXPECT_EQ(declaration.getValue(), CIMValue(true));
    EXPECT_TRUE(declaration.getFlavor().equal(CIMFlavor::DEFAULTS));
    EXPECT_EQ(declaration.getArraySize(), 0U);

    const CIMObjectPath path("host", CIMNamespaceName("root"), "A");
    EXPECT_EQ(text(path.toString()), "//host/root:A");
    EXPECT_EQ(path.getKeyBindings().size(), 0U);
}

TEST(ApiFacts, KeyBindingsAreEqualWhenNameTypeAndValueAre) {
    CIMKeyBinding key("K", "1", CIMKeyBinding::NUMERIC);
    EXPECT_TRUE(key.equal(CIMKeyBinding("k", "1", CIMKeyBinding::NUMERIC)));
    EXPECT_FALSE(key.equal(CIMKeyBinding("L", "1", CIMKeyBinding::NUMERIC)));
    EXPECT_FALSE(key.equal(CIMKeyBinding("K", "2", CIMKeyBinding::NUMERIC)));
    EXPECT_FALSE(key.equal(CIMKeyBinding("K", "1", CIMKeyBinding::STRING)));
}

TEST(ApiFacts, AKeyBindingHasWhatItWasMadeFrom) {
    const CIMKeyBinding key("K", "root:A.K=1", CIMKeyBinding::REFERENCE);
    EXPECT_EQ(key.getName(), CIMName("K"));
    EXPECT_EQ(key.getValue(), String("root:A.K=1"));
    EXPECT_EQ(key.getType(), CIMKeyBinding::REFERENCE);
}

// ---- Indices and names ----

TEST(ApiFacts, EveryIndexOutOfRangeThrows) {
    CIMProperty property("P", CIMValue());
    CIMParameter parameter("P", CIMTYPE_UINT8);
    CIMMethod method("M", CIMTYPE_UINT8);
    CIMClass cimClass("A");
    CIMInstance instance(CIMName("A"));
    for (const Uint32 index : {Uint32(0), Uint32(1), PEG_NOT_FOUND}) {
        SCOPED_TRACE(index);
        EXPECT_THROW(property.getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(parameter.getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(method.getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(method.getParameter(index), IndexOutOfBoundsException);
        EXPECT_THROW(cimClass.getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(cimClass.getProperty(index), IndexOutOfBoundsException);
        EXPECT_THROW(cimClass.getMethod(index), IndexOutOfBoundsException);
        EXPECT_THROW(instance.getProperty(index), IndexOutOfBoundsException);
        EXPECT_THROW(instance.getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(CIMObject(cimClass).getProperty(index), IndexOutOfBoundsException);
        EXPECT_THROW(CIMObject(cimClass).getQualifier(index), IndexOutOfBoundsException);
        EXPECT_THROW(Array<CIMName>()[index], IndexOutOfBoundsException);
        EXPECT_THROW(CIMPropertyList()[index], IndexOutOfBoundsException);
    }
}

TEST(ApiFacts, EveryIndexOutOfRangeOfAConstObjectThrows) {
    const CIMProperty property("P", CIMValue());
    const CIMParameter parameter("P", CIMTYPE_UINT8);
    const CIMMethod method("M", CIMTYPE_UINT8);
    const CIMClass cimClass("A");
    const CIMInstance instance(CIMName("A"));
    const CIMObject object(cimClass);
    EXPECT_THROW(property.getQualifier(0), IndexOutOfBoundsException);
    EXPECT_THROW(parameter.getQualifier(0), IndexOutOfBoundsException);
    EXPECT_THROW(method.getQualifier(0), IndexOutOfBoundsException);
    EXPECT_THROW(method.getParameter(0), IndexOutOfBoundsException);
    EXPECT_THROW(cimClass.getQualifier(0), IndexOutOfBoundsException);
    EXPECT_THROW(cimClass.getProperty(0), IndexOutOfBoundsException);
    EXPECT_THROW(cimClass.getMethod(0), IndexOutOfBoundsException);
    EXPECT_THROW(instance.getProperty(0), IndexOutOfBoundsException);
    EXPECT_THROW(instance.getQualifier(0), IndexOutOfBoundsException);
    EXPECT_THROW(object.getProperty(0), IndexOutOfBoundsException);
    EXPECT_THROW(object.getQualifier(0), IndexOutOfBoundsException);
}

template <class Owner>
void expectQualifiersFound(Owner owner) {
    EXPECT_EQ(owner.findQualifier("B"), PEG_NOT_FOUND);
    owner.addQualifier(CIMQualifier("A", CIMValue())).addQualifier(CIMQualifier("B", CIMValue(true)));
    EXPECT_EQ(owner.findQualifier("b"), 1U);
    EXPECT_EQ(owner.findQualifier("C"), PEG_NOT_FOUND);
    EXPECT_EQ(owner.getQualifierCount(), 2U);
    EXPECT_EQ(owner.getQualifier(1).getValue(), CIMValue(true));
    const Owner& seen = owner;
    EXPECT_EQ(seen.getQualifier(1).getValue(), CIMValue(true));
}

template <class Owner>
void expectPropertiesFound(Owner owner) {
    EXPECT_EQ(owner.findProperty("B"), PEG_NOT_FOUND);
    owner.addProperty(CIMProperty("A", CIMValue())).addProperty(CIMProperty("B", CIMValue(true)));
    EXPECT_EQ(owner.getPropertyCount(), 2U);
    EXPECT_EQ(owner.findProperty("b"), 1U);
    EXPECT_EQ(owner.findProperty("C"), PEG_NOT_FOUND);
    EXPECT_EQ(owner.getProperty(1).getValue(), CIMValue(true));
    const Owner& seen = owner;
    EXPECT_EQ(seen.getProperty(1).getValue(), CIMValue(true));
    const CIMObject object(owner);
    EXPECT_EQ(object.findProperty("b"), 1U);
    EXPECT_EQ(object.getPropertyCount(), 2U);
    EXPECT_EQ(object.getProperty(1).getValue(), CIMValue(true));
}

TEST(ApiFacts, EveryMemberIsFoundWithoutRegardToCase) {
    expectQualifiersFound(CIMProperty("P", CIMValue()));
    expectQualifiersFound(CIMParameter("P", CIMTYPE_UINT8));
    expectQualifiersFound(CIMMethod("M", CIMTYPE_UINT8));
    expectQualifiersFound(CIMClass("A"));
    expectQualifiersFound(CIMInstance(CIMName("A")));
    expectPropertiesFound(CIMClass("A"));
    expectPropertiesFound(CIMInstance(CIMName("A")));

    CIMClass cimClass("A");
    cimClass.addMethod(CIMMethod("M", CIMTYPE_UINT8)).addMethod(CIMMethod("N", CIMTYPE_UINT16));
    EXPECT_EQ(cimClass.getMethodCount(), 2U);
    EXPECT_EQ(cimClass.getMethod(cimClass.findMethod("n")).getType(), CIMTYPE_UINT16);
    const CIMClass& seen = cimClass;
    EXPECT_EQ(seen.getMethod(1).getType(), CIMTYPE_UINT16);

    CIMMethod method("M", CIMTYPE_UINT8);
    method.addParameter(CIMParameter("X", CIMTYPE_UINT8)).addParameter(CIMParameter("Y", CIMTYPE_UINT16));
    const CIMMethod& seenMethod = method;
    EXPECT_EQ(method.getParameter(1).getType(), CIMTYPE_UINT16);
    EXPECT_EQ(seenMethod.getParameter(1).getType(), CIMTYPE_UINT16);
}

// ---- Flags ----

TEST(ApiFacts, EveryFlavorHasItsWord) {
    const std::vector<std::pair<CIMFlavor, const char*>> flavors = {
        {CIMFlavor::OVERRIDABLE, "OVERRIDABLE"},         {CIMFlavor::TOSUBCLASS, "TOSUBCLASS"},
        {CIMFlavor::TOINSTANCE, "TOINSTANCE"},           {CIMFlavor::TRANSLATABLE, "TRANSLATABLE"},
        {CIMFlavor::DISABLEOVERRIDE, "DISABLEOVERRIDE"}, {CIMFlavor::RESTRICTED, "RESTRICTED"}};
    for (const auto& [flavor, word] : flavors) {
        EXPECT_EQ(text(flavor.toString()), word);
    }
    EXPECT_TRUE(CIMFlavor::NONE.equal(CIMFlavor()));
    EXPECT_TRUE(CIMFlavor::DEFAULTS.equal(CIMFlavor::OVERRIDABLE + CIMFlavor::TOSUBCLASS));
    EXPECT_TRUE(CIMFlavor::ENABLEOVERRIDE.equal(CIMFlavor::OVERRIDABLE));
}

TEST(ApiFacts, EveryScopeHasItsWordAndAnyIsAllSeven) {
    const std::vector<std::pair<CIMScope, const char*>> scopes = {
        {CIMScope::CLASS, "CLASS"},        {CIMScope::ASSOCIATION, "ASSOCIATION"}, {CIMScope::INDICATION, "INDICATION"},
        {CIMScope::PROPERTY, "PROPERTY"},  {CIMScope::REFERENCE, "REFERENCE"},     {CIMScope::METHOD, "METHOD"},
        {CIMScope::PARAMETER, "PARAMETER"}};
    CIMScope all;
    for (const auto& [scope, word] : scopes) {
        EXPECT_EQ(text(scope.toString()), word);
        EXPECT_FALSE(all.hasScope(scope)) << word;
        EXPECT_TRUE(CIMScope::ANY.hasScope(scope)) << word;
        all.addScope(scope);
    }
    EXPECT_TRUE(all.equal(CIMScope::ANY));
    EXPECT_TRUE(CIMScope::NONE.equal(CIMScope()));
}

// ---- Values ----

TEST(ApiFacts, ValuesAreEqualWhenTypeArrayNessNullNessAndContentAre) {
    EXPECT_TRUE(CIMValue(Uint8(1)).equal(CIMValue(Uint8(1))));
    EXPECT_FALSE(CIMValue(Uint8(1)).equal(CIMValue(Uint16(1))));
    EXPECT_FALSE(CIMValue(Uint8(1)).equal(CIMValue(Array<Uint8>(1))));
    EXPECT_TRUE(CIMValue(CIMTYPE_UINT8, false).equal(CIMValue(CIMTYPE_UINT8, false)));
    EXPECT_FALSE(CIMValue(CIMTYPE_UINT8, false).equal(CIMValue(CIMTYPE_UINT16, false)));
    EXPECT_FALSE(CIMValue(CIMTYPE_UINT8, false).equal(CIMValue(CIMTYPE_UINT8, true)));
    EXPECT_FALSE(CIMValue(CIMTYPE_UINT8, false).equal(CIMValue(Uint8(0))));
    EXPECT_FALSE(CIMValue(CIMTYPE_UINT8, true).equal(CIMValue(Array<Uint8>())));
}

TEST(ApiFacts, ANullOfAnotherTypeIsATypeMismatchNotANull) {
    Uint16 number = 7;
    EXPECT_THROW(CIMValue(CIMTYPE_UINT8, false).get(number), TypeMismatchException);
    EXPECT_THROW(CIMValue(CIMTYPE_UINT16, true).get(number), TypeMismatchException);
    CIMValue(CIMTYPE_UINT16, false).get(number);
    EXPECT_EQ(number, 7);
}

// ---- Errors ----

#if __has_include(<Pegasus/Client/FailureMarks.h>)
// The messages of this project's own library; other libraries have texts of their own.

TEST(ApiFacts, EveryStatusCodesMessageBeginsWithItsName) {
    const std::vector<std::pair<int, std::string>> names = {{0, "SUCCESS"},
                                                            {1, "FAILED"},
                                                            {2, "ACCESS_DENIED"},
                                                            {3, "INVALID_NAMESPACE"},
                                                            {4, "INVALID_PARAMETER"},
                                                            {5, "INVALID_CLASS"},
                                                            {6, "NOT_FOUND"},
                                                            {7, "NOT_SUPPORTED"},
                                                            {8, "CLASS_HAS_CHILDREN"},
                                                            {9, "CLASS_HAS_INSTANCES"},
                                                            {10, "INVALID_SUPERCLASS"},
                                                            {11, "ALREADY_EXISTS"},
                                                            {12, "NO_SUCH_PROPERTY"},
                                                            {13, "TYPE_MISMATCH"},
                                                            {14, "QUERY_LANGUAGE_NOT_SUPPORTED"},
                                                            {15, "INVALID_QUERY"},
                                                            {16, "METHOD_NOT_AVAILABLE"},
                                                            {17, "METHOD_NOT_FOUND"},
                                                            {20, "NAMESPACE_NOT_EMPTY"},
                                                            {21, "INVALID_ENUMERATION_CONTEXT"},
                                                            {22, "INVALID_OPERATION_TIMEOUT"},
                                                            {23, "PULL_HAS_BEEN_ABANDONED"},
                                                            {24, "PULL_CANNOT_BE_ABANDONED"},
                                                            {25, "FILTERED_ENUMERATION_NOT_SUPPORTED"},
                                                            {26, "CONTINUATION_ON_ERROR_NOT_SUPPORTED"},
                                                            {27, "SERVER_LIMITS_EXCEEDED"},
                                                            {28, "SERVER_IS_SHUTTING_DOWN"}};
    for (const auto& [number, name] : names) {
        const auto code = static_cast<CIMStatusCode>(number);
        const std::string whole = "CIM_ERR_" + name + ": why";
        EXPECT_EQ(text(CIMException(code, "why").getMessage()), whole);
        EXPECT_EQ(text(CIMException(code, whole.c_str()).getMessage()), whole);
        EXPECT_EQ(CIMException(code, "why").getCode(), code);
    }
}

/// The message of the exception of type E that an action throws.
template <class E, class Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const E& error) {
        return text(error.getMessage());
    }
    ADD_FAILURE() << "the expected exception did not come";
    return {};
}

TEST(ApiFacts, AnErrorQuotesTheTextThatIsWrong) {
    EXPECT_EQ(messageOf<InvalidNameException>([] { CIMName("a b"); }), "not a CIM name: \"a b\"");
    EXPECT_EQ(messageOf<InvalidNamespaceNameException>([] { CIMNamespaceName("a/"); }),
              "not a CIM namespace name: \"a/\"");
    EXPECT_EQ(messageOf<InvalidDateTimeFormatException>([] { CIMDateTime(String("noon")); }),
              "not the text of a CIM datetime: \"noon\"");
    EXPECT_EQ(messageOf<MalformedObjectNameException>([] { CIMObjectPath("A.K"); }), "not an object path: \"A.K\"");
}

#endif

} // namespace
