#include "operations/Traversal.h"

#include "schema/PathText.h"

#include <algorithm>
#include <unordered_set>

namespace demo {

namespace {

bool HasName(const Property& property, const std::string& wanted) {
    return wanted.empty() || SameName(property.name, wanted);
}

bool RefersTo(const Instance& association, const Property& reference, const std::string& pathText) {
    const ObjectPath* const path = association.ValueOf(reference).AsReference();
    return path && PathText(*path) == pathText;
}

/// The references of an association class that the filter allows and that can refer to instances of the source.
std::vector<const Property*> NearEnds(const Schema& schema, const Class& association, const Class& source,
                                      const std::string& role) {
    std::vector<const Property*> ends;
    for (const auto& property : association.properties) {
        const bool canRefer = property.type == CimType::kReference &&
                              (property.referenceClass.empty() || schema.IsA(source.name, property.referenceClass));
        if (canRefer && HasName(property, role)) {
            ends.push_back(&property);
        }
    }
    return ends;
}

} // namespace

Traversal::Traversal(const Repository& repository, const Class& source, const TraversalFilter& filter)
    : repository_(repository), filter_(filter) {
    const Schema& schema = repository.GetSchema();
    for (const Class* const association : schema.Subclasses("", true)) {
        if (!association->Is("Association") ||
            (!filter.associationClass.empty() && !schema.IsA(association->name, filter.associationClass))) {
            continue;
        }
        auto near = NearEnds(schema, *association, source, filter.role);
        if (!near.empty()) {
            ends_.push_back({association, std::move(near)});
        }
    }
}

std::vector<const Class*> Traversal::ReferencingClasses() const {
    std::vector<const Class*> classes;
    for (const auto& ends : ends_) {
        classes.push_back(ends.association);
    }
    return classes;
}

std::vector<const Class*> Traversal::AssociatedClasses() const {
    std::vector<const Class*> classes;
    for (const auto& ends : ends_) {
        for (const Property* const near : ends.near) {
            for (const Property* const far : FarEnds(*ends.association, *near)) {
                const Class* const found = repository_.GetSchema().FindClass(far->referenceClass);
                if (found && IsResult(repository_.GetSchema(), found->name) &&
                    std::find(classes.begin(), classes.end(), found) == classes.end()) {
                    classes.push_back(found);
                }
            }
        }
    }
    return classes;
}

void Traversal::VisitReferences(const ObjectPath& source, const ReferenceVisitor& visit) const {
    const std::string text = PathText(source);
    for (const auto& ends : ends_) {
        repository_.EnumerateReferring(
            *ends.association, source, [&](const Class& association, const Instance& instance) {
                if (std::any_of(ends.near.begin(), ends.near.end(),
                                [&](const Property* near) { return RefersTo(instance, *near, text); })) {
                    visit(association, instance);
                }
            });
    }
}

void Traversal::VisitAssociated(const ObjectPath& source, const ObjectVisitor& visit) const {
    const std::string text = PathText(source);
    std::unordered_set<std::string> visited;
    const auto visitFar = [&](const Value& reference) {
        const ObjectPath* const path = reference.AsReference();
        const auto object = path ? repository_.Follow(*path) : std::nullopt;
        if (object && IsResult(object->repository->GetSchema(), object->path.className) &&
            visited.insert(object->repository->Location().nameSpace + PathText(object->path)).second) {
            visit(*object);
        }
    };
    for (const auto& ends : ends_) {
        repository_.EnumerateReferring(*ends.association, source,
                                       [&](const Class& association, const Instance& instance) {
                                           for (const Property* const near : ends.near) {
                                               if (!RefersTo(instance, *near, text)) {
                                                   continue;
                                               }
                                               for (const Property* const far : FarEnds(association, *near)) {
                                                   visitFar(instance.ValueOf(*far));
                                               }
                                           }
                                       });
    }
}

std::vector<const Property*> Traversal::FarEnds(const Class& association, const Property& near) const {
    std::vector<const Property*> ends;
    for (const auto& property : association.properties) {
        if (property.type == CimType::kReference && &property != &near && HasName(property, filter_.resultRole)) {
            ends.push_back(&property);
        }
    }
    return ends;
}

bool Traversal::IsResult(const Schema& schema, const std::string& className) const {
    return filter_.resultClass.empty() || schema.IsA(className, filter_.resultClass);
}

} // namespace demo
