#include "Associations.h"

#include "../NameCase.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>

namespace NQORVYX20 {

namespace {

bool IsAdmitted(const std::string& name, const std::string& filter) {
    return filter.empty() || names::IsSameName(name, filter);
}

// A reference property of an association instance.
struct TEnd {
    boost::shared_ptr<ICIMPropertyDecl const> declaration;
    std::string name;
    TCIMReference reference;
};

std::vector<TEnd> EndsOf(ICIMInstance& association, const TCIMContext& context) {
    std::vector<TEnd> ends;
    association.EnumerateProperties(
        [&](boost::shared_ptr<ICIMProperty> property) {
            const TCIMValue& value = property->GetValue(context);
            if (value.IsReference() && !value.IsNull()) {
                const auto declaration = property->GetDeclaration(context);
                ends.push_back({declaration, declaration->GetName(context), value.GetReference()});
            }
            return true;
        },
        context);
    return ends;
}

std::size_t CountKeys(const TCIMReference& reference) {
    std::size_t count = 0;
    reference.EnumerateKeyValues([&count](const std::string&, const TCIMValue&) {
        ++count;
        return true;
    });
    return count;
}

// Paths that come from a remote server may lack the class name and have all key values as text, so that a missing class
// name matches any, and key values are compared as text.
bool NamesSameObject(const TCIMReference& reference, const TCIMReference& path) {
    if (!IsAdmitted(path.GetClassName(), reference.GetClassName()) || CountKeys(reference) != CountKeys(path)) {
        return false;
    }
    bool same = true;
    path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        const TCIMValue other = reference.GetKeyValue(name);
        same = other.IsNull() == value.IsNull() && other.ToString(10) == value.ToString(10);
        return same;
    });
    return same;
}

bool IsNearEnd(const TEnd& end, const TCIMReference& path, const std::string& role) {
    return IsAdmitted(end.name, role) && NamesSameObject(end.reference, path);
}

// The instances found so far, in the order of their discovery and each once.
class TFoundInstances {
  public:
    void Add(const boost::shared_ptr<ICIMInstance>& instance, const TCIMContext& context) {
        if (paths_.insert(instance->BuildPath(context).GetPath()).second) {
            instances_.push_back(instance);
        }
    }

    TInstances Take() { return std::move(instances_); }

  private:
    TInstances instances_;
    std::set<std::string> paths_;
};

// The instance that the end refers to, or an empty pointer. A reference without a class name means the declared class.
boost::shared_ptr<ICIMInstance> Resolve(const TEnd& end, ICIMNamespace& nameSpace, const TCIMContext& context) {
    TCIMReference reference = end.reference;
    if (reference.GetClassName().empty()) {
        reference.SetClassName(end.declaration->GetDefaultValue(context).GetReferencedClass());
    }
    if (reference.GetClassName().empty() || !nameSpace.GetClass(reference.GetClassName(), context)) {
        return {};
    }
    return nameSpace.GetInstance(reference, context);
}

} // namespace

TInstances FindAssociationInstances(const ICIMInstance& instance, const std::string& resultClass,
                                    const std::string& role, TCIMContext context) {
    const TCIMReference path = instance.GetReference(context);
    TFoundInstances found;
    const auto addReferring = [&](boost::shared_ptr<ICIMInstance> association) {
        const std::vector<TEnd> ends = EndsOf(*association, context);
        if (std::any_of(ends.begin(), ends.end(), [&](const TEnd& end) { return IsNearEnd(end, path, role); })) {
            found.Add(association, context);
        }
        return true;
    };
    const auto searchClass = [&](boost::shared_ptr<ICIMClass> associationClass) {
        associationClass->EnumerateInstances(addReferring, false, context);
        return true;
    };
    instance.GetClass(context)->EnumerateAssociationClasses(searchClass, resultClass, role, context);
    return found.Take();
}

TInstances FindAssociatedInstances(const ICIMInstance& instance, const std::string& assocClass,
                                   const std::string& resultClass, const std::string& role,
                                   const std::string& resultRole, TCIMContext context) {
    const boost::shared_ptr<ICIMNamespace> nameSpace = instance.GetClass(context)->GetNamespace(context);
    boost::shared_ptr<ICIMClass> admittedClass;
    if (!resultClass.empty()) {
        admittedClass = nameSpace->GetClass(resultClass, context);
        if (!admittedClass) {
            return {};
        }
    }

    const TCIMReference path = instance.GetReference(context);
    TFoundInstances found;
    const auto addFarEnd = [&](const TEnd& end) {
        const auto other = Resolve(end, *nameSpace, context);
        if (other && (!admittedClass || other->GetClass(context)->IsSubclassOf(admittedClass, context))) {
            found.Add(other, context);
        }
    };
    for (const auto& association : FindAssociationInstances(instance, assocClass, role, context)) {
        const std::vector<TEnd> ends = EndsOf(*association, context);
        for (const TEnd& far : ends) {
            const bool hasNearEnd = std::any_of(ends.begin(), ends.end(), [&](const TEnd& near) {
                return &near != &far && IsNearEnd(near, path, role);
            });
            if (hasNearEnd && IsAdmitted(far.name, resultRole)) {
                addFarEnd(far);
            }
        }
    }
    return found.Take();
}

} // namespace NQORVYX20
