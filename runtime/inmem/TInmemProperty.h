#pragma once

#include "host/ICIMProperty.h"

#include <optional>

namespace NQORVYX20 {

class TInmemInstance;

/// A view of one property of an instance: the value is the instance's, the previous value the view's own. Instance and
/// declaration live at least as long as the view.
class TInmemProperty : public ICIMProperty {
  public:
    TInmemProperty(boost::shared_ptr<TInmemInstance> instance, boost::shared_ptr<ICIMPropertyDecl const> declaration);

    /// Becomes a new view, of another property of the instance.
    void Show(boost::shared_ptr<ICIMPropertyDecl const>&& declaration) {
        declaration_.swap(declaration);
        prevValue_.reset();
    }

    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;
    bool IsDefaultValue(TCIMContext context) const override;

    /// What the instance holds now. The reference stays good, with this value, until the next reading operation of this
    /// view, whatever happens to the instance. The declaration's default, where the instance holds nothing, shows a
    /// later change of the default.
    const TCIMValue& GetValue(TCIMContext context) const override;
    void SetValue(const TCIMValue& value, TCIMContext context) override;

    /// True when the value comes from the declaration.
    bool GetPropagated(TCIMContext context) const override;
    boost::shared_ptr<ICIMPropertyDecl const> GetDeclaration(TCIMContext context) const override;
    bool operator==(ICIMProperty& other) const override;
    bool operator<(ICIMProperty& other) const override;

    /// Gives the instance the other property's value.
    ICIMProperty& operator=(const ICIMProperty& other) override;
    const TCIMValue& GetPrevValue() const override;
    void SetPrevValue(const TCIMValue& value) override;
    void SetPrevValue() override;
    bool IsPrevValueDifferent() const override;

    /// TCIMValue::ToString in base 10.
    std::string ToString() const override;
    std::string PrevValueToString() const override;

    /// No text for an array that is null.
    std::vector<std::string> ToStringVector() const override;

  private:
    const TCIMValue& Read() const;

    boost::shared_ptr<TInmemInstance> instance_;
    boost::shared_ptr<ICIMPropertyDecl const> declaration_;
    std::optional<TCIMValue> prevValue_;
    mutable boost::shared_ptr<const void> lastRead_; // keeps what the last reference that was handed out refers to
};

} // namespace NQORVYX20
