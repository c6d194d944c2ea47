#include "operations/AssociationOperations.h"

#include "operations/Traversal.h"

namespace demo {

namespace {

// DSP0200 has no status of its own for classes that these operations do not find: they are invalid parameters.
constexpr CimStatus kNoSuchClass = CimStatus::kInvalidParameter;

/// The parameter ObjectName: a class, or an instance when there is a path.
struct Source {
    const Class& declaration;
    std::optional<ObjectPath> path;
};

Source FindSource(const Repository& repository, const Parameters& parameters) {
    const ObjectPath& name = parameters.Object("ObjectName");
    const Class& declaration = repository.FindClass(name.className, kNoSuchClass);
    if (parameters.IsClassName("ObjectName"))
        return {declaration, std::nullopt};
    ObjectPath path = repository.Checked(declaration, name);
    // An empty answer would be a lie about an instance that is not there.
    if (!repository.Find(path))
        throw CimError(CimStatus::kNotFound, "there is no such instance of " + declaration.name);
    return {declaration, std::move(path)};
}

/// The name of a class that a parameter restricts the answer to, empty if it does not.
std::string ClassFilter(const Repository& repository, const Parameters& parameters, std::string_view name) {
    std::string filter = parameters.Name(name);
    if (!filter.empty())
        repository.FindClass(filter, kNoSuchClass);
    return filter;
}

TraversalFilter AssociatorFilter(const Repository& repository, const Parameters& parameters) {
    return {ClassFilter(repository, parameters, "AssocClass"), parameters.Name("Role"),
            ClassFilter(repository, parameters, "ResultClass"), parameters.Name("ResultRole")};
}

/// Here the associations themselves are the result.
TraversalFilter ReferenceFilter(const Repository& repository, const Parameters& parameters) {
    return {ClassFilter(repository, parameters, "ResultClass"), parameters.Name("Role"), "", ""};
}

void WriteClassNames(const std::vector<const Class*>& classes, const Repository& repository, XmlWriter& writer) {
    for (const Class* const found : classes) {
        writer.Start("OBJECTPATH");
        WriteClassPath(writer, repository.Location(), found->name);
        writer.End();
    }
}

void WriteClasses(const std::vector<const Class*>& classes, const Repository& repository, const Selection& selection,
                  XmlWriter& writer) {
    for (const Class* const found : classes) {
        writer.Start("VALUE.OBJECTWITHPATH");
        WriteClassPath(writer, repository.Location(), found->name);
        WriteClass(writer, *found, selection);
        writer.End();
    }
}

void WriteObjectPath(const ObjectPath& path, const Repository& repository, XmlWriter& writer) {
    writer.Start("OBJECTPATH");
    WriteInstancePath(writer, repository.Location(), path);
    writer.End();
}

void WriteObject(const Class& declaration, const Instance& instance, const Repository& repository,
                 const Selection& selection, XmlWriter& writer) {
    writer.Start("VALUE.OBJECTWITHPATH");
    WriteInstancePath(writer, repository.Location(), PathOf(declaration, instance));
    WriteInstance(writer, declaration, declaration, instance, selection);
    writer.End();
}

void Associators(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Source source = FindSource(repository, parameters);
    const Traversal traversal(repository, source.declaration, AssociatorFilter(repository, parameters));
    const Selection selection = parameters.GetSelection();
    writer.Start("IRETURNVALUE");
    if (!source.path)
        WriteClasses(traversal.AssociatedClasses(), repository, selection, writer);
    else
        traversal.VisitAssociated(*source.path, [&](const LocatedObject& object) {
            const Repository& where = *object.repository;
            // What it names can have gone since, as processes do.
            if (const auto instance = where.Find(object.path))
                WriteObject(*where.GetSchema().FindClass(object.path.className), *instance, where, selection, writer);
        });
    writer.End();
}

void AssociatorNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Source source = FindSource(repository, parameters);
    const Traversal traversal(repository, source.declaration, AssociatorFilter(repository, parameters));
    writer.Start("IRETURNVALUE");
    if (!source.path)
        WriteClassNames(traversal.AssociatedClasses(), repository, writer);
    else
        traversal.VisitAssociated(*source.path, [&](const LocatedObject& object) {
            WriteObjectPath(object.path, *object.repository, writer);
        });
    writer.End();
}

void References(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Source source = FindSource(repository, parameters);
    const Traversal traversal(repository, source.declaration, ReferenceFilter(repository, parameters));
    const Selection selection = parameters.GetSelection();
    writer.Start("IRETURNVALUE");
    if (!source.path)
        WriteClasses(traversal.ReferencingClasses(), repository, selection, writer);
    else
        traversal.VisitReferences(*source.path, [&](const Class& association, const Instance& instance) {
            WriteObject(association, instance, repository, selection, writer);
        });
    writer.End();
}

void ReferenceNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Source source = FindSource(repository, parameters);
    const Traversal traversal(repository, source.declaration, ReferenceFilter(repository, parameters));
    writer.Start("IRETURNVALUE");
    if (!source.path)
        WriteClassNames(traversal.ReferencingClasses(), repository, writer);
    else
        traversal.VisitReferences(*source.path, [&](const Class& association, const Instance& instance) {
            WriteObjectPath(PathOf(association, instance), repository, writer);
        });
    writer.End();
}

// What the four have in common, in groups.

ParameterDeclarations ReferenceFilterParameters() {
    return {RequiredParameter("ObjectName", ParameterKind::kObjectName),
            OptionalParameter("ResultClass", ParameterKind::kClassName),
            OptionalParameter("Role", ParameterKind::kText)};
}

ParameterDeclarations AssociatorFilterParameters() {
    auto parameters = ReferenceFilterParameters();
    parameters.push_back(OptionalParameter("AssocClass", ParameterKind::kClassName));
    parameters.push_back(OptionalParameter("ResultRole", ParameterKind::kText));
    return parameters;
}

ParameterDeclarations WithSelection(ParameterDeclarations parameters) {
    parameters.push_back(FlagParameter("IncludeQualifiers", false));
    parameters.push_back(FlagParameter("IncludeClassOrigin", false));
    parameters.push_back(OptionalParameter("PropertyList", ParameterKind::kPropertyList));
    return parameters;
}

} // namespace

Operations AssociationOperations() {
    return {{"Associators", WithSelection(AssociatorFilterParameters()), &Associators},
            {"AssociatorNames", AssociatorFilterParameters(), &AssociatorNames},
            {"References", WithSelection(ReferenceFilterParameters()), &References},
            {"ReferenceNames", ReferenceFilterParameters(), &ReferenceNames}};
}

} // namespace demo
