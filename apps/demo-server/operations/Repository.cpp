#include "operations/Repository.h"

#include "operations/Namespaces.h"
#include "schema/CheckedPath.h"
#include "schema/PathText.h"

#include <utility>

namespace demo {

Repository::Repository(Schema schema, InstanceProviders providers, NamespacePath location, const Namespaces& server)
    : schema_(std::move(schema)), location_(std::move(location)), server_(server) {
    for (auto& provider : providers) {
        const std::string name(provider->ClassName());
        providers_[name].push_back(std::move(provider));
    }
}

const Class& Repository::FindClass(const std::string& name, CimStatus otherwise) const {
    const Class* const found = schema_.FindClass(name);
    if (!found) {
        throw CimError(otherwise, "there is no class " + name);
    }
    return *found;
}

std::vector<const Class*> Repository::WithSubclasses(const Class& top) const {
    auto all = schema_.Subclasses(top.name, true);
    all.insert(all.begin(), &top);
    return all;
}

void Repository::Enumerate(const Class& top, const Visitor& visit) const {
    for (const Class* const declaration : WithSubclasses(top)) {
        EnumerateExactly(*declaration, visit);
    }
}

void Repository::EnumerateExactly(const Class& declaration, const Visitor& visit) const {
    for (const auto& provider : ProvidersOf(declaration.name)) {
        provider->Enumerate([&](const Instance& instance) { visit(declaration, instance); });
    }
}

std::vector<std::unique_ptr<InstanceCursor>> Repository::Open(const Class& declaration) const {
    std::vector<std::unique_ptr<InstanceCursor>> cursors;
    for (const auto& provider : ProvidersOf(declaration.name)) {
        cursors.push_back(provider->Open());
    }
    return cursors;
}

void Repository::EnumerateReferring(const Class& declaration, const ObjectPath& object, const Visitor& visit) const {
    for (const auto& provider : ProvidersOf(declaration.name)) {
        provider->EnumerateReferring(object, [&](const Instance& instance) { visit(declaration, instance); });
    }
}

ObjectPath Repository::Checked(const Class& declaration, const ObjectPath& path) const {
    try {
        return CheckedPath(schema_, location_.nameSpace, declaration, path);
    } catch (const PathError& error) {
        throw CimError(CimStatus::kInvalidParameter, error.what());
    }
}

std::optional<Instance> Repository::Find(const ObjectPath& path) const {
    const Class* const declaration = schema_.FindClass(path.className);
    if (!declaration) {
        return std::nullopt;
    }
    const std::string text = PathText(path);
    std::optional<Instance> found;
    for (const auto& provider : ProvidersOf(path.className)) {
        provider->EnumerateCandidates(path, [&](const Instance& instance) {
            if (!found && PathText(PathOf(*declaration, instance)) == text) {
                found = instance;
            }
        });
    }
    return found;
}

std::optional<LocatedObject> Repository::Follow(const ObjectPath& reference) const {
    if (reference.IsLocal()) {
        return LocatedObject{this, reference};
    }
    const Repository* const target = reference.host.empty() ? server_.Find(reference.nameSpace) : nullptr;
    const Class* const declaration = target ? target->schema_.FindClass(reference.className) : nullptr;
    if (!declaration) {
        return std::nullopt;
    }
    try {
        return LocatedObject{target,
                             CheckedPath(target->schema_, target->location_.nameSpace, *declaration, reference)};
    } catch (const PathError&) {
        return std::nullopt;
    }
}

const InstanceProviders& Repository::ProvidersOf(const std::string& className) const {
    static const InstanceProviders kNone;
    const auto found = providers_.find(className);
    return found == providers_.end() ? kNone : found->second;
}

} // namespace demo
