#include "operations/Namespaces.h"

#include <cassert>
#include <utility>

namespace demo {

void Namespaces::Add(Schema schema, InstanceProviders providers, NamespacePath location) {
    std::string name = location.nameSpace;
    [[maybe_unused]] const auto [position, added] =
        repositories_.try_emplace(std::move(name), std::move(schema), std::move(providers), std::move(location), *this);
    assert(added);
}

const Repository* Namespaces::Find(std::string_view name) const {
    const auto found = repositories_.find(name);
    return found == repositories_.end() ? nullptr : &found->second;
}

} // namespace demo
