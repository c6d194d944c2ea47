#include "operations/PulledOperations.h"

#include "operations/Enumerations.h"
#include "operations/SourceObject.h"

#include <chrono>
#include <utility>

namespace demo {

namespace {

using Kind = Enumeration::Kind;

// --- What an enumeration is of ---

void WritePath(XmlWriter& writer, const SourcedInstance& object) {
    WriteInstancePath(writer, object.repository->Location(), object.path);
}

/// As it is in an answer. `top` is the class that was asked for, if the instance is to have no other properties.
void WriteWithPath(XmlWriter& writer, const SourcedInstance& object, const Class* top, const Selection& selection) {
    writer.Start("VALUE.INSTANCEWITHPATH");
    WritePath(writer, object);
    WriteInstance(writer, *object.declaration, top ? *top : *object.declaration, *object.instance, selection);
    writer.End();
}

Enumerations::Pointer Paths(std::unique_ptr<InstanceSource> source) {
    return std::make_unique<Enumeration>(Kind::kPaths, std::move(source), &WritePath);
}

Enumerations::Pointer Instances(std::unique_ptr<InstanceSource> source, const Class* top, Selection selection) {
    return std::make_unique<Enumeration>(
        Kind::kInstances, std::move(source),
        [top, selection = std::move(selection)](XmlWriter& writer, const SourcedInstance& object) {
            WriteWithPath(writer, object, top, selection);
        });
}

// About LocalOnly see InstanceOperations.cpp.
Selection InstanceSelection(const Parameters& parameters) {
    Selection selection = parameters.GetSelection();
    selection.localOnly = false;
    return selection;
}

/// What is opened: it looks at the parameters, which may be at fault, and returns what makes the enumeration.
using MakeEnumeration = std::function<Enumerations::Pointer()>;
using Opening = MakeEnumeration (*)(const Repository&, const Parameters&);

MakeEnumeration OfInstances(const Repository& repository, const Parameters& parameters) {
    const Class& top = repository.FindClass(parameters.Name("ClassName"), CimStatus::kInvalidClass);
    const Class* const shape = parameters.Flag("DeepInheritance") ? nullptr : &top;
    return [&repository, &top, shape, selection = InstanceSelection(parameters)] {
        return Instances(InstancesOf(repository, top), shape, selection);
    };
}

MakeEnumeration OfInstancePaths(const Repository& repository, const Parameters& parameters) {
    const Class& top = repository.FindClass(parameters.Name("ClassName"), CimStatus::kInvalidClass);
    return [&repository, &top] { return Paths(InstancesOf(repository, top)); };
}

/// From where to follow associations, and which.
struct Way {
    ObjectPath source;
    Traversal traversal;
};

template <typename MakeFilter>
Way FindWay(const Repository& repository, const Parameters& parameters, MakeFilter makeFilter) {
    SourceObject source = FindSource(repository, parameters, "InstanceName");
    return {*std::move(source.path), Traversal(repository, source.declaration, makeFilter(repository, parameters))};
}

MakeEnumeration OfAssociators(const Repository& repository, const Parameters& parameters) {
    return [way = FindWay(repository, parameters, &AssociatorFilter), selection = parameters.GetSelection()] {
        return Instances(AssociatedWith(way.traversal, way.source), nullptr, selection);
    };
}

MakeEnumeration OfAssociatorPaths(const Repository& repository, const Parameters& parameters) {
    return [way = FindWay(repository, parameters, &AssociatorFilter)] {
        return Paths(PathsAssociatedWith(way.traversal, way.source));
    };
}

MakeEnumeration OfReferences(const Repository& repository, const Parameters& parameters) {
    return
        [&repository, way = FindWay(repository, parameters, &ReferenceFilter), selection = parameters.GetSelection()] {
            return Instances(ReferencesTo(repository, way.traversal, way.source), nullptr, selection);
        };
}

MakeEnumeration OfReferencePaths(const Repository& repository, const Parameters& parameters) {
    return [&repository, way = FindWay(repository, parameters, &ReferenceFilter)] {
        return Paths(ReferencesTo(repository, way.traversal, way.source));
    };
}

// --- Operations ---

/// Refuses what the server does not have: filters, and going on after an error.
void CheckWishes(const Parameters& parameters) {
    if (!parameters.Name("FilterQueryLanguage").empty() || !parameters.Name("FilterQuery").empty()) {
        throw CimError(CimStatus::kFilteredEnumerationNotSupported, "this server has no query language");
    }
    if (parameters.Flag("ContinueOnError")) {
        throw CimError(CimStatus::kContinuationOnErrorNotSupported, "this server does not go on after an error");
    }
}

std::optional<std::chrono::seconds> TimeoutIn(const Parameters& parameters) {
    const auto seconds = parameters.Number("OperationTimeout");
    return seconds ? std::optional(std::chrono::seconds(*seconds)) : std::nullopt;
}

/// Writes the next portion, and how to go on. A portion that cannot be written ends the enumeration.
void WritePortion(Enumerations::Use use, std::uint32_t maxObjects, const EnumerationLimits& limits, XmlWriter& writer) {
    writer.Start("IRETURNVALUE");
    use.Get().WriteNext(writer, std::min<std::size_t>(maxObjects, limits.objects), limits.bytes);
    writer.End();
    const bool isAtEnd = use.Get().IsAtEnd();
    if (!isAtEnd) {
        WriteOutputParameter(writer, "EnumerationContext", "string", use.Keep());
    }
    WriteOutputParameter(writer, "EndOfSequence", "boolean", isAtEnd ? "TRUE" : "FALSE");
}

Operation Open(std::string_view name, ParameterDeclarations parameters, Opening opening, Enumerations& enumerations) {
    for (const auto& common :
         {OptionalParameter("FilterQueryLanguage", ParameterKind::kText),
          OptionalParameter("FilterQuery", ParameterKind::kText),
          OptionalParameter("OperationTimeout", ParameterKind::kNumber), FlagParameter("ContinueOnError", false),
          OptionalParameter("MaxObjectCount", ParameterKind::kNumber)}) {
        parameters.push_back(common);
    }
    const auto execute = [&enumerations, opening](const Repository& repository, const Parameters& given,
                                                  XmlWriter& writer) {
        const MakeEnumeration make = opening(repository, given);
        CheckWishes(given);
        WritePortion(enumerations.Open(repository, TimeoutIn(given), make), given.Number("MaxObjectCount").value_or(0),
                     enumerations.Limits(), writer);
    };
    return {name, std::move(parameters), execute, true};
}

Operation Pull(std::string_view name, Kind kind, Enumerations& enumerations) {
    const auto execute = [&enumerations, kind](const Repository& repository, const Parameters& parameters,
                                               XmlWriter& writer) {
        WritePortion(enumerations.Take(repository, parameters.Name("EnumerationContext"), kind),
                     *parameters.Number("MaxObjectCount"), enumerations.Limits(), writer);
    };
    return {name,
            {RequiredParameter("EnumerationContext", ParameterKind::kText),
             RequiredParameter("MaxObjectCount", ParameterKind::kNumber)},
            execute,
            true};
}

Operation Close(Enumerations& enumerations) {
    const auto execute = [&enumerations](const Repository& repository, const Parameters& parameters,
                                         XmlWriter& /*writer*/) {
        enumerations.Close(repository, parameters.Name("EnumerationContext"));
    };
    return {"CloseEnumeration", {RequiredParameter("EnumerationContext", ParameterKind::kText)}, execute, true};
}

Operation Count(Enumerations& enumerations) {
    const auto execute = [&enumerations](const Repository& repository, const Parameters& parameters,
                                         XmlWriter& writer) {
        const auto left = enumerations.Left(repository, parameters.Name("EnumerationContext"));
        writer.Start("IRETURNVALUE");
        if (left) {
            writer.Start("VALUE").Text(std::to_string(*left)).End();
        }
        writer.End();
    };
    return {"EnumerationCount", {RequiredParameter("EnumerationContext", ParameterKind::kText)}, execute};
}

ParameterDeclarations WithInstance(ParameterDeclarations filter) {
    filter.insert(filter.begin(), RequiredParameter("InstanceName", ParameterKind::kInstanceName));
    return filter;
}

ParameterDeclarations WithSelection(ParameterDeclarations parameters) {
    parameters.push_back(FlagParameter("IncludeQualifiers", false));
    parameters.push_back(FlagParameter("IncludeClassOrigin", false));
    parameters.push_back(OptionalParameter("PropertyList", ParameterKind::kPropertyList));
    return parameters;
}

} // namespace

Operations PulledOperations(Enumerations& enumerations) {
    const ParameterDeclarations className = {RequiredParameter("ClassName", ParameterKind::kClassName)};
    ParameterDeclarations ofClass = WithSelection(className);
    ofClass.push_back(FlagParameter("LocalOnly", true));
    ofClass.push_back(FlagParameter("DeepInheritance", true));
    const ParameterDeclarations associators = WithInstance(AssociatorFilterParameters());
    const ParameterDeclarations references = WithInstance(ReferenceFilterParameters());
    return {Open("OpenEnumerateInstances", ofClass, &OfInstances, enumerations),
            Open("OpenEnumerateInstancePaths", className, &OfInstancePaths, enumerations),
            Open("OpenAssociatorInstances", WithSelection(associators), &OfAssociators, enumerations),
            Open("OpenAssociatorInstancePaths", associators, &OfAssociatorPaths, enumerations),
            Open("OpenReferenceInstances", WithSelection(references), &OfReferences, enumerations),
            Open("OpenReferenceInstancePaths", references, &OfReferencePaths, enumerations),
            Pull("PullInstancesWithPath", Kind::kInstances, enumerations),
            Pull("PullInstancePaths", Kind::kPaths, enumerations),
            Close(enumerations),
            Count(enumerations)};
}

} // namespace demo
