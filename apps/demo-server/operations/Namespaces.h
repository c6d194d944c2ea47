#pragma once

#include "operations/Repository.h"

#include <map>
#include <string>
#include <string_view>

namespace demo {

/// The namespaces of a server. Filled once and not changed afterwards; then safe to use from several threads.
class Namespaces {
  public:
    Namespaces() = default;
    Namespaces(const Namespaces&) = delete;
    Namespaces& operator=(const Namespaces&) = delete;

    /// Adds a namespace, the name of which differs from those of the others in more than case.
    void Add(Schema schema, InstanceProviders providers, NamespacePath location);

    /// The namespace of that name, null if there is none.
    const Repository* Find(std::string_view name) const;

  private:
    std::map<std::string, Repository, NameLess> repositories_;
};

} // namespace demo
