#include "operations/Repository.h"

#include "schema/PathText.h"

#include <utility>

namespace demo {

namespace {

[[noreturn]] void Fail(const std::string& what) { throw CimError(CimStatus::kInvalidParameter, what); }

/// The binding of a key, null if there is none. That of the only key need not say its name (DSP0201, INSTANCENAME).
const KeyBinding* FindBinding(const ObjectPath& path, const std::string& key) {
    if (path.keys.size() == 1 && path.keys.front().name.empty())
        return path.keys.data();
    return path.FindKey(key);
}

} // namespace

Repository::Repository(Schema schema, InstanceProviders providers, NamespacePath location)
    : schema_(std::move(schema)), location_(std::move(location)) {
    for (auto& provider : providers) {
        const std::string name(provider->ClassName());
        providers_[name].push_back(std::move(provider));
    }
}

const Class& Repository::FindClass(const std::string& name, CimStatus otherwise) const {
    const Class* const found = schema_.FindClass(name);
    if (!found)
        throw CimError(otherwise, "there is no class " + name);
    return *found;
}

std::vector<const Class*> Repository::WithSubclasses(const Class& top) const {
    auto all = schema_.Subclasses(top.name, true);
    all.insert(all.begin(), &top);
    return all;
}

void Repository::Enumerate(const Class& top, const Visitor& visit) const {
    for (const Class* const declaration : WithSubclasses(top))
        EnumerateExactly(*declaration, visit);
}

void Repository::EnumerateExactly(const Class& declaration, const Visitor& visit) const {
    for (const auto& provider : ProvidersOf(declaration.name))
        provider->Enumerate([&](const Instance& instance) { visit(declaration, instance); });
}

ObjectPath Repository::Checked(const Class& declaration, const ObjectPath& path) const {
    ObjectPath result{declaration.name, {}};
    for (const auto& property : declaration.properties) {
        if (!property.Is("Key"))
            continue;
        const KeyBinding* const binding = FindBinding(path, property.name);
        if (!binding)
            Fail("the path of an instance of " + declaration.name + " needs the key " + property.name);
        result.keys.push_back({property.name, property.type, CheckedValue(property, binding->value)});
    }
    if (result.keys.size() != path.keys.size())
        Fail("the path of an instance of " + declaration.name + " has keys that the class does not have");
    if (!SameName(path.nameSpace, location_.nameSpace))
        result.nameSpace = path.nameSpace;
    return result;
}

std::optional<Instance> Repository::Find(const ObjectPath& path) const {
    const Class* const declaration = schema_.FindClass(path.className);
    if (!declaration)
        return std::nullopt;
    const std::string text = PathText(path);
    std::optional<Instance> found;
    for (const auto& provider : ProvidersOf(path.className))
        provider->EnumerateCandidates(path, [&](const Instance& instance) {
            if (!found && PathText(PathOf(*declaration, instance)) == text)
                found = instance;
        });
    return found;
}

const InstanceProviders& Repository::ProvidersOf(const std::string& className) const {
    static const InstanceProviders kNone;
    const auto found = providers_.find(className);
    return found == providers_.end() ? kNone : found->second;
}

Value Repository::CheckedValue(const Property& key, const Value& value) const {
    if (key.type == CimType::kReference) {
        const ObjectPath* const reference = value.AsReference();
        const Class* const declaration = reference ? schema_.FindClass(reference->className) : nullptr;
        if (!declaration)
            Fail("the key " + key.name + " must be the path of an instance");
        return Value::Reference(Checked(*declaration, *reference));
    }
    const std::string* const text = value.AsText();
    auto normal = text ? NormalForm(key.type, *text) : std::nullopt;
    if (!normal)
        Fail("the key " + key.name + " must be of type " + std::string(TypeName(key.type)));
    return Value::Text(*std::move(normal));
}

} // namespace demo
