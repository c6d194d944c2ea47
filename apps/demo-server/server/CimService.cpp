#include "server/CimService.h"

#include "server/Parameters.h"
#include "wire/CimXmlWriter.h"

#include <utility>

namespace demo {

namespace {

constexpr std::string_view kNamespace = "root/cimv2";

} // namespace

CimService::CimService(Schema schema, InstanceProviders providers)
    : schema_(std::move(schema)), providers_(std::move(providers)) {}

void CimService::Execute(const CimRequest& request, XmlWriter& writer) const {
    using Operation = void (CimService::*)(const CimRequest&, XmlWriter&) const;
    static const std::map<std::string, Operation, NameLess> kOperations{
        {"GetClass", &CimService::GetClass},
        {"EnumerateClassNames", &CimService::EnumerateClassNames},
        {"EnumerateInstances", &CimService::EnumerateInstances},
        {"GetQualifier", &CimService::GetQualifier},
    };
    if (request.kind == CimRequest::Kind::kExtrinsic)
        throw CimError(CimStatus::kNotSupported, "this server does not invoke methods of classes");
    const auto operation = kOperations.find(request.method);
    if (operation == kOperations.end())
        throw CimError(CimStatus::kNotSupported, request.method);
    if (!SameName(request.nameSpace, kNamespace))
        throw CimError(CimStatus::kInvalidNamespace, request.nameSpace);
    (this->*operation->second)(request, writer);
}

void CimService::GetClass(const CimRequest& request, XmlWriter& writer) const {
    const Parameters parameters(request,
                                {"ClassName", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin", "PropertyList"});
    Selection selection;
    selection.localOnly = parameters.Flag("LocalOnly", true);
    selection.includeQualifiers = parameters.Flag("IncludeQualifiers", true);
    selection.includeClassOrigin = parameters.Flag("IncludeClassOrigin", false);
    selection.propertyList = parameters.PropertyList("PropertyList");
    const Class& found = FindClass(parameters.RequiredClassName("ClassName"), CimStatus::kNotFound);

    writer.Start("IRETURNVALUE");
    WriteClass(writer, found, selection);
    writer.End();
}

void CimService::EnumerateClassNames(const CimRequest& request, XmlWriter& writer) const {
    const Parameters parameters(request, {"ClassName", "DeepInheritance"});
    const bool deep = parameters.Flag("DeepInheritance", false);
    const std::string top = parameters.ClassName("ClassName").value_or("");
    if (!top.empty())
        FindClass(top, CimStatus::kInvalidClass);

    writer.Start("IRETURNVALUE");
    for (const Class* const found : schema_.Subclasses(top, deep))
        WriteClassName(writer, found->name);
    writer.End();
}

void CimService::EnumerateInstances(const CimRequest& request, XmlWriter& writer) const {
    const Parameters parameters(request, {"ClassName", "LocalOnly", "DeepInheritance", "IncludeQualifiers",
                                          "IncludeClassOrigin", "PropertyList"});
    Selection selection;
    // LocalOnly is deprecated for instances because servers have read it in two ways, and DSP0200 lets a server take it
    // as false. An instance without its inherited properties would serve nobody.
    parameters.Flag("LocalOnly", true);
    const bool deep = parameters.Flag("DeepInheritance", true);
    selection.includeQualifiers = parameters.Flag("IncludeQualifiers", false);
    selection.includeClassOrigin = parameters.Flag("IncludeClassOrigin", false);
    selection.propertyList = parameters.PropertyList("PropertyList");
    const Class& top = FindClass(parameters.RequiredClassName("ClassName"), CimStatus::kInvalidClass);

    auto wanted = schema_.Subclasses(top.name, true);
    wanted.insert(wanted.begin(), &top);
    writer.Start("IRETURNVALUE");
    for (const Class* const declaration : wanted)
        for (const auto& provider : providers_) {
            if (!SameName(provider->ClassName(), declaration->name))
                continue;
            provider->Enumerate([&](const Instance& instance) {
                writer.Start("VALUE.NAMEDINSTANCE");
                WriteInstanceName(writer, PathOf(*declaration, instance));
                WriteInstance(writer, *declaration, deep ? *declaration : top, instance, selection);
                writer.End();
            });
        }
    writer.End();
}

void CimService::GetQualifier(const CimRequest& request, XmlWriter& writer) const {
    const Parameters parameters(request, {"QualifierName"});
    const std::string name = parameters.RequiredText("QualifierName");
    const QualifierDeclaration* const found = schema_.FindQualifier(name);
    if (!found)
        throw CimError(CimStatus::kNotFound, name);

    writer.Start("IRETURNVALUE");
    WriteQualifierDeclaration(writer, *found);
    writer.End();
}

const Class& CimService::FindClass(const std::string& name, CimStatus otherwise) const {
    const Class* const found = schema_.FindClass(name);
    if (!found)
        throw CimError(otherwise, name);
    return *found;
}

} // namespace demo
