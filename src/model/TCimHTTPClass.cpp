#include "model/TCimHTTPClass.h"

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "host/TVYXException.h"
#include "model/AssociationFilter.h"
#include "model/Reading.h"
#include "model/Required.h"
#include "model/SchemaNamespace.h"
#include "model/TCimHTTPInstance.h"
#include "model/TCimHTTPMethodDecl.h"
#include "model/TCimHTTPProperty.h"
#include "model/TCimHTTPPropertyDecl.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

[[noreturn]] void Refuse(TVYXStatusCode::EStatusCode code, const std::string& text) {
    LogError(text);
    throw TVYXException(code);
}

} // namespace

TCimHTTPClass::TCimHTTPClass(boost::shared_ptr<SchemaNamespace> nameSpace, const std::string& name,
                             boost::shared_ptr<TCimHTTPClass> /*superClass*/)
    : namespace_(nameSpace),
      reading_(nameSpace ? nameSpace->GetReading() : boost::shared_ptr<Reading>()),
      name_(name),
      names_(reading_ ? reading_->Names() : NameRule::kHost),
      qualifiers_(names_) {}

TCimHTTPClass::~TCimHTTPClass() {
    try {
        ReleaseSubClasses();
    } catch (...) {
        // There is no memory for the list; they are released one within the other.
    }
}

/// Releases the classes below that have no other owner, in a loop: the server decides how many levels there are.
void TCimHTTPClass::ReleaseSubClasses() {
    auto released = std::exchange(subClasses_, {}).TakeClasses();
    while (!released.empty()) {
        const auto cls = std::move(released.back());
        released.pop_back();
        if (cls.use_count() == 1) {
            auto below = std::exchange(cls->subClasses_, {}).TakeClasses();
            std::move(below.begin(), below.end(), std::back_inserter(released));
        }
    }
}

// --- Materialisation ---------------------------------------------------------------------------------------------

boost::shared_ptr<TCimHTTPClass> TCimHTTPClass::Make(const boost::shared_ptr<SchemaNamespace>& nameSpace,
                                                     const std::string& name,
                                                     const boost::shared_ptr<TCimHTTPClass>& superClass) {
    auto cls = boost::make_shared<TCimHTTPClass>(nameSpace, name, superClass);
    cls->Initialize();
    return cls;
}

void TCimHTTPClass::Initialize() {
    if (superClass_.lock() || !superClassName_.empty()) {
        return;
    }
    const auto nameSpace = LockNamespace();
    if (name_ == SchemaNamespace::kRootClassName) {
        superClass_ = nameSpace->GetRootClass();
        return;
    }
    Required(reading_, TVYXStatusCode::eRemoteConnectionFailed).Define(*this);
}

void TCimHTTPClass::SetSuperClass(const boost::shared_ptr<ICIMClass>& superClass) { superClass_ = superClass; }

boost::shared_ptr<TCimHTTPClass> TCimHTTPClass::KnownSuperClass() const {
    return boost::dynamic_pointer_cast<TCimHTTPClass>(superClass_.lock());
}

bool TCimHTTPClass::KeepPropertyDecl(const std::string& key, const boost::shared_ptr<ICIMPropertyDecl>& declaration) {
    return propertyDecls_.Add(key, boost::dynamic_pointer_cast<TCimHTTPPropertyDecl>(declaration));
}

bool TCimHTTPClass::KeepMethodDecl(const std::string& key, const boost::shared_ptr<ICIMMethodDecl>& declaration) {
    return methodDecls_.Add(key, boost::dynamic_pointer_cast<TCimHTTPMethodDecl>(declaration));
}

// --- Hierarchy ---------------------------------------------------------------------------------------------------

void TCimHTTPClass::AddToNamespace(TCIMContext context) {
    LockNamespace()->AddClass(shared_from_this());
    GetSuperClass(context)->AddChildClass(shared_from_this());
}

void TCimHTTPClass::RemoveFromNamespace(TCIMContext /*context*/) { throw TVYXException(TVYXStatusCode::eReadOnly); }

void TCimHTTPClass::ModifyClass(boost::shared_ptr<ICIMClass> /*values*/, TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eReadOnly);
}

const std::string& TCimHTTPClass::GetName(TCIMContext /*context*/) const { return name_; }

boost::shared_ptr<ICIMNamespace> TCimHTTPClass::GetNamespace(TCIMContext /*context*/) const { return LockNamespace(); }

boost::shared_ptr<SchemaNamespace> TCimHTTPClass::LockNamespace() const {
    return boost::shared_ptr<SchemaNamespace>(namespace_);
}

boost::shared_ptr<ICIMClass> TCimHTTPClass::GetSuperClass(TCIMContext /*context*/) const {
    if (!superClassName_.empty() && superClass_.expired()) {
        // The interface calls this operation const, but the two classes are linked now.
        return reading_->FetchSuperClass(*boost::const_pointer_cast<TCimHTTPClass>(shared_from_this()));
    }
    return boost::shared_ptr<ICIMClass>(superClass_);
}

bool TCimHTTPClass::IsRootClass(TCIMContext /*context*/) const {
    return superClassName_.empty() && superClass_.lock() == LockNamespace()->GetRootClass();
}

bool TCimHTTPClass::IsSubclassOf(boost::shared_ptr<ICIMClass const> other, TCIMContext context) const {
    const boost::shared_ptr<ICIMClass const> root = LockNamespace()->GetRootClass();
    const std::string& otherName = other->GetName(context);
    boost::shared_ptr<ICIMClass const> current = shared_from_this();
    do {
        if (current->GetName(context) == otherName) {
            return true;
        }
        if (current == root) {
            return false; // the walk started at the root, which has nothing above it
        }
        current = current->GetSuperClass(context);
    } while (current != root);
    return false;
}

/// Tells a class which walk it is on, as long as this object exists.
class TCimHTTPClass::TOnWalk {
  public:
    TOnWalk(TCimHTTPClass& cls, TWalk& walk) : class_(cls) { class_.walk_ = &walk; }
    ~TOnWalk() { class_.walk_ = nullptr; }
    TOnWalk(const TOnWalk&) = delete;
    TOnWalk& operator=(const TOnWalk&) = delete;

  private:
    TCimHTTPClass& class_;
};

void TCimHTTPClass::EnumerateSubClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback, bool deep,
                                        TCIMContext /*context*/) {
    if (reading_) {
        reading_->CompleteSubClasses(*this, deep);
    }
    // A callback that looks classes up makes the list longer.
    TLevel level{subClasses_.Classes(), 0};
    if (walk_ != nullptr) {
        walk_->push_back(std::move(level));
        return;
    }
    // The server decides how deep the hierarchy is. So the class at the top walks through all of it, and those below,
    // which are asked one by one, add no more than their level.
    TWalk walk{std::move(level)};
    while (!walk.empty()) {
        TLevel& current = walk.back();
        if (current.next == current.classes.size() || !callback(current.classes[current.next])) {
            walk.pop_back();
            continue;
        }
        const auto subClass = current.classes[current.next++];
        if (deep) {
            const TOnWalk onWalk(*subClass, walk);
            subClass->EnumerateSubClasses(callback, deep, TCIMContext());
        }
    }
}

void TCimHTTPClass::AddChildClass(boost::shared_ptr<ICIMClass> child) {
    const auto added = boost::dynamic_pointer_cast<TCimHTTPClass>(child);
    subClasses_.Add(Required(added, TVYXStatusCode::eTypeMismatch).name_, added);
}

void TCimHTTPClass::RemoveChildClass(boost::shared_ptr<ICIMClass> /*child*/) {}

bool TCimHTTPClass::operator==(ICIMClass& other) const { return name_ == other.GetName(TCIMContext()); }

bool TCimHTTPClass::operator<(ICIMClass& other) const { return name_ < other.GetName(TCIMContext()); }

ICIMClass& TCimHTTPClass::operator=(const ICIMClass& /*other*/) { return *this; }

// --- Features ----------------------------------------------------------------------------------------------------

void TCimHTTPClass::Validate(TCIMContext /*context*/) const {}

bool TCimHTTPClass::HasTrueQualifier(const std::string& name) const {
    const auto qualifier = qualifiers_.Find(name);
    return qualifier && qualifier->IsTrue();
}

bool TCimHTTPClass::IsAssociation(TCIMContext /*context*/) const { return HasTrueQualifier("ASSOCIATION"); }

bool TCimHTTPClass::IsAbstract(TCIMContext /*context*/) const { return HasTrueQualifier("ABSTRACT"); }

void TCimHTTPClass::EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                                      TCIMContext context) const {
    try {
        const auto declarations = propertyDecls_.Ordered();
        for (const auto& declaration : *declarations) {
            if (declaration->IsKey() && !callback(&declaration->GetName(context))) {
                return;
            }
        }
    } catch (const TVYXException&) {
        throw;
    } catch (const std::exception& failure) {
        Refuse(TVYXStatusCode::eTypeMismatch,
               "TCimHTTP: Enumeration of the keys of class " + name_ + " failed: " + failure.what());
    } catch (...) {
        Refuse(TVYXStatusCode::eTypeMismatch, "TCimHTTP: Enumeration of the keys of class " + name_ + " failed");
    }
}

boost::shared_ptr<ICIMPropertyDecl>
TCimHTTPClass::AllocatePropertyDecl(const std::string& name, const TCIMValue& defaultValue, TCIMContext /*context*/) {
    return boost::make_shared<TCimHTTPPropertyDecl>(shared_from_this(), name, defaultValue);
}

boost::shared_ptr<ICIMPropertyDecl> TCimHTTPClass::GetPropertyDecl(const std::string& name,
                                                                   TCIMContext /*context*/) const {
    if (auto declaration = propertyDecls_.Find(name)) {
        return declaration; // a valid name, since its letters are those of one
    }
    return propertyDecls_.Find(NormalizeName(name, names_));
}

void TCimHTTPClass::EnumeratePropertyDecls(const boost::function<bool(boost::shared_ptr<ICIMPropertyDecl>)>& callback,
                                           TCIMContext /*context*/) const {
    const auto declarations = propertyDecls_.Ordered();
    for (const auto& declaration : *declarations) {
        if (!callback(declaration)) {
            return;
        }
    }
}

void TCimHTTPClass::AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> declaration) {
    if (!declaration) {
        Refuse(TVYXStatusCode::eTypeMismatch,
               "TCimHTTP: Attempt to add a property without a declaration to class " + name_);
    }
    const std::string& name = declaration->GetName(TCIMContext());
    if (declaration->GetType(TCIMContext()) == ECIMType::eCIMReference && !IsAssociation(TCIMContext())) {
        Refuse(TVYXStatusCode::eTypeMismatch,
               "TCimHTTP: Attempt to add reference property " + name + " to non-association class " + name_);
    }
    const std::string key = NormalizeName(name, names_);
    bool isOverride = false;
    declaration->GetQualifier("OVERRIDE", isOverride, TCIMContext());
    if (isOverride) {
        CheckOverride(*declaration);
    }
    FilePropertyDecl(key, declaration);
}

void TCimHTTPClass::FilePropertyDecl(const std::string& key, const boost::shared_ptr<ICIMPropertyDecl>& declaration) {
    const std::string& name = declaration->GetName(TCIMContext());
    const std::string attempt = "TCimHTTP: Attempt to add property " + name + " to class " + name_;
    const bool isTaken = propertyDecls_.Find(key) != nullptr;
    if (isTaken && name.find("PortType") == std::string::npos) {
        Refuse(TVYXStatusCode::eAlreadyExists, attempt + ": already exists");
    }
    const auto added = boost::dynamic_pointer_cast<TCimHTTPPropertyDecl>(declaration);
    if (!added) {
        Refuse(TVYXStatusCode::eTypeMismatch, attempt + ": the declaration is another implementation's");
    }
    propertyDecls_.Set(key, added);
}

void TCimHTTPClass::CheckOverride(const ICIMPropertyDecl& declaration) const {
    const std::string& name = declaration.GetName(TCIMContext());
    const char* violation = nullptr;
    auto code = TVYXStatusCode::eTypeMismatch;
    try {
        const auto inherited = FindInheritedPropertyDecl(name);
        if (!inherited) {
            violation = "property doesn't exist in base class";
            code = TVYXStatusCode::eNotFound;
        } else if (inherited->GetType(TCIMContext()) != declaration.GetType(TCIMContext())) {
            violation = "different types";
        } else if (inherited->GetClass(TCIMContext()).get() == this) {
            violation = "original was defined in this class";
        }
    } catch (const std::exception& failure) {
        Refuse(TVYXStatusCode::eTypeMismatch, "TCimHTTP: Attempt define property " + name + " in class " + name_ +
                                                  "failed. Reason = " + failure.what());
    }
    if (violation != nullptr) {
        Refuse(code, "TCimHTTP: Attempt to override property " + name + " in class " + name_ + ": " + violation);
    }
}

boost::shared_ptr<ICIMPropertyDecl> TCimHTTPClass::FindInheritedPropertyDecl(const std::string& name) const {
    const boost::shared_ptr<ICIMClass> root = LockNamespace()->GetRootClass();
    auto ancestor = GetSuperClass(TCIMContext());
    for (;;) {
        auto declaration = ancestor->GetPropertyDecl(name, TCIMContext());
        if (declaration || ancestor == root) {
            return declaration;
        }
        ancestor = ancestor->GetSuperClass(TCIMContext());
    }
}

void TCimHTTPClass::RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> /*declaration*/) {}

boost::shared_ptr<ICIMMethodDecl>
TCimHTTPClass::AllocateMethodDecl(const std::string& name, TCIMValue::TCIMType returnType, TCIMContext /*context*/) {
    return boost::make_shared<TCimHTTPMethodDecl>(shared_from_this(), name, returnType);
}

boost::shared_ptr<ICIMMethodDecl> TCimHTTPClass::GetMethodDecl(const std::string& name, TCIMContext /*context*/) const {
    return methodDecls_.Find(NormalizeName(name, names_));
}

void TCimHTTPClass::EnumerateMethodDecls(const boost::function<bool(boost::shared_ptr<ICIMMethodDecl>)>& callback,
                                         TCIMContext /*context*/) const {
    methodDecls_.Visit(callback);
}

void TCimHTTPClass::AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> /*declaration*/) {}

void TCimHTTPClass::RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> /*declaration*/) {}

TCIMValue TCimHTTPClass::InvokeMethod(const std::string& /*name*/, TCIMContext& /*parameters*/,
                                      TCIMContext /*context*/) {
    return {};
}

boost::shared_ptr<ICIMProperty> TCimHTTPClass::GetProperty(const std::string& name, TCIMContext /*context*/) {
    auto property = staticProperties_.Find(NormalizeName(name, names_));
    if (!property) {
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    return property;
}

void TCimHTTPClass::SetPropertyValue(const std::string& /*name*/, const TCIMValue& /*value*/, TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eReadOnly);
}

void TCimHTTPClass::EnumerateStaticProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                              TCIMContext /*context*/) {
    staticProperties_.Visit(callback);
}

void TCimHTTPClass::AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext /*context*/) {
    qualifiers_.AddOrReplace(qualifier, {"class", name_});
}

boost::shared_ptr<ICIMQualifier>
TCimHTTPClass::AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value,
                                 TCIMContext /*context*/) const {
    return boost::make_shared<TCimHTTPQualifier>(shared_from_this(), declaration, value);
}

boost::shared_ptr<ICIMQualifier>
TCimHTTPClass::AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value,
                                 ICIMQualifierDecl::EFlavor flavor, TCIMContext /*context*/) const {
    return boost::make_shared<TCimHTTPQualifier>(shared_from_this(), declaration, value, flavor);
}

boost::shared_ptr<ICIMQualifier> TCimHTTPClass::GetQualifier(const std::string& name, TCIMContext /*context*/) const {
    return qualifiers_.Find(name);
}

boost::shared_ptr<ICIMQualifier> TCimHTTPClass::GetQualifier(const std::string& name, bool& found,
                                                             TCIMContext /*context*/) const {
    auto qualifier = qualifiers_.Find(name);
    found = qualifier != nullptr;
    return qualifier;
}

void TCimHTTPClass::EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback,
                                        TCIMContext /*context*/) const {
    qualifiers_.Visit(callback);
}

// --- Associations ------------------------------------------------------------------------------------------------

void TCimHTTPClass::EnumerateAssociatedClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                               const std::string& assocClass, const std::string& resultClass,
                                               const std::string& role, const std::string& resultRole,
                                               TCIMContext context) {
    const AssociationFilter filter(LockNamespace(), assocClass, resultClass, role, resultRole, context);
    VisitAssociations(filter, [&](const auto& association, const auto& source) {
        const auto farEnds = filter.FarEnds(*association, source);
        return std::all_of(farEnds.begin(), farEnds.end(), [&](const auto& farEnd) { return callback(farEnd); });
    });
}

void TCimHTTPClass::EnumerateAssociationClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                                const std::string& resultClass, const std::string& role,
                                                TCIMContext context) {
    const AssociationFilter filter(LockNamespace(), resultClass, std::string(), role, std::string(), context);
    VisitAssociations(filter, [&](const auto& association, const auto& /*source*/) { return callback(association); });
}

void TCimHTTPClass::VisitAssociations(const AssociationFilter& filter, const TAssociationVisitor& visitor) {
    const auto root = LockNamespace()->GetRootClass();
    auto current = shared_from_this();
    while (current && current != root) {
        const auto candidates = current->associations_;
        for (const auto& candidate : candidates) {
            if (filter.AcceptsAssociation(*candidate, current) && !visitor(candidate, current)) {
                return;
            }
        }
        current = boost::dynamic_pointer_cast<TCimHTTPClass>(current->GetSuperClass(TCIMContext()));
    }
}

void TCimHTTPClass::AddAssociationClass(boost::shared_ptr<ICIMClass> /*association*/) {}

void TCimHTTPClass::RemoveAssociationClass(boost::shared_ptr<ICIMClass> /*association*/) {}

// --- Instances ---------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMInstance> TCimHTTPClass::AllocateInstance(TCIMContext context) {
    return boost::make_shared<TCimHTTPInstance>(shared_from_this(), context);
}

void TCimHTTPClass::EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                                       bool deep, TCIMContext context) {
    if (reading_) {
        reading_->EnumerateInstances(*this, callback, deep, context);
    } else {
        VisitInstances(callback, deep);
    }
}

void TCimHTTPClass::VisitInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool deep) {
    if (!instances_.Visit(callback) || !deep) {
        return;
    }
    const auto subClasses = subClasses_.Classes();
    for (const auto& subClass : subClasses) {
        subClass->EnumerateInstances(callback, deep, TCIMContext());
    }
}

void TCimHTTPClass::AddInstance(boost::shared_ptr<ICIMInstance> instance) {
    const auto added = boost::dynamic_pointer_cast<TCimHTTPInstance>(instance);
    instances_.Add(Required(added, TVYXStatusCode::eTypeMismatch).BuildPath(TCIMContext()).GetPath(), added);
}

void TCimHTTPClass::RemoveInstance(boost::shared_ptr<ICIMInstance> instance) {
    instances_.Remove(instance->BuildPath(TCIMContext()).GetPath());
}

boost::shared_ptr<ICIMInstance> TCimHTTPClass::GetInstance(const TCIMReference& reference,
                                                           TCIMContext /*context*/) const {
    return instances_.Find(reference.GetPath());
}

void TCimHTTPClass::ClearInstances() {
    // The links are removed before the linked classes are cleared, so that a class that is reachable from itself is
    // cleared once.
    std::vector<boost::shared_ptr<TCimHTTPClass>> linked;
    ClearOwn(linked);
    while (!linked.empty()) {
        const auto cls = std::move(linked.back());
        linked.pop_back();
        cls->ClearOwn(linked);
    }
}

/// Clears this class alone, and adds those that it was linked to.
void TCimHTTPClass::ClearOwn(std::vector<boost::shared_ptr<TCimHTTPClass>>& linked) {
    const auto associations = std::exchange(associations_, {});
    linked.insert(linked.end(), associations.begin(), associations.end());
    const auto subClasses = std::exchange(subClasses_, {});
    linked.insert(linked.end(), subClasses.Classes().begin(), subClasses.Classes().end());
    qualifiers_.Clear();
    propertyDecls_.Clear();
    staticProperties_.Clear();
    instances_.Clear();
    methodDecls_.Clear();
}

} // namespace NQORVYX20
