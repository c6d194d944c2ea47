// A host is another product than this plug-in: the operations that the plug-in links from it are all that it may have.

#include "support/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::set<std::string> kHostOperations{
    "PegStrToStdStr(Pegasus::String)",

    "TCIMChar16::TCIMChar16(std::string const&)",
    "TCIMChar16::~TCIMChar16()",

    "TCIMDateTime::TCIMDateTime()",
    "TCIMDateTime::TCIMDateTime(std::string const&)",
    "TCIMDateTime::Set(unsigned int, unsigned short, unsigned short, unsigned short, unsigned int)",
    "TCIMDateTime::ToUIString() const",
    "TCIMDateTime::~TCIMDateTime()",

    "TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace>, TCIMContext)",
    "TCIMReference::AddKeyValue(std::string const&, TCIMValue const&)",
    "TCIMReference::GetPath() const",
    "TCIMReference::GetClassName() const",
    "TCIMReference::~TCIMReference()",

    "TCIMValue::TCIMValue()",
    "TCIMValue::TCIMValue(bool)",
    "TCIMValue::TCIMValue(unsigned char)",
    "TCIMValue::TCIMValue(signed char)",
    "TCIMValue::TCIMValue(unsigned short)",
    "TCIMValue::TCIMValue(short)",
    "TCIMValue::TCIMValue(unsigned int)",
    "TCIMValue::TCIMValue(int)",
    "TCIMValue::TCIMValue(unsigned long long)",
    "TCIMValue::TCIMValue(long long)",
    "TCIMValue::TCIMValue(float)",
    "TCIMValue::TCIMValue(double)",
    "TCIMValue::TCIMValue(char const*)",
    "TCIMValue::TCIMValue(std::string const&)",
    "TCIMValue::TCIMValue(TCIMChar16 const&)",
    "TCIMValue::TCIMValue(TCIMDateTime const&)",
    "TCIMValue::TCIMValue(TCIMReference&)",
    "TCIMValue::TCIMValue(TCIMValue::TCIMType, unsigned int)",
    "TCIMValue::TCIMValue(TCIMValue::TCIMType, unsigned int, std::vector<TCIMValue> const&)",
    "TCIMValue::TCIMValue(TCIMValue const&)",
    "TCIMValue::operator=(TCIMValue const&)",
    "TCIMValue::~TCIMValue()",
    "TCIMValue::IsNull() const",
    "TCIMValue::IsArray() const",
    "TCIMValue::GetType() const",
    "TCIMValue::IsReference() const",
    "TCIMValue::GetReferencedClass() const",
    "TCIMValue::ToString(unsigned char) const",
    "TCIMValue::operator bool() const",
    "TCIMValue::operator unsigned char() const",
    "TCIMValue::operator unsigned short() const",
    "TCIMValue::operator unsigned int() const",
    "TCIMValue::operator unsigned long long() const",
    "TCIMValue::operator std::string() const",
    "TCIMValue::operator std::vector<TCIMValue>&() const",
    "TCIMValue::operator==(TCIMValue const&) const",
    "TCIMValue::operator!=(TCIMValue const&) const",
    "TCIMValue::operator<(TCIMValue const&) const",
    "TCIMValue::TCIMType::TCIMType(TCIMValue::TCIMType::ECIMType)",
    "TCIMValue::TCIMType::operator TCIMValue::TCIMType::ECIMType() const",
    "operator<<(std::ostream&, TCIMValue::TCIMType const&)",

    "TRootObject::GetCoreLogger()",
    "TRootObject::GetNamespaceProviderManager()",
    "TVYXStatusCode::TranslateStatusCode() const",
    "typeinfo for TVYXException",
    "vtable for TVYXException",
};

/// The classes of the host that the plug-in's own derive from or use as a whole.
const std::array<std::string, 2> kHostClasses{"TInmemInstance", "TXmlParser"};

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

/// A demangled name as the list above writes it.
std::string Shortened(std::string name) {
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"NQORVYX20::", ""},
             {"[abi:cxx11]", ""},
             {"std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "std::string"},
             {"std::map<std::string, TCIMValue, std::less<std::string >, std::allocator<std::pair<std::string const, "
              "TCIMValue> > >",
              "TCIMContext"},
             {"std::map<std::string, TCIMValue, std::less<std::string>, std::allocator<std::pair<std::string const, "
              "TCIMValue> > >",
              "TCIMContext"},
             {"std::vector<TCIMValue, std::allocator<TCIMValue> >", "std::vector<TCIMValue>"}}) {
        ReplaceAll(name, from, to);
    }
    return name;
}

/// The names of the host's namespace that the plug-in's binary leaves to others to define.
std::set<std::string> UndefinedNames() {
    const auto run = support::RunProgram(NM, {"--dynamic", "--undefined-only", "--demangle", CIMHTTP_PLUGIN});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::set<std::string> names;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
        constexpr std::size_t kNameColumn = 19; // after the address, which is blank, and the kind
        if (line.find("NQORVYX20::") != std::string::npos) {
            names.insert(Shortened(line.substr(kNameColumn)));
        }
    }
    return names;
}

bool IsOfHostClass(const std::string& name) {
    for (const std::string& cls : kHostClasses) {
        if (name.rfind(cls + "::", 0) == 0 || name == "typeinfo for " + cls || name == "vtable for " + cls) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST(HostOperations, ThePluginLinksNoneThatAHostMayNotHave) {
    const std::set<std::string> names = UndefinedNames();
    EXPECT_THAT(names, testing::Contains("TRootObject::GetCoreLogger()"));
    EXPECT_THAT(names, testing::Contains("TCIMReference::AddKeyValue(std::string const&, TCIMValue const&)"));
    for (const std::string& name : names) {
        EXPECT_TRUE(kHostOperations.count(name) != 0 || IsOfHostClass(name)) << name;
    }
}
