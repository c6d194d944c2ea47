#pragma once

#include "host/ICIMInstance.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;

/// An instance whose values are kept in memory; the base for the instances of namespace providers, which add
/// AddToNamespace. Owned by a boost::shared_ptr. The class is not kept alive: once it has gone, operations that need it
/// throw boost::bad_weak_ptr.
class TInmemInstance : public ICIMInstance, public boost::enable_shared_from_this<TInmemInstance> {
  public:
    /// An instance without values. `layout` is the version of the layout in which values are kept; 1 is the only one,
    /// and another throws TVYXException eTypeMismatch.
    TInmemInstance(boost::shared_ptr<ICIMClass> cls, int layout);
    ~TInmemInstance() override;

    /// Checks the values against the class as it is now: throws TVYXException eNotFound for the value of a property
    /// that the class no longer declares, eTypeMismatch for one of another type than is now declared.
    void Validate(TCIMContext context) const override;

    /// Takes over the other instance's values: properties that have none of their own there have none here afterwards.
    /// When one of them does not fit (as for SetPropertyValue), the exception leaves this instance as it was.
    void ModifyInstance(boost::shared_ptr<ICIMInstance> values, TCIMContext context) override;
    void Delete(TCIMContext context) override;

    /// The class name and the key properties' values. An instance of a class without keys has a number as its key `#`,
    /// `Class.#=17`: it gets it when it is made, keeps it whatever values it takes, and shares it with no other
    /// instance of the process.
    TCIMReference GetReference(TCIMContext context) const override;
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const override;

    /// Far ends are resolved by ICIMNamespace::GetInstance; one that the namespace does not find is passed over.
    /// Instances are collected before the first callback.
    void EnumerateAssociatedInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                                      const std::string& assocClass, const std::string& resultClass,
                                      const std::string& role, const std::string& resultRole,
                                      TCIMContext context) override;
    void EnumerateAssociationInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                                       const std::string& resultClass, const std::string& role,
                                       TCIMContext context) override;

    /// A view of the property: it reads and writes this instance's value, and keeps the instance alive.
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) const override;

    /// Throws TVYXException eNotFound when the class does not declare the property, eTypeMismatch when the value's type
    /// is not the declared one; a null of any type is accepted, and kept as a null of the declared type.
    void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) override;

    /// As SetPropertyValue, for one who has the declaration at hand, which must be the one that the class gives, and
    /// can give the value away. An exception leaves the value as it was.
    void TakePropertyValue(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, TCIMValue&& value);

    /// Makes room for so many values at once, which saves doing it bit by bit. Changes nothing else.
    void ExpectValues(std::size_t count);
    void EnumerateProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                             TCIMContext context) override;

    /// Invokes the method of the class.
    TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) override;

    /// Instances are compared by class name, then by the values of their properties, with or without keys.
    bool operator==(ICIMInstance& other) const override;
    bool operator<(ICIMInstance& other) const override;

    /// Takes over the values of the other instance, as ModifyInstance does.
    ICIMInstance& operator=(const ICIMInstance& other) override;
    TInmemInstance& operator=(const TInmemInstance& other);

  private:
    friend class TInmemProperty;

    struct TSlot {
        TSlot(const boost::shared_ptr<ICIMPropertyDecl const>& slotDeclaration, const TCIMValue& slotValue);
        TSlot(const boost::shared_ptr<ICIMPropertyDecl const>& slotDeclaration, TCIMValue&& slotValue)
            : declaration(slotDeclaration), value(std::move(slotValue)) {}

        boost::shared_ptr<ICIMPropertyDecl const> declaration;
        TCIMValue value;
    };
    using TSlots = std::vector<TSlot>;
    class TIndex;

    boost::shared_ptr<ICIMPropertyDecl const> FindDeclaration(const std::string& name, TCIMContext context) const;

    /// The declared type. Throws when the value does not fit it.
    TCIMValue::TCIMType Check(const ICIMPropertyDecl& declaration, const TCIMValue& value) const;
    /// The slot of the declaration's value, or null when it has none.
    TSlot* FindSlot(const ICIMPropertyDecl& declaration) const;
    void OwnSlots();
    void MakeRoom();
    void ExtendIndex();
    std::size_t CountDeclarations() const;
    const TCIMValue* FindValue(const ICIMPropertyDecl& declaration) const;
    const TCIMValue& ReadValue(const ICIMPropertyDecl& declaration) const;
    void StoreValue(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value);
    template <typename Value>
    void Store(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, Value&& value);
    void TakeValues(const ICIMInstance& other);

    boost::weak_ptr<ICIMClass> class_;
    const unsigned long long number_; // tells instances of a class without keys apart

    // The properties that have a value of their own, in the order in which they got it. Views share them to keep values
    // that they have handed out: slots that are shared are not changed, but copied first.
    boost::shared_ptr<TSlots> slots_;
    std::unique_ptr<TIndex> index_; // where there are more slots than a few
};

} // namespace NQORVYX20
