#pragma once

#include "host/ICIMClass.h"
#include "model/NamedEntries.h"
#include "model/SubClassList.h"
#include "model/TCimHTTPQualifierMap.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace NQORVYX20 {

class AssociationFilter;
class Reading;
class SchemaNamespace;
class TCimHTTPInstance;
class TCimHTTPMethodDecl;
class TCimHTTPProperty;
class TCimHTTPPropertyDecl;

/// A class of the remote server. After Initialize it answers from memory; only EnumerateInstances goes back to the
/// server, and in a faithful namespace GetSuperClass and EnumerateSubClasses at their first call. Owned by a
/// boost::shared_ptr. It refers to its namespace and superclass weakly: operations that need them throw
/// boost::bad_weak_ptr when they have gone.
///
/// For compatible and faithful namespaces, see Reading. In a faithful one, operations that ask the server throw
/// TVYXException eNotFound for what it does not have, eRemoteConnectionFailed when it cannot be read, after a line in
/// the log; TCimHTTPNamespace::LastFailure says why.
class TCimHTTPClass : public ICIMClass, public boost::enable_shared_from_this<TCimHTTPClass> {
  public:
    /// An empty class. The superclass is not kept, see Initialize.
    TCimHTTPClass(boost::shared_ptr<SchemaNamespace> nameSpace, const std::string& name,
                  boost::shared_ptr<TCimHTTPClass> superClass);
    ~TCimHTTPClass() override;

    /// A class that is initialised and not added. Throws what Initialize throws.
    static boost::shared_ptr<TCimHTTPClass> Make(const boost::shared_ptr<SchemaNamespace>& nameSpace,
                                                 const std::string& name,
                                                 const boost::shared_ptr<TCimHTTPClass>& superClass);
    TCimHTTPClass(const TCimHTTPClass&) = delete;
    TCimHTTPClass& operator=(const TCimHTTPClass&) = delete;

    /// Fills the class from the remote definition: qualifiers, property declarations, method declarations, inherited
    /// ones included. A compatible namespace puts every class under its root class, a faithful one under its
    /// superclass. Once the class has a superclass it does nothing, and for the root class it contacts nobody. Throws
    /// what the remote library throws; what was read until then stays.
    void Initialize();

    /// The instance filed under the path of the reference, or an empty pointer. Does not contact the server.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) const;

    /// Empties the class, and every class below it, of features, instances and links.
    void ClearInstances();

    /// Takes over the subclasses of a class that this one replaces.
    void AdoptSubClasses(const TCimHTTPClass& replaced) { subClasses_ = replaced.subClasses_; }

    // What a Reading makes the class of.

    /// What a name is to a class, which may be none, and its elements.
    static NameRule NamesOf(const TCimHTTPClass* cls) { return cls != nullptr ? cls->names_ : NameRule::kHost; }

    const std::string& Name() const { return name_; }

    /// Sets the superclass; the class is initialised then.
    void SetSuperClass(const boost::shared_ptr<ICIMClass>& superClass);

    /// Sets the name of a superclass that is looked up when somebody asks for it.
    void SetSuperClassName(const std::string& name) { superClassName_ = name; }
    const std::string& GetSuperClassName() const { return superClassName_; }

    /// The superclass as far as it is known; empty for the root class, too.
    boost::shared_ptr<TCimHTTPClass> KnownSuperClass() const;

    /// Keep a declaration under the normal form of its name, without the rules of AddPropertyDecl. False, changing
    /// nothing, when the name is taken.
    bool KeepPropertyDecl(const std::string& key, const boost::shared_ptr<ICIMPropertyDecl>& declaration);
    bool KeepMethodDecl(const std::string& key, const boost::shared_ptr<ICIMMethodDecl>& declaration);

    /// Another number after each change of the property declarations.
    std::uint64_t PropertyRevision() const { return propertyDecls_.Revision(); }

    /// How many instances were added under paths of their own.
    std::size_t CountInstances() const { return instances_.Size(); }

    /// Visits the instances that were added, in the order of their paths; with `deep` then enumerates those of each
    /// linked subclass. False from the callback ends it.
    void VisitInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool deep);

    // ICIMElement and ICIMClass. Operations that are not supported: RemoveFromNamespace, ModifyClass and
    // SetPropertyValue throw TVYXException eReadOnly; InvokeMethod returns a null value; Validate, RemoveChildClass,
    // AddAssociationClass, RemoveAssociationClass, RemovePropertyDecl, AddMethodDecl, RemoveMethodDecl and the
    // assignment do nothing.
    void Validate(TCIMContext context) const override;
    void AddToNamespace(TCIMContext context) override;
    void RemoveFromNamespace(TCIMContext context) override;
    void ModifyClass(boost::shared_ptr<ICIMClass> values, TCIMContext context) override;
    const std::string& GetName(TCIMContext context) const override;
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const override;
    bool IsAssociation(TCIMContext context) const override;
    bool IsAbstract(TCIMContext context) const override;
    bool IsRootClass(TCIMContext context) const override;
    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext context) const override;

    /// Visits the subclasses that were looked up so far; in a faithful namespace, all. A callback that returns false
    /// ends the level it is on; with `deep`, the levels above go on with their next class.
    void EnumerateSubClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback, bool deep,
                             TCIMContext context) override;
    bool IsSubclassOf(boost::shared_ptr<ICIMClass const> other, TCIMContext context) const override;

    /// EnumerateAssociatedClasses and EnumerateAssociationClasses walk up from this class to below the root class, and
    /// see the association classes that are linked to each class on the way. No operation links any, so that for now
    /// they report nothing. AssociationFilter says what the filters accept and what they throw.
    void EnumerateAssociatedClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                    const std::string& assocClass, const std::string& resultClass,
                                    const std::string& role, const std::string& resultRole,
                                    TCIMContext context) override;
    void EnumerateAssociationClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                     const std::string& resultClass, const std::string& role,
                                     TCIMContext context) override;

    /// Whatever is thrown during the walk leaves as a TVYXException: its own code, or eTypeMismatch for another
    /// exception.
    void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                           TCIMContext context) const override;
    boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name, const TCIMValue& defaultValue,
                                                             TCIMContext context) override;
    boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name, TCIMContext context) const override;
    void EnumeratePropertyDecls(const boost::function<bool(boost::shared_ptr<ICIMPropertyDecl>)>& callback,
                                TCIMContext context) const override;
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) override;
    void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) override;
    void EnumerateStaticProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                   TCIMContext context) override;
    boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) override;

    /// In a compatible namespace the first call fetches the instances, with those of subclasses when `deep`, and keeps
    /// them as instances of this class, in the order of their paths; later calls are served from memory unless nothing
    /// was kept. With `deep` the instances of the subclasses known here follow, so that an instance may be delivered
    /// twice. Remote failures are logged, and the callback sees what is there.
    ///
    /// In a faithful namespace each call asks the server. The callback sees each instance of this class once, with
    /// `deep` those of its subclasses too, as what they are, in the order of their paths. See kPropertiesKey about the
    /// context.
    void EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool deep,
                            TCIMContext context) override;
    boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name, TCIMValue::TCIMType returnType,
                                                         TCIMContext context) override;
    boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name, TCIMContext context) const override;
    void EnumerateMethodDecls(const boost::function<bool(boost::shared_ptr<ICIMMethodDecl>)>& callback,
                              TCIMContext context) const override;
    TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) override;
    bool operator==(ICIMClass& other) const override;
    bool operator<(ICIMClass& other) const override;
    ICIMClass& operator=(const ICIMClass& other) override;

    /// The class replaces one of the same name. It must be a TCimHTTPClass: where assertions are on, another or none
    /// ends in an assertion, otherwise in TVYXException eTypeMismatch.
    void AddChildClass(boost::shared_ptr<ICIMClass> child) override;
    void RemoveChildClass(boost::shared_ptr<ICIMClass> child) override;

    /// An instance that is already filed under the same path stays. What is no TCimHTTPInstance ends as in
    /// AddChildClass.
    void AddInstance(boost::shared_ptr<ICIMInstance> instance) override;
    void RemoveInstance(boost::shared_ptr<ICIMInstance> instance) override;
    void AddAssociationClass(boost::shared_ptr<ICIMClass> association) override;
    void RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) override;

    /// Throws TVYXException, after a line in the log, and changes nothing: eTypeMismatch for a reference in a class
    /// that is no association, for an override of another type or of a property of this class, and when the check
    /// itself fails; eNotFound for an override without a base property; eAlreadyExists for a name already taken, unless
    /// it contains "PortType"; after these, eTypeMismatch for what is not a TCimHTTPPropertyDecl.
    void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> declaration) override;
    void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> declaration) override;
    void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> declaration) override;
    void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> declaration) override;

    // ICIMNamedElement

    /// Replaces a qualifier of the same name that may be overridden or has the same value and flavor; otherwise
    /// throws TVYXException eQualifierConflict, after a line in the log.
    void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) override;
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, TCIMContext context) const override;
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor,
                                                       TCIMContext context) const override;
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext context) const override;
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& found,
                                                  TCIMContext context) const override;
    void EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback,
                             TCIMContext context) const override;

  private:
    /// Visits an association class that passes a filter, and the class whose link led to it; false ends the walk.
    using TAssociationVisitor =
        boost::function<bool(const boost::shared_ptr<TCimHTTPClass>&, const boost::shared_ptr<TCimHTTPClass>&)>;

    /// The subclasses of one class, in a walk through the hierarchy, and which is next.
    struct TLevel {
        SubClassList<TCimHTTPClass>::TClasses classes;
        std::size_t next;
    };
    using TWalk = std::vector<TLevel>;
    class TOnWalk;

    boost::shared_ptr<SchemaNamespace> LockNamespace() const;
    void ReleaseSubClasses();
    void ClearOwn(std::vector<boost::shared_ptr<TCimHTTPClass>>& linked);
    bool HasTrueQualifier(const std::string& name) const;

    void CheckOverride(const ICIMPropertyDecl& declaration) const;
    void FilePropertyDecl(const std::string& key, const boost::shared_ptr<ICIMPropertyDecl>& declaration);
    boost::shared_ptr<ICIMPropertyDecl> FindInheritedPropertyDecl(const std::string& name) const;
    void VisitAssociations(const AssociationFilter& filter, const TAssociationVisitor& visitor);

    boost::weak_ptr<SchemaNamespace> namespace_;
    boost::shared_ptr<Reading> reading_; // empty without a namespace
    std::string name_;
    boost::weak_ptr<ICIMClass> superClass_;
    std::string superClassName_; // empty unless it is looked up when needed
    NameRule names_;
    TCimHTTPQualifierMap qualifiers_;
    HashedEntries<TCimHTTPPropertyDecl> propertyDecls_; // asked for each property of each instance
    NamedEntries<TCimHTTPProperty> staticProperties_;
    SubClassList<TCimHTTPClass> subClasses_;
    TWalk* walk_ = nullptr; // while a class above enumerates this one's subclasses

  protected:
    // The association classes that refer to this class. Those who link some derive from it.
    std::set<boost::shared_ptr<TCimHTTPClass>> associations_;

  private:
    NamedEntries<TCimHTTPInstance> instances_; // by path
    NamedEntries<TCimHTTPMethodDecl> methodDecls_;
};

} // namespace NQORVYX20
