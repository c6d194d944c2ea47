#pragma once

#include "host/ICIMElement.h"
#include "host/ICIMNamedElement.h"
#include "host/TCIMContext.h"
#include "host/TCIMValue.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMInstance;
class ICIMMethodDecl;
class ICIMNamespace;
class ICIMProperty;
class ICIMPropertyDecl;

/// A class of a namespace. Names are matched without regard to case.
class ICIMClass : public ICIMElement, public ICIMNamedElement {
  public:
    /// Enters the class into the namespace that it was allocated for and links it under its superclass.
    virtual void AddToNamespace(TCIMContext context) = 0;

    /// RemoveFromNamespace and ModifyClass throw TVYXException eReadOnly in a namespace whose classes cannot be
    /// changed.
    virtual void RemoveFromNamespace(TCIMContext context) = 0;
    virtual void ModifyClass(boost::shared_ptr<ICIMClass> values, TCIMContext context) = 0;

    /// The name as it was given. Valid as long as the class.
    virtual const std::string& GetName(TCIMContext context) const = 0;

    /// The namespace, which the class does not keep alive. Throws boost::bad_weak_ptr when it has gone.
    virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const = 0;

    /// Whether the class has the qualifier Association, or Abstract, with the value true.
    virtual bool IsAssociation(TCIMContext context) const = 0;
    virtual bool IsAbstract(TCIMContext context) const = 0;

    /// True for a class directly below the namespace's root class, which is above all others.
    virtual bool IsRootClass(TCIMContext context) const = 0;

    /// The class above, the root class in the end. Throws boost::bad_weak_ptr when there is none or it has gone.
    virtual boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext context) const = 0;

    /// Calls back once per direct subclass, or per class of the whole subtree, until the callback returns false.
    virtual void EnumerateSubClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback, bool deep,
                                     TCIMContext context) = 0;

    /// True for the class itself and for every class above it but the root.
    virtual bool IsSubclassOf(boost::shared_ptr<ICIMClass const> other, TCIMContext context) const = 0;

    /// Calls back with each class at the other end of an association class that refers to this class or to one above
    /// it, until the callback returns false. An empty filter accepts everything. Throws TVYXException eNotFound for a
    /// filter class that does not exist.
    virtual void EnumerateAssociatedClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                            const std::string& assocClass, const std::string& resultClass,
                                            const std::string& role, const std::string& resultRole,
                                            TCIMContext context) = 0;

    /// Calls back with each association class that refers to this class or to one above it, see
    /// EnumerateAssociatedClasses.
    virtual void EnumerateAssociationClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                             const std::string& resultClass, const std::string& role,
                                             TCIMContext context) = 0;

    /// Calls back with the name of each key property, in the order of the normalised names, until the callback returns
    /// false. The pointer is valid during the call.
    virtual void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                                   TCIMContext context) const = 0;

    /// A property declaration for this class. It is not added: ICIMPropertyDecl::AddToClass does that.
    virtual boost::shared_ptr<ICIMPropertyDecl>
    AllocatePropertyDecl(const std::string& name, const TCIMValue& defaultValue, TCIMContext context) = 0;

    /// The declaration of that name, or an empty pointer.
    virtual boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name, TCIMContext context) const = 0;

    /// Calls back once per declaration, in the order of their normalised names, until the callback returns false.
    virtual void EnumeratePropertyDecls(const boost::function<bool(boost::shared_ptr<ICIMPropertyDecl>)>& callback,
                                        TCIMContext context) const = 0;

    /// The static property of that name. Throws TVYXException eNotFound when there is none.
    virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) = 0;

    /// Sets a static property. Throws TVYXException eReadOnly in a namespace whose classes cannot be changed.
    virtual void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) = 0;

    /// Calls back once per static property, until the callback returns false.
    virtual void EnumerateStaticProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                           TCIMContext context) = 0;

    /// An instance of this class without values. It is not filed: ICIMInstance::AddToNamespace does that.
    virtual boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) = 0;

    /// Calls back once per instance, and with `deep` per instance of the subclasses, until the callback returns false.
    virtual void EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool deep,
                                    TCIMContext context) = 0;

    /// A method declaration for this class. It is not added.
    virtual boost::shared_ptr<ICIMMethodDecl>
    AllocateMethodDecl(const std::string& name, TCIMValue::TCIMType returnType, TCIMContext context) = 0;

    /// The declaration of that name, or an empty pointer.
    virtual boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name, TCIMContext context) const = 0;

    /// Calls back once per declaration, in the order of their normalised names, until the callback returns false.
    virtual void EnumerateMethodDecls(const boost::function<bool(boost::shared_ptr<ICIMMethodDecl>)>& callback,
                                      TCIMContext context) const = 0;

    /// Invokes a method and returns its value. `parameters` has the input by name, and the output afterwards. Where
    /// methods cannot be invoked, the value is null and nothing happens.
    virtual TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) = 0;

    /// Classes are compared by name, with regard to case.
    virtual bool operator==(ICIMClass& other) const = 0;
    virtual bool operator<(ICIMClass& other) const = 0;

    /// How much is copied, if anything, is up to the implementation; that holds for all elements.
    virtual ICIMClass& operator=(const ICIMClass& other) = 0;

    // The operations by which elements link themselves to their owners. A class that does not keep elements of a kind
    // ignores them.
    virtual void AddChildClass(boost::shared_ptr<ICIMClass> child) = 0;
    virtual void RemoveChildClass(boost::shared_ptr<ICIMClass> child) = 0;
    virtual void AddInstance(boost::shared_ptr<ICIMInstance> instance) = 0;
    virtual void RemoveInstance(boost::shared_ptr<ICIMInstance> instance) = 0;
    virtual void AddAssociationClass(boost::shared_ptr<ICIMClass> association) = 0;
    virtual void RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) = 0;

    /// Throws TVYXException, and adds nothing: eTypeMismatch for a reference in a class that is no association, and for
    /// an override of a property of another type; eNotFound for an override of what no class above declares;
    /// eAlreadyExists for a name that is taken.
    virtual void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> declaration) = 0;
    virtual void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> declaration) = 0;
    virtual void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> declaration) = 0;
    virtual void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> declaration) = 0;

  protected:
    ICIMClass() = default;
    ICIMClass(const ICIMClass&) = default;
};

} // namespace NQORVYX20
