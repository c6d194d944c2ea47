#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

#include "host/TCIMContext.h"

namespace NQORVYX20 {

class ICIMClass;
class ICIMNamespace;
class ICIMPropertyDecl;

/// Decides which association classes, and which classes at their far ends, a traversal reports. A filter that is empty
/// accepts everything.
class AssociationFilter {
  public:
    /// Resolves the class filters through the namespace, which may fetch the classes. Throws TVYXException 15 for a
    /// class that the namespace does not have.
    AssociationFilter(boost::shared_ptr<ICIMNamespace> nameSpace, const std::string& assocClass,
                      const std::string& resultClass, const std::string& role, const std::string& resultRole,
                      TCIMContext context);

    /// True when the association passes the class filter and its `role` property, if one is asked for, refers to
    /// `source`.
    bool AcceptsAssociation(const ICIMClass& association, const boost::shared_ptr<ICIMClass>& source) const;

    /// The classes that the association's reference properties other than `role` refer to, or that `resultRole` refers
    /// to when it is given, as far as they pass the result class filter.
    std::vector<boost::shared_ptr<ICIMClass>> FarEnds(const ICIMClass& association) const;

  private:
    boost::shared_ptr<ICIMClass> Resolve(const std::string& name) const;
    boost::shared_ptr<ICIMClass> ReferencedClass(const ICIMPropertyDecl& declaration) const;
    bool IsFarEnd(const ICIMPropertyDecl& declaration) const;

    boost::shared_ptr<ICIMNamespace> fNamespace;
    TCIMContext fContext;
    boost::shared_ptr<ICIMClass> fAssocClass;
    boost::shared_ptr<ICIMClass> fResultClass;
    std::string fRole;
    std::string fResultRole;
};

} // namespace NQORVYX20
