#pragma once

#include "operations/Repository.h"

#include <functional>
#include <string>
#include <vector>

namespace demo {

/// Which associations a traversal follows. An empty name is no restriction; the others are those of classes of the
/// schema or of references.
struct TraversalFilter {
    /// The association must be of this class or below it.
    std::string associationClass;
    /// The reference by which the association refers to the source.
    std::string role;
    /// The object at the far end must be of this class or below it.
    std::string resultClass;
    /// The reference by which the association refers to the object at the far end.
    std::string resultRole;
};

/// Finds what is associated with a source, which is a class or an instance of one. An association is nothing but an
/// instance of an association class: it links the objects that its references name.
class Traversal {
  public:
    using ReferenceVisitor = std::function<void(const Class&, const Instance&)>;
    using ObjectVisitor = std::function<void(const LocatedObject&)>;

    /// The repository and the source class must outlive the object.
    Traversal(const Repository& repository, const Class& source, const TraversalFilter& filter);

    /// The association classes with a reference that is declared for the source class or one of its superclasses.
    std::vector<const Class*> ReferencingClasses() const;

    /// The classes for which the other references of these association classes are declared, each once.
    std::vector<const Class*> AssociatedClasses() const;

    /// Hands the associations that refer to an instance, which is of the source class, to the visitor.
    void VisitReferences(const ObjectPath& source, const ReferenceVisitor& visit) const;

    /// Hands the objects to which these associations refer by their other references to the visitor, each once, also
    /// those in another namespace of this server. References that lead nowhere in it are left out.
    void VisitAssociated(const ObjectPath& source, const ObjectVisitor& visit) const;

  private:
    /// An association class, and its references that can refer to the source.
    struct Ends {
        const Class* association;
        std::vector<const Property*> near;
    };

    /// The references of an association beside the one by which it refers to the source.
    std::vector<const Property*> FarEnds(const Class& association, const Property& near) const;
    /// Whether the schema has the class as one that the filter lets through.
    bool IsResult(const Schema& schema, const std::string& className) const;

    const Repository& repository_;
    TraversalFilter filter_;
    std::vector<Ends> ends_;
};

} // namespace demo
