#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMProperty.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"
#include "support/CimServer.h"
#include "support/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace NQORVYX20;
using testing::AnyOf;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;

extern "C" bool isTrapSet; // of the stand-in

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// As long as it lives, a call of the stand-in ends the process.
class SetTrap {
  public:
    SetTrap() { isTrapSet = true; }
    ~SetTrap() { isTrapSet = false; }
    SetTrap(const SetTrap&) = delete;
    SetTrap& operator=(const SetTrap&) = delete;
};

/// The demangled names of what a library defines for others: of functions, or of everything but the version itself.
std::set<std::string> NamesIn(const std::string& library, bool isOfFunctions) {
    const auto run = support::RunProgram(NM, {"--dynamic", "--defined-only", "--demangle", library});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::set<std::string> names;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
        constexpr std::size_t kKind = 17; // after the address
        if (line.size() > kKind + 2 && (isOfFunctions ? line[kKind] == 'T' : line[kKind] != 'A')) {
            names.insert(line.substr(kKind + 2, line.find('@') - kKind - 2));
        }
    }
    return names;
}

std::set<std::string> FunctionsOf(const std::string& library) { return NamesIn(library, true); }

/// These names without the inline namespace.
std::set<std::string> NamesInPegasusItself(const std::set<std::string>& names) {
    const std::string inlineNamespace = "bundled::";
    std::set<std::string> shortened;
    for (std::string name : names) {
        for (auto at = name.find(inlineNamespace); at != std::string::npos; at = name.find(inlineNamespace, at)) {
            name.erase(at, inlineNamespace.size());
        }
        shortened.insert(name);
    }
    return shortened;
}

TCIMContext CompatibleContext() { return {{"pluginNameQualDeclValue", TCIMValue("test")}}; }

TCIMContext FaithfulContext() {
    TCIMContext context = CompatibleContext();
    context["cimhttp.reading"] = TCIMValue("faithful");
    return context;
}

/// A namespace of the plug-in, connected to the server on this process's address.
boost::shared_ptr<ICIMNamespace> ConnectedNamespace(const TCIMContext& context) {
    void* const library = ::dlopen(CIMHTTP_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(library, nullptr) << ::dlerror();
    auto nameSpace =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cimhttp")->AllocateNamespace(context, false);
    using Connect = void(ICIMNamespace*, std::string, std::string, std::string, int);
    auto* const connect = reinterpret_cast<Connect*>(::dlsym(
        library,
        "_ZN9NQORVYX2017TCimHTTPNamespace7connectENSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES6_S6_i"));
    connect(nameSpace.get(), support::LoopbackAddress(), "", "", kHttpPort);
    return nameSpace;
}

std::vector<std::string> NamesOfFans(const TCIMContext& context) {
    const auto nameSpace = ConnectedNamespace(context);
    std::vector<std::string> names;
    nameSpace->GetClass("TEST_Fan", TCIMContext())
        ->EnumerateInstances(
            [&](const auto& instance) {
                names.push_back(instance->GetProperty("Name", TCIMContext())->GetValue(TCIMContext()).ToString(10));
                return true;
            },
            true, TCIMContext());
    return names;
}

class BesidePegasusTest : public testing::Test {
  protected:
    BesidePegasusTest() {
        server_.Listen(kHttpPort);
        const std::string name = "<PROPERTY NAME=\"Name\" TYPE=\"string\">";
        server_.Answer(
            "GetClass", "TEST_Fan",
            "<CLASS NAME=\"TEST_Fan\">" + name +
                "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY></CLASS>");
        server_.Answer("GetQualifier", "Key",
                       "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\"><SCOPE PROPERTY=\"true\"/>"
                       "</QUALIFIER.DECLARATION>");
        server_.Answer("EnumerateInstances", "TEST_Fan",
                       "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Fan\"><KEYBINDING NAME=\"Name\"><KEYVALUE>"
                       "f1</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Fan\">" +
                           name + "<VALUE>f1</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>");
    }

    support::CimServer server_;
};

} // namespace

TEST(Exports, TheClientLibraryOffersItsApiAndNothingElse) {
    const auto names = NamesIn(CIMHTTP_CLIENT, false);
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) {
        EXPECT_THAT(name, HasSubstr("Pegasus::bundled::"));
    }
    EXPECT_THAT(NamesIn(CIMHTTP_CLIENT_TLS, false), ElementsAre("PegasusTlsTransport"));
}

TEST(Exports, ThePluginOffersNothingOfTheLibrariesThatItIsMadeWith) {
    const auto names = NamesIn(CIMHTTP_PLUGIN, false);
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) {
        // The last one where the name of a template over a lambda cannot be made readable.
        EXPECT_THAT(name, AnyOf(HasSubstr("NQORVYX20::"), HasSubstr("TCimHTTPRequestedClassParser"),
                                HasSubstr("NK9NQORVYX20")));
    }
}

TEST(Standin, HasTheSymbolsOfTheApiOutsideTheInlineNamespace) {
    const auto standIn = FunctionsOf(STAND_IN);
    std::set<std::string> common;
    for (const std::string& name : NamesInPegasusItself(FunctionsOf(CIMHTTP_CLIENT))) {
        if (standIn.count(name) != 0) {
            common.insert(name);
        }
    }
    EXPECT_GT(common.size(), 200U);
    EXPECT_THAT(common, testing::Contains("Pegasus::CIMClient::connect(Pegasus::String const&, unsigned int, "
                                          "Pegasus::String const&, Pegasus::String const&)"));
    for (const std::string& name : FunctionsOf(CIMHTTP_CLIENT)) {
        EXPECT_EQ(standIn.count(name), 0U) << name << " is in both";
    }
}

TEST(Standin, EndsTheProcessWhenItIsCalled) {
    auto* const makeString = reinterpret_cast<void (*)(void*, const char*)>(
        ::dlsym(RTLD_DEFAULT, "_ZN7Pegasus6StringC1EPKc")); // String::String(const char*)
    ASSERT_NE(makeString, nullptr);
    EXPECT_EXIT(
        {
            const SetTrap trap;
            void* string = nullptr;
            makeString(&string, "text");
        },
        ExitedWithCode(86), "a function of the other client library was called");
}

TEST_F(BesidePegasusTest, ThePluginReadsByItsOwnClientLibrary) {
    const SetTrap trap;
    EXPECT_THAT(NamesOfFans(CompatibleContext()), ElementsAre("f1"));
    EXPECT_THAT(NamesOfFans(FaithfulContext()), ElementsAre("f1"));
}

TEST_F(BesidePegasusTest, ThePluginCatchesTheExceptionsOfItsOwnClientLibrary) {
    const SetTrap trap;
    const auto nameSpace = ConnectedNamespace(CompatibleContext());
    server_.Fail("GetClass", "TEST_Other", 6, "no such class");
    EXPECT_FALSE(nameSpace->GetClass("TEST_Other", TCIMContext()));
    server_.Stop();
    EXPECT_FALSE(nameSpace->GetClass("TEST_Third", TCIMContext()));
}
