#include "server/ServedNamespaces.h"

#include "providers/InteropProviders.h"
#include "providers/LiveProviders.h"
#include "providers/StaticProvider.h"
#include "schema/SchemaReader.h"

#include <iterator>
#include <stdexcept>
#include <utility>

namespace demo {

namespace {

NamespaceContent Declared(const std::string& name, std::vector<SchemaSource> sources) {
    const SchemaDocuments documents(std::move(sources));
    Schema schema = ReadSchema(documents);
    InstanceProviders instances = DeclaredInstances(documents, schema, name);
    return {name, std::move(schema), std::move(instances)};
}

/// Puts providers in front of those that there are.
void AddInFront(InstanceProviders front, InstanceProviders& all) {
    all.insert(all.begin(), std::make_move_iterator(front.begin()), std::make_move_iterator(front.end()));
}

std::vector<SchemaSource> OnTopOf(std::vector<SchemaSource> sources, std::vector<SchemaSource> added) {
    sources.insert(sources.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
    return sources;
}

void CheckNames(const SchemasByNamespace& all, const std::string& interop) {
    for (const auto& [name, sources] : all) {
        if (!IsNamespaceName(name)) {
            throw std::invalid_argument('"' + name +
                                        "\" cannot be the name of a namespace; names look like root/example");
        }
    }
    if (SameName(interop, CimService::kNamespace)) {
        throw std::invalid_argument("the Interop namespace cannot be " + interop + ", which shows this machine");
    }
}

/// Takes what is added to a namespace out of the others.
std::vector<SchemaSource> Take(SchemasByNamespace& all, const std::string& name) {
    const auto taken = all.extract(name);
    return taken ? std::move(taken.mapped()) : std::vector<SchemaSource>();
}

} // namespace

std::vector<NamespaceContent> ServedNamespaces(SchemasByNamespace added, const std::string& interop,
                                               const SystemFiles& files, std::size_t volumes) {
    added[interop];
    CheckNames(added, interop);
    std::vector<NamespaceContent> all;
    all.push_back(Declared(CimService::kNamespace, BuiltInSources(Take(added, CimService::kNamespace))));
    all.push_back(Declared(interop, OnTopOf({BaseSource(), InteropSource()}, Take(added, interop))));
    for (auto& [name, sources] : added) {
        all.push_back(Declared(name, OnTopOf({BaseSource()}, std::move(sources))));
    }
    std::vector<std::string> names;
    names.reserve(all.size());
    for (const auto& content : all) {
        names.push_back(content.name);
    }
    NamespaceContent& machine = all[0];
    NamespaceContent& self = all[1];
    AddInFront(LiveProviders(machine.schema, files, volumes), machine.providers);
    AddInFront(InteropProviders(self.schema, {machine.name, machine.schema, machine.providers}, names, files),
               self.providers);
    return all;
}

} // namespace demo
