// A schema document of the demo server: it is refused, each problem with its line, or it makes a server that answers of
// every class and its instances what a client can read.

#include "Cost.h"
#include "DemoAnswer.h"
#include "Require.h"
#include "providers/StaticProvider.h"
#include "schema/SchemaReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using demo::CimRequest;
using demo::CimService;
using demo::Value;

namespace {

void CheckProblems(const demo::SchemaError& error) {
    Require(!error.Problems().empty(), "a schema that is refused has a problem");
    for (const std::string& problem : error.Problems()) {
        Require(problem.find(':') != std::string::npos, "a problem has a place");
    }
}

std::vector<std::string> ClassNames(const demo::Schema& schema) {
    std::vector<std::string> names;
    for (const demo::Class* const declared : schema.Subclasses("", true)) {
        Require(schema.FindClass(declared->name) == declared, "a class is found by its name");
        Require(declared->superclass.empty() || schema.IsA(declared->name, declared->superclass),
                "a class is below its superclass");
        names.push_back(declared->name);
    }
    return names;
}

void Ask(const CimService& service, const std::string& method, const std::string& parameter, Value value) {
    CimRequest request;
    request.messageId = "1";
    request.method = method;
    request.nameSpace = CimService::kNamespace;
    if (!parameter.empty()) {
        const bool isClass = value.AsReference() != nullptr;
        request.parameters.push_back({parameter, isClass ? "CLASSNAME" : "VALUE", std::move(value)});
    }
    CheckAnswer(service, request);
}

Value ClassReference(const std::string& name) {
    demo::ObjectPath path;
    path.className = name;
    return Value::Reference(std::move(path));
}

void CheckService(const CimService& service, const std::vector<std::string>& classes) {
    Ask(service, "EnumerateQualifiers", "", Value());
    Ask(service, "EnumerateClasses", "DeepInheritance", Value::Text("TRUE"));
    for (const std::string& name : classes) {
        Ask(service, "GetClass", "ClassName", ClassReference(name));
        Ask(service, "EnumerateInstances", "ClassName", ClassReference(name));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kSchemaBounds, size);
    try {
        std::vector<demo::SchemaSource> sources;
        sources.push_back({"input.xml", std::string(reinterpret_cast<const char*>(data), size)});
        const demo::SchemaDocuments documents(std::move(sources));
        demo::Schema schema = demo::ReadSchema(documents);
        auto instances = demo::DeclaredInstances(documents, schema, CimService::kNamespace);
        const auto classes = ClassNames(schema);
        CheckService(CimService(std::move(schema), std::move(instances), "server.example"), classes);
    } catch (const demo::SchemaError& error) {
        CheckProblems(error);
    }
    return 0;
}
