#include "operations/AssociationOperations.h"

#include "operations/SourceObject.h"

namespace demo {

namespace {

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
    const SourceObject source = FindSource(repository, parameters, "ObjectName");
    const Traversal traversal(repository, source.declaration, AssociatorFilter(repository, parameters));
    const Selection selection = parameters.GetSelection();
    writer.Start("IRETURNVALUE");
    if (!source.path) {
        WriteClasses(traversal.AssociatedClasses(), repository, selection, writer);
    } else {
        traversal.VisitAssociated(*source.path, [&](const LocatedObject& object) {
            const Repository& where = *object.repository;
            // What it names can have gone since, as processes do.
            if (const auto instance = where.Find(object.path)) {
                WriteObject(*where.GetSchema().FindClass(object.path.className), *instance, where, selection, writer);
            }
        });
    }
    writer.End();
}

void AssociatorNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const SourceObject source = FindSource(repository, parameters, "ObjectName");
    const Traversal traversal(repository, source.declaration, AssociatorFilter(repository, parameters));
    writer.Start("IRETURNVALUE");
    if (!source.path) {
        WriteClassNames(traversal.AssociatedClasses(), repository, writer);
    } else {
        traversal.VisitAssociated(*source.path, [&](const LocatedObject& object) {
            WriteObjectPath(object.path, *object.repository, writer);
        });
    }
    writer.End();
}

void References(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const SourceObject source = FindSource(repository, parameters, "ObjectName");
    const Traversal traversal(repository, source.declaration, ReferenceFilter(repository, parameters));
    const Selection selection = parameters.GetSelection();
    writer.Start("IRETURNVALUE");
    if (!source.path) {
        WriteClasses(traversal.ReferencingClasses(), repository, selection, writer);
    } else {
        traversal.VisitReferences(*source.path, [&](const Class& association, const Instance& instance) {
            WriteObject(association, instance, repository, selection, writer);
        });
    }
    writer.End();
}

void ReferenceNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const SourceObject source = FindSource(repository, parameters, "ObjectName");
    const Traversal traversal(repository, source.declaration, ReferenceFilter(repository, parameters));
    writer.Start("IRETURNVALUE");
    if (!source.path) {
        WriteClassNames(traversal.ReferencingClasses(), repository, writer);
    } else {
        traversal.VisitReferences(*source.path, [&](const Class& association, const Instance& instance) {
            WriteObjectPath(PathOf(association, instance), repository, writer);
        });
    }
    writer.End();
}

// What the four have in common, in groups.

/// The object comes first.
ParameterDeclarations WithObject(ParameterDeclarations filter) {
    filter.insert(filter.begin(), RequiredParameter("ObjectName", ParameterKind::kObjectName));
    return filter;
}

ParameterDeclarations WithSelection(ParameterDeclarations parameters) {
    parameters.push_back(FlagParameter("IncludeQualifiers", false));
    parameters.push_back(FlagParameter("IncludeClassOrigin", false));
    parameters.push_back(OptionalParameter("PropertyList", ParameterKind::kPropertyList));
    return parameters;
}

} // namespace

Operations AssociationOperations() {
    return {{"Associators", WithSelection(WithObject(AssociatorFilterParameters())), &Associators},
            {"AssociatorNames", WithObject(AssociatorFilterParameters()), &AssociatorNames},
            {"References", WithSelection(WithObject(ReferenceFilterParameters())), &References},
            {"ReferenceNames", WithObject(ReferenceFilterParameters()), &ReferenceNames}};
}

} // namespace demo
