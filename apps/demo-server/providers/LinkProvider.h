#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"

#include <string>
#include <vector>

namespace demo {

/// One side of an association: the name of its reference, and the providers of the objects to which this refers. The
/// providers must outlive whoever holds it.
struct LinkEnd {
    std::string role;
    std::vector<const InstanceProvider*> providers;
    /// Where the objects are; empty for the namespace of the association.
    std::string nameSpace = {};
    /// The schema of that namespace; null for that of the association.
    const Schema* schema = nullptr;
};

/// An association that links every object of the first end, which are few, with every object of the second.
class LinkProvider : public InstanceProvider {
  public:
    /// The schema of an end has the classes of its objects. These schemas must outlive the provider; they can be moved
    /// meanwhile.
    LinkProvider(const Schema& schema, std::string className, LinkEnd first, LinkEnd second);

    std::string_view ClassName() const override { return className_; }
    void Enumerate(const Visitor& visit) const override;
    /// Looks for the object of the second end by its own path.
    void EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const override;
    /// Looks for an object of the second end by its own path.
    void EnumerateReferring(const ObjectPath& object, const Visitor& visit) const override;

  private:
    struct Source {
        const InstanceProvider* provider;
        const Class* declaration;
    };

    struct End {
        std::string role;
        std::vector<Source> sources;
        std::string nameSpace;
    };

    /// The source of an object by its class; null if the object is not of this end.
    static const Source* SourceOf(const End& end, const ObjectPath& object);
    static End Resolve(const Schema& schema, LinkEnd end);
    static Value ReferenceTo(const End& end, const Source& source, const Instance& object);
    std::vector<Value> FirstReferences() const;
    /// Hands the links of one object of the second end to the visitor.
    void Link(const std::vector<Value>& firsts, const Source& source, const Instance& second,
              const Visitor& visit) const;

    std::string className_;
    End first_;
    End second_;
};

} // namespace demo
