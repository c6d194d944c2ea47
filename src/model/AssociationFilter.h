#pragma once

#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMClass;
class ICIMNamespace;
class ICIMPropertyDecl;

/// Decides which association classes, and which classes at their far ends, a traversal reports. A filter that is empty
/// accepts everything. An association that makes a lookup fail, because a role is no valid name or a class that it
/// refers to cannot be had, is passed over.
class AssociationFilter {
  public:
    /// Resolves the class filters through the namespace, which may fetch the classes. Throws TVYXException eNotFound
    /// for a class that the namespace does not have, eInvalidName for a name that is invalid.
    AssociationFilter(boost::shared_ptr<ICIMNamespace> nameSpace, const std::string& assocClass,
                      const std::string& resultClass, const std::string& role, const std::string& resultRole,
                      TCIMContext context);

    /// True when the association passes the class filter and its `role` property, if one is asked for, refers to
    /// `source`: to that object, not just to a class of its name.
    bool AcceptsAssociation(const ICIMClass& association, const boost::shared_ptr<ICIMClass>& source) const;

    /// The classes at the far ends of an accepted association, in the order of its properties, as far as they pass the
    /// result class filter. A far end is any reference property but the near one, or the one named `resultRole` when it
    /// is given. The near one is `role`; without a role, it is the only property that refers to `source`. Where several
    /// refer to it, each is the far end of another, so that none is left out.
    std::vector<boost::shared_ptr<ICIMClass>> FarEnds(const ICIMClass& association,
                                                      const boost::shared_ptr<ICIMClass>& source) const;

  private:
    /// Reference properties by their normalised names.
    using TReferences = std::map<std::string, boost::shared_ptr<ICIMPropertyDecl>>;

    boost::shared_ptr<ICIMClass> Resolve(const std::string& name) const;
    boost::shared_ptr<ICIMClass> ReferencedClass(const ICIMPropertyDecl& declaration) const;
    TReferences ReferencesOf(const ICIMClass& association) const;
    std::string NearEnd(const TReferences& references, const boost::shared_ptr<ICIMClass>& source) const;

    boost::shared_ptr<ICIMNamespace> namespace_;
    TCIMContext context_;
    boost::shared_ptr<ICIMClass> assocClass_;
    boost::shared_ptr<ICIMClass> resultClass_;
    std::string role_;
    std::string resultRole_;
};

} // namespace NQORVYX20
