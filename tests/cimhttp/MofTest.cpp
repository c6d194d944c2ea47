#include "access/RemoteModel.h"
#include "output/MofText.h"
#include "output/MofWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>

using namespace cimhttp;
using NQORVYX20::TCIMChar16;
using NQORVYX20::TCIMDateTime;
using NQORVYX20::TCIMValue;

namespace {

TCIMValue Strings(const std::vector<TCIMValue>& texts) { return {TCIMValue::TCIMType::eCIMString, 0, texts}; }

RemoteClass Disk() {
    RemoteClass cls;
    cls.name = "T_Disk";
    cls.superclass = "T_Device";
    cls.qualifiers = {{"Description", "A \"disk\".", {}}, {"Version", "1.0", {true, false, true}}};
    RemoteProperty size;
    size.name = "Size";
    size.type = {"uint64", false, 0, {}};
    size.defaultValue = TCIMValue(7ULL);
    size.qualifiers = {{"Key", true, {false, true, false}}, {"Override", "Size", {}}};
    RemoteProperty tags;
    tags.name = "Tags";
    tags.type = {"string", true, 4, {}};
    tags.origin = "T_Device";
    tags.isInherited = true;
    cls.properties = {size, tags};
    RemoteMethod format;
    format.name = "Format";
    format.type = {"uint32", false, 0, {}};
    format.qualifiers = {{"Deprecated", Strings({"T_Disk.Erase"}), {}}};
    RemoteParameter host{"Host", {"reference", false, 0, "T_System"}, {{"In", true, {}}}};
    RemoteParameter labels{"Labels", {"string", true, 0, {}}, {}};
    format.parameters = {host, labels};
    cls.methods = {format};
    return cls;
}

} // namespace

TEST(Mof, AClassHasItsOwnFeaturesAndNamesWhatItInherits) {
    EXPECT_EQ(ClassMof(Disk(), {}), "[Description(\"A \\\"disk\\\".\"),\n"
                                    " Version(\"1.0\") : Restricted Translatable]\n"
                                    "class T_Disk : T_Device\n"
                                    "{\n"
                                    "    [Key : DisableOverride,\n"
                                    "     Override(\"Size\")]\n"
                                    "    uint64 Size = 7;\n"
                                    "\n"
                                    "    [Deprecated {\"T_Disk.Erase\"}]\n"
                                    "    uint32 Format(\n"
                                    "        [In]\n"
                                    "        T_System REF Host,\n"
                                    "        string Labels[]);\n"
                                    "\n"
                                    "    // Inherited from T_Device:\n"
                                    "    //   string Tags[4];\n"
                                    "};\n");
}

TEST(Mof, AWholeClassHasNoSuperclassAndOverridesNothing) {
    const std::string mof = ClassMof(Disk(), {}, true);
    EXPECT_NE(mof.find("class T_Disk\n{"), std::string::npos);
    EXPECT_NE(mof.find("    string Tags[4];\n"), std::string::npos);
    EXPECT_EQ(mof.find("Override("), std::string::npos);
    EXPECT_EQ(mof.find("//"), std::string::npos);
}

TEST(Mof, FlavorsThatADeclarationGivesAreNotRepeated) {
    const RemoteQualifierDeclaration key{"KEY", {"boolean", false, 0, {}}, false, {"property"}, {false, true, false}};
    EXPECT_NE(ClassMof(Disk(), {key}).find("[Key,\n"), std::string::npos);
}

TEST(Mof, AQualifierIsDeclared) {
    EXPECT_EQ(QualifierMof({"Values",
                            {"string", true, 0, {}},
                            TCIMValue(TCIMValue::TCIMType::eCIMStringArray, 0),
                            {"property", "method"},
                            {true, true, true}}),
              "Qualifier Values : string[] = NULL,\n"
              "    Scope(property, method),\n"
              "    Flavor(EnableOverride, ToSubclass, Translatable);\n");
}

TEST(Mof, ValuesOfEveryFormAreWritten) {
    EXPECT_EQ(MofValue(TCIMValue(), 0), "NULL");
    EXPECT_EQ(MofValue(false, 0), "false");
    EXPECT_EQ(MofValue(-3, 0), "-3");
    EXPECT_EQ(MofValue(2.0, 0), "2.0");
    EXPECT_EQ(MofValue(1e20, 0), "1.0e+20");
    EXPECT_EQ(MofValue(0.1F, 0), "0.1");
    EXPECT_EQ(MofValue(std::numeric_limits<double>::infinity(), 0), "NULL");
    EXPECT_EQ(MofValue(TCIMChar16("39"), 0), "'\\''");
    EXPECT_EQ(MofValue(TCIMDateTime("00000001000000.000000:000"), 0), "\"00000001000000.000000:000\"");
    EXPECT_EQ(MofValue(Strings({"a", "b"}), 0), "{\"a\", \"b\"}");
    EXPECT_EQ(MofValue(Strings({}), 0), "{}");
}

TEST(Mof, TextsAreEscaped) {
    EXPECT_EQ(MofValue("say \"hi\" \\ \n \t end", 0), R"("say \"hi\" \\ \n \t end")");
    EXPECT_EQ(MofValue("\x1b[2J\xc2\x9b\xe2\x80\xae", 0), R"("\x001B[2J\x009B\x202E")");
    EXPECT_EQ(MofValue("\xc3\xb6 \xff", 0), "\"\xc3\xb6 \xef\xbf\xbd\"");
}

TEST(Mof, LongTextsAreFoldedAndLoseNothing) {
    std::string text = std::string(300, 'x') + ' ';
    for (int i = 0; i < 60; ++i) {
        text += "word" + std::to_string(i) + "\n ";
    }
    const std::string mof = MofValue(text, 10);
    std::string joined;
    std::istringstream lines(mof);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 100U) << line;
        const auto first = line.find('"');
        joined += line.substr(first + 1, line.rfind('"') - first - 1);
    }
    std::string unescaped;
    for (std::size_t i = 0; i < joined.size(); ++i) {
        unescaped += joined[i] == '\\' ? (++i, '\n') : joined[i];
    }
    EXPECT_EQ(unescaped, text);
}

TEST(Mof, LongListsAreFolded) {
    const std::string list = MofList(std::vector<std::string>(40, "\"item\""), 5);
    std::istringstream lines(list);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 100U);
    }
    EXPECT_EQ(std::count(list.begin(), list.end(), ','), 39);
}

// --- Sizes that only a hostile server sends: what takes time in proportion to their square does not end.
// ------

TEST(Mof, AWordOfManyMegabytesIsFolded) {
    constexpr std::size_t kSize = std::size_t{8} << 20U;
    const std::string literal = MofValue(std::string(kSize, 'x'), 34); // a line has 64
    EXPECT_EQ(static_cast<std::size_t>(std::count(literal.begin(), literal.end(), 'x')), kSize);
    EXPECT_EQ(static_cast<std::size_t>(std::count(literal.begin(), literal.end(), '\n')), kSize / 64 - 1);
}

TEST(Mof, AClassMayInheritFromAsManyClassesAsItHasFeatures) {
    constexpr std::size_t kCount = 100000;
    RemoteClass cls = Disk();
    std::vector<RemoteQualifierDeclaration> declarations;
    for (std::size_t i = 0; i < kCount; ++i) {
        const std::string number = std::to_string(i);
        declarations.push_back({"Q" + number, {"boolean", false, 0, {}}, TCIMValue(false), {"property"}, {}});
        cls.qualifiers.push_back({declarations.back().name, true, {}});
        RemoteProperty property = cls.properties.back();
        property.name = "P" + number;
        property.origin = "T_" + number;
        cls.properties.push_back(property);
    }
    const std::string mof = ClassMof(cls, declarations);
    EXPECT_NE(mof.find("    // Inherited from T_99998:\n    //   string P99998[4];\n\n"
                       "    // Inherited from T_99999:\n    //   string P99999[4];\n"),
              std::string::npos);
}
