#pragma once

#include "host/ICIMQualifierDecl.h"
#include "host/TCIMContext.h"
#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMClass;
class ICIMIndicationFilter;
class ICIMInstance;
class INamespaceProvider;
class IProvider;

/// A namespace: classes, their instances, and qualifier declarations. A namespace and all its objects are used from one
/// thread at a time.
class ICIMNamespace {
  public:
    virtual ~ICIMNamespace() = default;

    /// The provider that made the namespace.
    virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext context) const = 0;

    /// Names the namespace that this one may ask in its turn. A namespace may ignore it.
    virtual void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext context) = 0;

    /// Puts a namespace below this one. Throws TVYXException eReadOnly where none can be added.
    virtual void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext context) = 0;

    /// A class of this namespace. It is not added: ICIMClass::AddToNamespace does that.
    virtual boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                                       TCIMContext context) = 0;

    /// The class of that name, or an empty pointer. Throws TVYXException eInvalidName for a text that is no name.
    virtual boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) = 0;

    /// Calls back once per class below the root class, as far as the namespace holds them, until the callback returns
    /// false.
    virtual void EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                      TCIMContext context) = 0;

    /// Calls back once per provider of the namespace, which may have none, until the callback returns false.
    virtual void EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>& callback,
                                    TCIMContext context) = 0;

    /// A qualifier declaration of this namespace. It is not added: ICIMQualifierDecl::AddToNamespace does that.
    virtual boost::shared_ptr<ICIMQualifierDecl>
    AllocateQualifierDecl(const std::string& name, const TCIMValue& defaultValue, ICIMQualifierDecl::EScope scope,
                          ICIMQualifierDecl::EFlavor flavor, TCIMContext context) = 0;

    /// The declaration of that name, or an empty pointer.
    virtual boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                                  TCIMContext context) const = 0;

    /// Calls back once per declaration, in the order of their normalised names, until the callback returns false.
    virtual void EnumerateQualifierDecls(const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback,
                                         TCIMContext context) const = 0;

    /// Calls back with each indication that passes the filter. Throws TVYXException eNotSupported where there are none.
    virtual void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter,
                           const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                           TCIMContext context) = 0;

    /// The instance with the reference's path, or an empty pointer. The reference must name a class of the namespace.
    virtual boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) const = 0;

    /// DeleteInstance, ModifyInstance and ExecuteQuery throw TVYXException eNotSupported in a read-only namespace.
    /// `values` has property values by name.
    virtual void DeleteInstance(const TCIMReference& reference, TCIMContext context) = 0;
    virtual void ModifyInstance(const TCIMReference& reference, TCIMContext values, TCIMContext context) = 0;
    virtual void ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                              std::string& query, std::string& language, TCIMContext context) = 0;

    /// Forgets the instances that the namespace itself keeps, if any.
    virtual void ClearInstances() = 0;

  protected:
    ICIMNamespace() = default;
    ICIMNamespace(const ICIMNamespace&) = default;
    ICIMNamespace& operator=(const ICIMNamespace&) = default;
};

} // namespace NQORVYX20
