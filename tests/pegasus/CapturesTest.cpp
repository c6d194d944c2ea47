// Decodes the answers that a production server gave, where the folder with them is at hand.

#include "DecodedAnswer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

namespace {

using namespace Pegasus;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::filesystem::path capturesFolder() {
    const char* const given = std::getenv("CIMHTTP_CAPTURES");
    return given ? given : CIMHTTP_CAPTURES;
}

/// The body in an HTTP message: what follows the header block, out of its chunks where it came in chunks.
std::string bodyOf(std::string_view message) {
    const auto headerEnd = message.find("\r\n\r\n");
    const std::string_view headers = message.substr(0, headerEnd);
    message.remove_prefix(headerEnd + 4);
    if (headers.find("chunked") == std::string_view::npos) {
        return std::string(message);
    }
    std::string body;
    while (true) {
        const auto lineEnd = message.find("\r\n");
        const auto size = std::stoul(std::string(message.substr(0, lineEnd)), nullptr, 16);
        if (size == 0) {
            return body;
        }
        body += message.substr(lineEnd + 2, size);
        message.remove_prefix(lineEnd + 2 + size + 2);
    }
}

template <class T>
T valueOf(const CIMInstance& instance, const char* name) {
    const Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND) {
        throw std::runtime_error(std::string("no property ") + name);
    }
    T value{};
    instance.getProperty(index).getValue().get(value);
    return value;
}

template <class T>
std::vector<T> arrayOf(const CIMInstance& instance, const char* name) {
    const auto items = valueOf<Array<T>>(instance, name);
    return std::vector<T>(items.begin(), items.end());
}

std::string textOf(const CIMInstance& instance, const char* name) {
    return std::string(valueOf<String>(instance, name).view());
}

class CapturesTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(capturesFolder())) {
            GTEST_SKIP() << "no captures in " << capturesFolder();
        }
    }

    static std::string read(const std::string& file) {
        std::ifstream in(capturesFolder() / (file + ".http"), std::ios::binary);
        EXPECT_TRUE(in) << file;
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    /// Decodes a file; its name begins with the method's.
    static DecodedAnswer decodeFile(const std::string& file) {
        return decode(file.substr(0, file.find('.')), bodyOf(read(file)), 1000);
    }
};

TEST_F(CapturesTest, EveryAnswerWithObjectsDecodes) {
    const std::set<std::string> methods = {"GetClass", "GetQualifier", "EnumerateClassNames", "EnumerateInstances"};
    std::map<std::string, int> decoded;
    for (const auto& entry : std::filesystem::directory_iterator(capturesFolder())) {
        const std::string file = entry.path().stem().string();
        const std::string method = file.substr(0, file.find('.'));
        if (entry.path().extension() != ".http" || methods.count(method) == 0) {
            continue;
        }
        SCOPED_TRACE(file);
        DecodedAnswer answer;
        ASSERT_NO_THROW(answer = decodeFile(file));
        EXPECT_EQ(answer.classes.size(), method == "GetClass" ? 1U : 0U);
        EXPECT_EQ(answer.qualifierDecls.size(), method == "GetQualifier" ? 1U : 0U);
        EXPECT_EQ(answer.classNames.empty(), method != "EnumerateClassNames");
        ++decoded[method];
    }
    EXPECT_EQ(decoded["GetClass"], 9);
    EXPECT_EQ(decoded["GetQualifier"], 19);
    EXPECT_EQ(decoded["EnumerateClassNames"], 2);
    EXPECT_EQ(decoded["EnumerateInstances"], 6);
}

TEST_F(CapturesTest, AllClassNamesOfTheNamespaceArrive) {
    const auto names = decodeFile("EnumerateClassNames.root.deep").classNames;
    EXPECT_THAT(names, SizeIs(1466));
    std::set<std::string> different;
    for (const auto& name : names) {
        different.emplace(name.getString().view());
    }
    EXPECT_THAT(different, SizeIs(1466));
    EXPECT_EQ(different.count("CIM_ManagedElement"), 1U);
    EXPECT_EQ(different.count("ACME_Sub"), 1U);
}

TEST_F(CapturesTest, ExtremeValuesOfEveryTypeArrive) {
    const auto instances = decodeFile("EnumerateInstances.ACME_AllTypes").instances;
    ASSERT_FALSE(instances.empty());
    const CIMInstance& full = instances[0];
    EXPECT_EQ(full.getPath().toString(), String("ACME_AllTypes.Id=\"full\""));
    EXPECT_TRUE(valueOf<Boolean>(full, "B"));
    EXPECT_EQ(valueOf<Uint8>(full, "U8"), 255);
    EXPECT_EQ(valueOf<Sint8>(full, "S8"), -128);
    EXPECT_EQ(valueOf<Uint16>(full, "U16"), 65535);
    EXPECT_EQ(valueOf<Sint16>(full, "S16"), -32768);
    EXPECT_EQ(valueOf<Uint32>(full, "U32"), 4294967295U);
    EXPECT_EQ(valueOf<Sint32>(full, "S32"), -2147483647 - 1);
    EXPECT_EQ(valueOf<Uint64>(full, "U64"), 18446744073709551615U);
    EXPECT_EQ(valueOf<Sint64>(full, "S64"), -9223372036854775807 - 1);
    EXPECT_EQ(valueOf<Real32>(full, "R32"), 1.5F);
    EXPECT_EQ(valueOf<Real64>(full, "R64"), -2.25e100);
    EXPECT_EQ(valueOf<Char16>(full, "C16"), '\'');
    EXPECT_EQ(textOf(full, "Str"), "a <tag> & more > less");
    EXPECT_EQ(valueOf<CIMDateTime>(full, "Stamp").toString(), String("20261121083900.123456+060"));
    EXPECT_TRUE(valueOf<CIMDateTime>(full, "Span").isInterval());
    EXPECT_THAT(arrayOf<Boolean>(full, "ArrB"), ElementsAre(true, false));
    EXPECT_THAT(arrayOf<Uint8>(full, "ArrU8"), ElementsAre(0, 1, 255));
    EXPECT_THAT(arrayOf<Sint64>(full, "ArrS64"), ElementsAre(-9223372036854775807 - 1, 9223372036854775807));
    EXPECT_THAT(arrayOf<Real32>(full, "ArrR32"), ElementsAre(0.5F, -0.5F));
    EXPECT_THAT(arrayOf<String>(full, "ArrStr"), ElementsAre(String("one"), String("two & three")));
    EXPECT_THAT(arrayOf<CIMDateTime>(full, "ArrWhen"), ElementsAre(CIMDateTime(String("20261121083900.123456+060"))));

    const auto empty = full.getProperty(full.findProperty("Empty")).getValue();
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(textOf(full, "Empty"), "");
}

TEST_F(CapturesTest, NullsKeepTheirType) {
    const auto instances = decodeFile("EnumerateInstances.ACME_AllTypes").instances;
    ASSERT_GE(instances.size(), 2U);
    const CIMInstance& bare = instances[1];
    EXPECT_EQ(bare.getPropertyCount(), instances[0].getPropertyCount());
    for (Uint32 i = 0; i < bare.getPropertyCount(); ++i) {
        const CIMConstProperty property = bare.getProperty(i);
        SCOPED_TRACE(std::string(property.getName().getString().view()));
        const CIMConstProperty sibling = instances[0].getProperty(instances[0].findProperty(property.getName()));
        EXPECT_EQ(property.getType(), sibling.getType());
        EXPECT_EQ(property.isArray(), sibling.isArray());
        const bool set = property.getName() == "Id" || property.getName() == "Missing";
        EXPECT_EQ(property.getValue().isNull(), !set);
        EXPECT_EQ(property.getPropagated(), property.getName() != "Id");
    }
}

TEST_F(CapturesTest, NonAsciiTextArrivesAsUtf8) {
    const auto instances = decodeFile("EnumerateInstances.ACME_AllTypes").instances;
    const auto linked = std::find_if(instances.begin(), instances.end(),
                                     [](const CIMInstance& instance) { return textOf(instance, "Id") == "linked"; });
    ASSERT_NE(linked, instances.end());
    EXPECT_EQ(textOf(*linked, "Str"), "caf\xC3\xA9 \xE2\x82\xAC");
}

TEST_F(CapturesTest, TheFramingOfTheBodyMakesNoDifference) {
    const auto chunked = decodeFile("EnumerateInstances.ACME_AllTypes").instances;
    const auto whole = decodeFile("EnumerateInstances.ACME_AllTypes.content-length").instances;
    ASSERT_EQ(chunked.size(), whole.size());
    for (std::size_t i = 0; i < chunked.size(); ++i) {
        EXPECT_TRUE(chunked[i].identical(whole[i])) << i;
    }
}

TEST_F(CapturesTest, ASubclassInstanceComesWithADeepEnumeration) {
    const auto instances = decodeFile("EnumerateInstances.ACME_AllTypes.deep").instances;
    const auto sub = std::find_if(instances.begin(), instances.end(), [](const CIMInstance& instance) {
        return instance.getClassName() == CIMName("ACME_Sub");
    });
    ASSERT_NE(sub, instances.end());
    EXPECT_EQ(sub->getPath().toString(), String("ACME_Sub.Id=\"sub\""));
    EXPECT_EQ(valueOf<Uint32>(*sub, "Extra"), 9U);
}

TEST_F(CapturesTest, AnEmptyEnumerationHasNoInstances) {
    EXPECT_THAT(decodeFile("EnumerateInstances.CIM_StorageVolume").instances, IsEmpty());
}

TEST_F(CapturesTest, AnAssociationInstanceHasReferencesAsPropertiesAndKeys) {
    const auto instances = decodeFile("EnumerateInstances.ACME_Link").instances;
    ASSERT_THAT(instances, SizeIs(1));
    const CIMInstance& link = instances[0];
    const auto antecedent = link.getProperty(link.findProperty("antecedent"));
    EXPECT_EQ(antecedent.getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(antecedent.getReferenceClassName(), CIMName("ACME_AllTypes"));
    EXPECT_EQ(valueOf<CIMObjectPath>(link, "Antecedent"), CIMObjectPath("ACME_AllTypes.Id=\"ante\""));
    EXPECT_EQ(valueOf<Uint16>(link, "Weight"), 3);
    const auto& keys = link.getPath().getKeyBindings();
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(keys[1].getName(), CIMName("Dependent"));
    EXPECT_EQ(keys[1].getType(), CIMKeyBinding::REFERENCE);
    EXPECT_EQ(keys[1].getValue(), String("ACME_AllTypes.Id=\"depe\""));
}

TEST_F(CapturesTest, AClassHasItsSuperclassPropertiesQualifiersAndMethods) {
    const CIMClass sub = decodeFile("GetClass.ACME_Sub").classes.at(0);
    EXPECT_EQ(sub.getClassName(), CIMName("ACME_Sub"));
    EXPECT_EQ(sub.getSuperClassName(), CIMName("ACME_AllTypes"));
    EXPECT_FALSE(sub.isAssociation());
    EXPECT_EQ(sub.getPropertyCount(), 35U);

    const CIMConstProperty id = sub.getProperty(sub.findProperty("Id"));
    EXPECT_EQ(id.getClassOrigin(), CIMName("ACME_AllTypes"));
    EXPECT_TRUE(id.getPropagated());
    const CIMConstQualifier key = id.getQualifier(id.findQualifier("KEY"));
    EXPECT_EQ(key.getValue(), CIMValue(true));
    EXPECT_EQ(key.getFlavor().toString(), String("TOSUBCLASS DISABLEOVERRIDE"));
    const CIMConstProperty health = sub.getProperty(sub.findProperty("Health"));
    const CIMConstQualifier values = health.getQualifier(health.findQualifier("Values"));
    EXPECT_TRUE(values.isArray());
    EXPECT_EQ(values.getValue().getArraySize(), 7U);
    EXPECT_EQ(values.getFlavor().toString(), String("OVERRIDABLE TOSUBCLASS TRANSLATABLE"));

    ASSERT_EQ(sub.getMethodCount(), 1U);
    const CIMConstMethod method = sub.getMethod(0);
    EXPECT_EQ(method.getType(), CIMTYPE_UINT32);
    ASSERT_EQ(method.getParameterCount(), 3U);
    EXPECT_EQ(method.getParameter(0).getType(), CIMTYPE_STRING);
    EXPECT_TRUE(method.getParameter(1).isArray());
    EXPECT_EQ(method.getParameter(2).getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(method.getParameter(2).getReferenceClassName(), CIMName("ACME_AllTypes"));
    EXPECT_NE(method.getParameter(2).findQualifier("out"), PEG_NOT_FOUND);
}

TEST_F(CapturesTest, AssociationsAndAbstractClassesAreToldApart) {
    EXPECT_TRUE(decodeFile("GetClass.ACME_Link").classes.at(0).isAssociation());
    const CIMClass dependency = decodeFile("GetClass.CIM_Dependency").classes.at(0);
    EXPECT_TRUE(dependency.isAssociation());
    EXPECT_TRUE(dependency.isAbstract());
    const CIMClass top = decodeFile("GetClass.CIM_ManagedElement").classes.at(0);
    EXPECT_TRUE(top.isAbstract());
    EXPECT_TRUE(top.getSuperClassName().isNull());
}

TEST_F(CapturesTest, QualifierDeclarationsHaveTheirScopesFlavorsAndDefaults) {
    const CIMQualifierDecl key = decodeFile("GetQualifier.Key").qualifierDecls.at(0);
    EXPECT_EQ(key.getScope().toString(), String("PROPERTY REFERENCE"));
    EXPECT_EQ(key.getFlavor().toString(), String("TOSUBCLASS DISABLEOVERRIDE"));
    EXPECT_EQ(key.getValue(), CIMValue(false));

    const CIMQualifierDecl deprecated = decodeFile("GetQualifier.Deprecated").qualifierDecls.at(0);
    EXPECT_EQ(deprecated.getScope(), CIMScope::ANY);
    EXPECT_EQ(deprecated.getFlavor().toString(), String("OVERRIDABLE RESTRICTED"));
    EXPECT_TRUE(deprecated.isArray());
    EXPECT_TRUE(deprecated.getValue().isNull());
    EXPECT_EQ(deprecated.getType(), CIMTYPE_STRING);
}

TEST_F(CapturesTest, AnErrorInTheBodyIsThrown) {
    try {
        decode("GetClass", bodyOf(read("error.bad-parameter")));
        FAIL() << "no exception";
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_SUPPORTED);
        EXPECT_EQ(exception.getMessage(), String("CIM_ERR_NOT_SUPPORTED: Unrecognized or invalid request input "
                                                 "parameter \"Bogus\""));
    }
    EXPECT_THROW(decode("NoSuchMethod", bodyOf(read("error.unknown-method"))), CIMException);
}

TEST_F(CapturesTest, AnAnswerWhoseErrorStandsInTheTrailersHasAnAcceptableEmptyBody) {
    for (const char* file : {"error.class-not-found", "error.namespace-not-found"}) {
        EXPECT_THAT(decode("GetClass", bodyOf(read(file))).classes, IsEmpty()) << file;
    }
    EXPECT_THAT(decode("GetQualifier", bodyOf(read("error.qualifier-not-found"))).qualifierDecls, IsEmpty());
}

} // namespace
