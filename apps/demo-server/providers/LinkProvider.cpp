#include "providers/LinkProvider.h"

#include <utility>

namespace demo {

LinkProvider::LinkProvider(const Schema& schema, std::string className, LinkEnd first, LinkEnd second)
    : className_(std::move(className)),
      first_(Resolve(schema, std::move(first))),
      second_(Resolve(schema, std::move(second))) {}

void LinkProvider::Enumerate(const Visitor& visit) const {
    const auto firsts = FirstReferences();
    for (const auto& source : second_.sources) {
        source.provider->Enumerate([&](const Instance& second) { Link(firsts, source, second, visit); });
    }
}

void LinkProvider::EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const {
    const KeyBinding* const key = path.FindKey(second_.role);
    const ObjectPath* const wanted = key ? key->value.AsReference() : nullptr;
    const Source* const source = wanted ? SourceOf(second_, *wanted) : nullptr;
    if (!source) {
        return;
    }
    const auto firsts = FirstReferences();
    source->provider->EnumerateCandidates(*wanted,
                                          [&](const Instance& second) { Link(firsts, *source, second, visit); });
}

void LinkProvider::EnumerateReferring(const ObjectPath& object, const Visitor& visit) const {
    if (SourceOf(first_, object)) {
        return Enumerate(visit);
    }
    EnumerateCandidates({className_, {{second_.role, CimType::kReference, Value::Reference(object)}}}, visit);
}

const LinkProvider::Source* LinkProvider::SourceOf(const End& end, const ObjectPath& object) {
    for (const auto& source : end.sources) {
        if (SameName(source.declaration->name, object.className)) {
            return &source;
        }
    }
    return nullptr;
}

void LinkProvider::Link(const std::vector<Value>& firsts, const Source& source, const Instance& second,
                        const Visitor& visit) const {
    const Value reference = ReferenceTo(second_, source, second);
    for (const Value& first : firsts) {
        visit({className_, {{first_.role, first}, {second_.role, reference}}});
    }
}

LinkProvider::End LinkProvider::Resolve(const Schema& schema, LinkEnd end) {
    End result{std::move(end.role), {}, std::move(end.nameSpace)};
    const Schema& itsSchema = end.schema ? *end.schema : schema;
    for (const InstanceProvider* const provider : end.providers) {
        result.sources.push_back({provider, itsSchema.FindClass(provider->ClassName())});
    }
    return result;
}

Value LinkProvider::ReferenceTo(const End& end, const Source& source, const Instance& object) {
    ObjectPath path = PathOf(*source.declaration, object);
    path.nameSpace = end.nameSpace;
    return Value::Reference(std::move(path));
}

std::vector<Value> LinkProvider::FirstReferences() const {
    std::vector<Value> references;
    for (const auto& source : first_.sources) {
        source.provider->Enumerate(
            [&](const Instance& first) { references.push_back(ReferenceTo(first_, source, first)); });
    }
    return references;
}

} // namespace demo
