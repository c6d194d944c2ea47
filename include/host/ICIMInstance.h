#pragma once

#include "host/ICIMElement.h"
#include "host/TCIMContext.h"
#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMClass;
class ICIMProperty;

/// An instance of a class. Property names are matched without regard to case.
class ICIMInstance : public ICIMElement {
  public:
    /// Files the instance with its class.
    virtual void AddToNamespace(TCIMContext context) = 0;

    /// Takes over the values of the other instance.
    virtual void ModifyInstance(boost::shared_ptr<ICIMInstance> values, TCIMContext context) = 0;

    /// Takes the instance out of its class.
    virtual void Delete(TCIMContext context) = 0;

    /// The object path: the class name and the values of the key properties.
    virtual TCIMReference GetReference(TCIMContext context) const = 0;

    /// The path under which the instance is filed.
    virtual TCIMReference BuildPath(TCIMContext context) const { return GetReference(context); }

    /// The class, which the instance does not keep alive. Throws boost::bad_weak_ptr when it has gone.
    virtual boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const = 0;

    /// Calls back once per instance at the other end of an association with this one, until the callback returns false.
    /// An empty filter accepts everything.
    virtual void EnumerateAssociatedInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                                              const std::string& assocClass, const std::string& resultClass,
                                              const std::string& role, const std::string& resultRole,
                                              TCIMContext context) = 0;

    /// Calls back once per association instance that refers to this one, until the callback returns false.
    virtual void EnumerateAssociationInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                                               const std::string& resultClass, const std::string& role,
                                               TCIMContext context) = 0;

    /// The property of that name. Throws TVYXException eNotFound when the class declares none.
    virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) const = 0;

    /// Throws TVYXException eNotFound for a property that the class does not declare, eTypeMismatch for a value of
    /// another type.
    virtual void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) = 0;

    /// Calls back once per declared property, in the order of the declarations, until the callback returns false.
    virtual void EnumerateProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                     TCIMContext context) = 0;

    /// See ICIMClass::InvokeMethod.
    virtual TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) = 0;

    /// Instances are compared by class name, then by the values of their properties.
    virtual bool operator==(ICIMInstance& other) const = 0;
    virtual bool operator<(ICIMInstance& other) const = 0;
    virtual ICIMInstance& operator=(const ICIMInstance& other) = 0;

  protected:
    ICIMInstance() = default;
    ICIMInstance(const ICIMInstance&) = default;
};

} // namespace NQORVYX20
