#include "operations/InstanceOperations.h"

namespace demo {

namespace {

struct Found {
    const Class& declaration;
    Instance instance;
};

Found FindInstance(const Repository& repository, const ObjectPath& path) {
    const Class& declaration = repository.FindClass(path.className, CimStatus::kInvalidClass);
    auto instance = repository.Find(repository.Checked(declaration, path));
    if (!instance) {
        throw CimError(CimStatus::kNotFound, "there is no such instance of " + declaration.name);
    }
    return {declaration, *std::move(instance)};
}

/// LocalOnly is deprecated for instances (DSP0200, GetInstance), because servers have read it in two ways, and a server
/// may take it as false. This one does: its default is true, so that a client that leaves it out would get instances
/// without their inherited properties. IncludeQualifiers is deprecated, too, but is honoured: qualifiers are sent only
/// to clients that ask for them.
Selection InstanceSelection(const Parameters& parameters) {
    Selection selection = parameters.GetSelection();
    selection.localOnly = false;
    return selection;
}

void GetInstance(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Found found = FindInstance(repository, parameters.Object("InstanceName"));
    writer.Start("IRETURNVALUE");
    WriteInstance(writer, found.declaration, found.declaration, found.instance, InstanceSelection(parameters));
    writer.End();
}

void EnumerateInstances(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Class& top = repository.FindClass(parameters.Name("ClassName"), CimStatus::kInvalidClass);
    const Selection selection = InstanceSelection(parameters);
    // Instances of subclasses are part of the answer in any case; the flag is about their properties.
    const bool deep = parameters.Flag("DeepInheritance");
    writer.Start("IRETURNVALUE");
    repository.Enumerate(top, [&](const Class& declaration, const Instance& instance) {
        writer.Start("VALUE.NAMEDINSTANCE");
        WriteInstanceName(writer, PathOf(declaration, instance));
        WriteInstance(writer, declaration, deep ? declaration : top, instance, selection);
        writer.End();
    });
    writer.End();
}

void EnumerateInstanceNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Class& top = repository.FindClass(parameters.Name("ClassName"), CimStatus::kInvalidClass);
    writer.Start("IRETURNVALUE");
    repository.Enumerate(top, [&](const Class& declaration, const Instance& instance) {
        WriteInstanceName(writer, PathOf(declaration, instance));
    });
    writer.End();
}

void GetProperty(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Found found = FindInstance(repository, parameters.Object("InstanceName"));
    const std::string name = parameters.Name("PropertyName");
    const Property* const property = found.declaration.FindProperty(name);
    if (!property) {
        throw CimError(CimStatus::kNoSuchProperty, found.declaration.name + " has no property " + name);
    }
    writer.Start("IRETURNVALUE");
    WriteValue(writer, found.instance.ValueOf(*property));
    writer.End();
}

} // namespace

Operations InstanceOperations() {
    return {
        {"GetInstance",
         {RequiredParameter("InstanceName", ParameterKind::kInstanceName), FlagParameter("LocalOnly", true),
          FlagParameter("IncludeQualifiers", false), FlagParameter("IncludeClassOrigin", false),
          OptionalParameter("PropertyList", ParameterKind::kPropertyList)},
         &GetInstance},
        {"EnumerateInstances",
         {RequiredParameter("ClassName", ParameterKind::kClassName), FlagParameter("LocalOnly", true),
          FlagParameter("DeepInheritance", true), FlagParameter("IncludeQualifiers", false),
          FlagParameter("IncludeClassOrigin", false), OptionalParameter("PropertyList", ParameterKind::kPropertyList)},
         &EnumerateInstances},
        {"EnumerateInstanceNames",
         {RequiredParameter("ClassName", ParameterKind::kClassName)},
         &EnumerateInstanceNames},
        {"GetProperty",
         {RequiredParameter("InstanceName", ParameterKind::kInstanceName),
          RequiredParameter("PropertyName", ParameterKind::kText)},
         &GetProperty}};
}

} // namespace demo
