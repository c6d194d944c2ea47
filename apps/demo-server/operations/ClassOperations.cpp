#include "operations/ClassOperations.h"

namespace demo {

namespace {

void GetClass(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const Class& found = repository.FindClass(parameters.Name("ClassName"), CimStatus::kNotFound);
    writer.Start("IRETURNVALUE");
    WriteClass(writer, found, parameters.GetSelection());
    writer.End();
}

/// The classes below the one that the request names, or all that have no superclass if it names none, on one level or
/// on all.
std::vector<const Class*> ClassesBelow(const Repository& repository, const Parameters& parameters) {
    const std::string top = parameters.Name("ClassName");
    if (!top.empty()) {
        repository.FindClass(top, CimStatus::kInvalidClass);
    }
    return repository.GetSchema().Subclasses(top, parameters.Flag("DeepInheritance"));
}

void EnumerateClasses(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const auto classes = ClassesBelow(repository, parameters);
    const Selection selection = parameters.GetSelection();
    writer.Start("IRETURNVALUE");
    for (const Class* const found : classes) {
        WriteClass(writer, *found, selection);
    }
    writer.End();
}

void EnumerateClassNames(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const auto classes = ClassesBelow(repository, parameters);
    writer.Start("IRETURNVALUE");
    for (const Class* const found : classes) {
        WriteClassName(writer, found->name);
    }
    writer.End();
}

} // namespace

Operations ClassOperations() {
    return {{"GetClass",
             {RequiredParameter("ClassName", ParameterKind::kClassName), FlagParameter("LocalOnly", true),
              FlagParameter("IncludeQualifiers", true), FlagParameter("IncludeClassOrigin", false),
              OptionalParameter("PropertyList", ParameterKind::kPropertyList)},
             &GetClass},
            {"EnumerateClasses",
             {OptionalParameter("ClassName", ParameterKind::kClassName), FlagParameter("DeepInheritance", false),
              FlagParameter("LocalOnly", true), FlagParameter("IncludeQualifiers", true),
              FlagParameter("IncludeClassOrigin", false)},
             &EnumerateClasses},
            {"EnumerateClassNames",
             {OptionalParameter("ClassName", ParameterKind::kClassName), FlagParameter("DeepInheritance", false)},
             &EnumerateClassNames}};
}

} // namespace demo
