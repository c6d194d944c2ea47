#include "model/AssociationFilter.h"

#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"
#include "model/StatusCodes.h"
#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

AssociationFilter::AssociationFilter(boost::shared_ptr<ICIMNamespace> nameSpace, const std::string& assocClass,
                                     const std::string& resultClass, const std::string& role,
                                     const std::string& resultRole, TCIMContext context)
    : fNamespace(nameSpace),
      fContext(context),
      fAssocClass(Resolve(assocClass)),
      fResultClass(Resolve(resultClass)),
      fRole(TCimHTTPNamespace::NormalizeName(role)),
      fResultRole(TCimHTTPNamespace::NormalizeName(resultRole)) {}

bool AssociationFilter::AcceptsAssociation(const ICIMClass& association,
                                           const boost::shared_ptr<ICIMClass>& source) const {
    if (fAssocClass && !association.IsSubclassOf(fAssocClass, TCIMContext())) {
        return false;
    }
    if (fRole.empty()) {
        return true;
    }
    try {
        const auto declaration = association.GetPropertyDecl(fRole, fContext);
        return declaration && ReferencedClass(*declaration) == source;
    } catch (const TVYXException&) {
        return false; // a role that cannot be looked up does not refer to the source
    }
}

std::vector<boost::shared_ptr<ICIMClass>> AssociationFilter::FarEnds(const ICIMClass& association) const {
    std::vector<boost::shared_ptr<ICIMClass>> farEnds;
    const auto collect = [&](const boost::shared_ptr<ICIMPropertyDecl>& declaration) {
        try {
            const auto farEnd = IsFarEnd(*declaration) ? ReferencedClass(*declaration) : boost::shared_ptr<ICIMClass>();
            if (farEnd && (!fResultClass || farEnd->IsSubclassOf(fResultClass, TCIMContext()))) {
                farEnds.push_back(farEnd);
            }
        } catch (const TVYXException&) {
            // An end whose class cannot be looked up is left out.
        }
        return true;
    };
    association.EnumeratePropertyDecls(collect, fContext);
    return farEnds;
}

boost::shared_ptr<ICIMClass> AssociationFilter::Resolve(const std::string& name) const {
    if (name.empty()) {
        return {};
    }
    auto cls = fNamespace->GetClass(name, fContext);
    if (!cls) {
        throw TVYXException(kNotFound);
    }
    return cls;
}

boost::shared_ptr<ICIMClass> AssociationFilter::ReferencedClass(const ICIMPropertyDecl& declaration) const {
    const TCIMValue& reference = declaration.GetDefaultValue(fContext);
    const std::string name = reference.IsReference() ? reference.GetReferencedClass() : std::string();
    return name.empty() ? boost::shared_ptr<ICIMClass>() : fNamespace->GetClass(name, fContext);
}

bool AssociationFilter::IsFarEnd(const ICIMPropertyDecl& declaration) const {
    const std::string name = TCimHTTPNamespace::NormalizeName(declaration.GetName(fContext));
    return fResultRole.empty() ? name != fRole : name == fResultRole && name != fRole;
}

} // namespace NQORVYX20
