#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"
#include "wire/CimError.h"
#include "wire/CimXmlWriter.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

class Namespaces;
class Repository;

/// An object of this server, in whichever namespace it is.
struct LocatedObject {
    const Repository* repository = nullptr;
    /// Within the namespace.
    ObjectPath path;
};

/// A namespace that the operations read: its schema and the instances of its providers. Safe to use from several
/// threads.
class Repository {
  public:
    /// Takes an instance with its class. What it throws ends the enumeration.
    using Visitor = std::function<void(const Class&, const Instance&)>;

    /// The server's namespaces, of which this is one, must outlive it.
    Repository(Schema schema, InstanceProviders providers, NamespacePath location, const Namespaces& server);

    const Schema& GetSchema() const { return schema_; }
    /// Where the objects of the repository are.
    const NamespacePath& Location() const { return location_; }

    /// The class of that name. Throws CimError with the status if there is none.
    const Class& FindClass(const std::string& name, CimStatus otherwise) const;

    /// A class and all classes below it, each ahead of its own subclasses.
    std::vector<const Class*> WithSubclasses(const Class& top) const;

    /// Hands every instance of a class and its subclasses to the visitor.
    void Enumerate(const Class& top, const Visitor& visit) const;

    /// Hands every instance whose class this is, not a subclass, to the visitor.
    void EnumerateExactly(const Class& declaration, const Visitor& visit) const;

    /// What EnumerateExactly() hands over, to be taken one by one at any time. The repository must outlive the cursors.
    std::vector<std::unique_ptr<InstanceCursor>> Open(const Class& declaration) const;

    /// Hands at least the instances of exactly this class with a reference to an object, whose path is checked, to the
    /// visitor; perhaps others as well.
    void EnumerateReferring(const Class& declaration, const ObjectPath& object, const Visitor& visit) const;

    /// The path that a client has sent, as PathOf() gives it: with the keys' types, and their values in normal form.
    /// Throws CimError kInvalidParameter when it does not have the keys of the class, with values of their types.
    ObjectPath Checked(const Class& declaration, const ObjectPath& path) const;

    /// The instance with a checked path, nothing if there is none.
    std::optional<Instance> Find(const ObjectPath& path) const;

    /// What a reference in one of the instances leads to, which need not be there. Nothing when it leads to another
    /// server, to a namespace that this one does not have, or to no path of that namespace.
    std::optional<LocatedObject> Follow(const ObjectPath& reference) const;

  private:
    const InstanceProviders& ProvidersOf(const std::string& className) const;

    Schema schema_;
    std::map<std::string, InstanceProviders, NameLess> providers_;
    NamespacePath location_;
    const Namespaces& server_;
};

} // namespace demo
