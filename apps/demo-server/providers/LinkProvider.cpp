#include "providers/LinkProvider.h"

#include <utility>

namespace demo {

LinkProvider::LinkProvider(const Schema& schema, std::string className, LinkEnd first, LinkEnd second)
    : className_(std::move(className)),
      first_(Resolve(schema, std::move(first))),
      second_(Resolve(schema, std::move(second))) {}

void LinkProvider::Enumerate(const Visitor& visit) const {
    const auto firsts = FirstReferences();
    for (const auto& source : second_.sources)
        source.provider->Enumerate([&](const Instance& second) { Link(firsts, source, second, visit); });
}

void LinkProvider::EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const {
    const KeyBinding* const key = path.FindKey(second_.role);
    const ObjectPath* const wanted = key ? key->value.AsReference() : nullptr;
    if (!wanted)
        return;
    const auto firsts = FirstReferences();
    for (const auto& source : second_.sources)
        if (SameName(source.declaration->name, wanted->className))
            source.provider->EnumerateCandidates(*wanted,
                                                 [&](const Instance& second) { Link(firsts, source, second, visit); });
}

void LinkProvider::Link(const std::vector<Value>& firsts, const Source& source, const Instance& second,
                        const Visitor& visit) const {
    const Value reference = Value::Reference(PathOf(*source.declaration, second));
    for (const Value& first : firsts)
        visit({className_, {{first_.role, first}, {second_.role, reference}}});
}

LinkProvider::End LinkProvider::Resolve(const Schema& schema, LinkEnd end) {
    End result{std::move(end.role), {}};
    for (const InstanceProvider* const provider : end.providers)
        result.sources.push_back({provider, schema.FindClass(provider->ClassName())});
    return result;
}

std::vector<Value> LinkProvider::FirstReferences() const {
    std::vector<Value> references;
    for (const auto& source : first_.sources)
        source.provider->Enumerate(
            [&](const Instance& first) { references.push_back(Value::Reference(PathOf(*source.declaration, first))); });
    return references;
}

} // namespace demo
