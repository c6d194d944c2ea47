#include "schema/Schema.h"

#include <cassert>
#include <utility>

namespace demo {

const QualifierDeclaration* Schema::FindQualifier(std::string_view name) const {
    const auto found = qualifiers_.find(name);
    return found == qualifiers_.end() ? nullptr : &found->second;
}

const Class* Schema::FindClass(std::string_view name) const {
    const auto found = classes_.find(name);
    return found == classes_.end() ? nullptr : &found->second;
}

bool Schema::IsA(std::string_view name, std::string_view ancestor) const {
    for (const Class* found = FindClass(name); found; found = FindClass(found->superclass)) {
        if (SameName(found->name, ancestor)) {
            return true;
        }
    }
    return false;
}

std::vector<const QualifierDeclaration*> Schema::Qualifiers() const {
    std::vector<const QualifierDeclaration*> all;
    all.reserve(qualifiers_.size());
    for (const auto& [name, declaration] : qualifiers_) {
        all.push_back(&declaration);
    }
    return all;
}

std::vector<const Class*> Schema::Subclasses(std::string_view name, bool deep) const {
    const auto found = subclasses_.find(name);
    if (found == subclasses_.end()) {
        return {};
    }
    if (!deep) {
        return found->second;
    }
    std::vector<const Class*> all;
    for (const Class* const direct : found->second) {
        all.push_back(direct);
        const auto below = Subclasses(direct->name, deep);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

const QualifierDeclaration& Schema::Add(QualifierDeclaration declaration) {
    const auto [position, added] = qualifiers_.emplace(declaration.name, std::move(declaration));
    assert(added);
    static_cast<void>(added);
    return position->second;
}

const Class& Schema::Add(Class declaration) {
    const auto [position, added] = classes_.emplace(declaration.name, std::move(declaration));
    assert(added);
    static_cast<void>(added);
    subclasses_[position->second.superclass].push_back(&position->second);
    return position->second;
}

} // namespace demo
