// The answers of a server (see CimAnswers), read through the plug-in in both ways as a host reads them: classes up to
// the root, their features, the instances, the texts of all properties. Whatever is answered, a host gets objects or a
// TVYXException; in a compatible namespace looking up a class and its instances throws nothing.

#include "CimAnswers.h"
#include "Cost.h"
#include "LoopbackServer.h"
#include "Require.h"
#include "SilentLog.h"
#include "cimhttp/ContextKeys.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPProperty.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace NQORVYX20;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint32_t kTimeoutMs = 5000;
constexpr std::size_t kMostLevels = 300; // more than a hierarchy may have
constexpr std::size_t kMostInstances = 4;

const TCIMContext kNoContext;

LoopbackServer& Server() {
    static LoopbackServer server(kHttpPort);
    return server;
}

/// False when the host is told that it cannot.
template <typename Operation>
bool Try(const Operation& operation) {
    try {
        operation();
        return true;
    } catch (const TVYXException& exception) {
        Require(exception.GetStatusCode().GetCode() != 0, "success is no error");
        return false;
    }
}

void ReadQualifiers(const ICIMNamedElement& element) {
    element.EnumerateQualifiers(
        [](const auto& qualifier) {
            qualifier->GetName(kNoContext);
            qualifier->GetValue(kNoContext);
            return true;
        },
        kNoContext);
}

void ReadMethods(const ICIMClass& cls) {
    boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)> readParameter = [](const auto& parameter) {
        ReadQualifiers(*parameter);
        return true;
    };
    cls.EnumerateMethodDecls(
        [&](const auto& method) {
            ReadQualifiers(*method);
            method->EnumerateParameterDecls(readParameter, kNoContext);
            return true;
        },
        kNoContext);
}

/// The texts that people read.
void ReadTexts(const boost::shared_ptr<ICIMPropertyDecl>& declaration, const TCIMValue& value) {
    Try([&] {
        TCimHTTPProperty property(declaration, value);
        Try([&] { property.ToString(); });
        Try([&] { property.ToStringVector(); });
        Try([&] { property.SetPrevValue(value); });
        Try([&] { property.PrevValueToString(); });
    });
}

void ReadDeclarations(const boost::shared_ptr<ICIMClass>& cls) {
    ReadQualifiers(*cls);
    cls->EnumeratePropertyDecls(
        [&](const auto& declaration) {
            Require(cls->GetPropertyDecl(declaration->GetName(kNoContext), kNoContext) == declaration,
                    "a declaration is found by its name");
            ReadQualifiers(*declaration);
            ReadTexts(declaration, declaration->GetDefaultValue(kNoContext));
            return true;
        },
        kNoContext);
    ReadMethods(*cls);
    std::size_t keys = 0;
    cls->EnumerateKeyNames([&](const std::string* name) { return ++keys, !name->empty(); }, kNoContext);
}

void WalkUp(boost::shared_ptr<ICIMClass> cls) {
    std::size_t levels = 0;
    while (!cls->IsRootClass(kNoContext)) {
        Require(++levels < kMostLevels, "a hierarchy ends");
        cls = cls->GetSuperClass(kNoContext);
        ReadDeclarations(cls);
    }
}

void ReadInstance(const boost::shared_ptr<ICIMInstance>& instance) {
    const auto cls = instance->GetClass(kNoContext);
    Try([&] { instance->GetReference(kNoContext); });
    instance->EnumerateProperties(
        [&](const auto& property) {
            const auto declaration = property->GetDeclaration(kNoContext);
            const std::string& name = declaration->GetName(kNoContext);
            Require(instance->GetProperty(name, kNoContext) != nullptr, "a property is found by its name");
            ReadTexts(cls->GetPropertyDecl(name, kNoContext), property->GetValue(kNoContext));
            return true;
        },
        kNoContext);
}

void ReadInstances(ICIMNamespace& nameSpace, ICIMClass& cls) {
    std::size_t count = 0;
    cls.EnumerateInstances(
        [&](const auto& instance) {
            ReadInstance(instance);
            Try([&] { nameSpace.GetInstance(instance->BuildPath(kNoContext), kNoContext); });
            return ++count < kMostInstances;
        },
        true, kNoContext);
}

void ReadAssociations(ICIMClass& cls) {
    const auto all = [](const auto& /*object*/) { return true; };
    cls.EnumerateAssociationClasses(all, "", "", kNoContext);
    cls.EnumerateAssociatedClasses(all, "", "", "", "", kNoContext);
    cls.EnumerateSubClasses(all, true, kNoContext);
}

boost::shared_ptr<TCimHTTPNamespace> Connected(const char* reading) {
    const TCIMContext context{{"pluginNameQualDeclValue", TCIMValue("fuzzer")},
                              {kReadingKey, TCIMValue(reading)},
                              {kTimeoutKey, TCIMValue(kTimeoutMs)}};
    auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    nameSpace->connect(Server().Address(), "", "", kHttpPort);
    return nameSpace;
}

/// A class and what is around it. False when something of it cannot be had.
bool ReadClass(TCimHTTPNamespace& nameSpace) {
    return Try([&] {
        const auto cls = nameSpace.GetClass("A", kNoContext);
        if (cls) {
            ReadDeclarations(cls);
            ReadInstances(nameSpace, *cls);
            Try([&] { WalkUp(cls); });
            Try([&] { ReadAssociations(*cls); });
        }
    });
}

void ReadNamespace(TCimHTTPNamespace& nameSpace) {
    const bool isRead = ReadClass(nameSpace);
    Require(isRead || nameSpace.LastFailure(), "what cannot be read has a reason");
    Try([&] { nameSpace.EnumerateRootClasses([](const auto& /*cls*/) { return true; }, kNoContext); });
    nameSpace.TakeIncidents();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SilentLog::Install();
    Server();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const char* const reading : {kFaithfulReading, kCompatibleReading}) {
        CimAnswers answers({reinterpret_cast<const char*>(data), size});
        Server().SetAnswers([&](const std::string& request) { return answers.To(request); });
        {
            const CostGuard guard(kDialogueBounds, size);
            ReadNamespace(*Connected(reading));
        }
        Server().SetAnswers({});
    }
    return 0;
}
