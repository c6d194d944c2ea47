#include "model/AssociationFilter.h"

#include "convert/NormalName.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"

namespace NQORVYX20 {

AssociationFilter::AssociationFilter(boost::shared_ptr<ICIMNamespace> nameSpace, const std::string& assocClass,
                                     const std::string& resultClass, const std::string& role,
                                     const std::string& resultRole, TCIMContext context)
    : namespace_(nameSpace),
      context_(context),
      assocClass_(Resolve(assocClass)),
      resultClass_(Resolve(resultClass)),
      role_(role),
      resultRole_(resultRole) {}

bool AssociationFilter::AcceptsAssociation(const ICIMClass& association,
                                           const boost::shared_ptr<ICIMClass>& source) const {
    if (assocClass_ && !association.IsSubclassOf(assocClass_, TCIMContext())) {
        return false;
    }
    if (role_.empty()) {
        return true;
    }
    try {
        const auto declaration = association.GetPropertyDecl(role_, context_);
        return declaration && ReferencedClass(*declaration) == source;
    } catch (const TVYXException&) {
        return false; // a role that cannot be looked up does not refer to the source
    }
}

std::vector<boost::shared_ptr<ICIMClass>> AssociationFilter::FarEnds(const ICIMClass& association,
                                                                     const boost::shared_ptr<ICIMClass>& source) const {
    std::vector<boost::shared_ptr<ICIMClass>> farEnds;
    try {
        const auto references = ReferencesOf(association);
        const std::string nearEnd = NearEnd(references, source);
        const std::string resultRole = NormalizeName(resultRole_);
        for (const auto& [name, declaration] : references) {
            if (name == nearEnd || (!resultRole.empty() && name != resultRole)) {
                continue;
            }
            const auto farEnd = ReferencedClass(*declaration);
            if (farEnd && (!resultClass_ || farEnd->IsSubclassOf(resultClass_, TCIMContext()))) {
                farEnds.push_back(farEnd);
            }
        }
    } catch (const TVYXException&) {
        return {};
    }
    return farEnds;
}

boost::shared_ptr<ICIMClass> AssociationFilter::Resolve(const std::string& name) const {
    if (name.empty()) {
        return {};
    }
    auto cls = namespace_->GetClass(name, context_);
    if (!cls) {
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    return cls;
}

boost::shared_ptr<ICIMClass> AssociationFilter::ReferencedClass(const ICIMPropertyDecl& declaration) const {
    const TCIMValue& reference = declaration.GetDefaultValue(context_);
    return reference.IsReference() ? Resolve(reference.GetReferencedClass()) : boost::shared_ptr<ICIMClass>();
}

AssociationFilter::TReferences AssociationFilter::ReferencesOf(const ICIMClass& association) const {
    TReferences references;
    const auto collect = [&](const boost::shared_ptr<ICIMPropertyDecl>& declaration) {
        if (declaration->GetDefaultValue(context_).IsReference()) {
            references.emplace(NormalizeName(declaration->GetName(context_)), declaration);
        }
        return true;
    };
    association.EnumeratePropertyDecls(collect, context_);
    return references;
}

std::string AssociationFilter::NearEnd(const TReferences& references,
                                       const boost::shared_ptr<ICIMClass>& source) const {
    if (!role_.empty()) {
        return NormalizeName(role_);
    }
    std::string nearEnd;
    for (const auto& [name, declaration] : references) {
        if (ReferencedClass(*declaration) == source) {
            if (!nearEnd.empty()) {
                return {};
            }
            nearEnd = name;
        }
    }
    return nearEnd;
}

} // namespace NQORVYX20
