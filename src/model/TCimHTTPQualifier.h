#pragma once

#include "host/ICIMQualifier.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

#include <atomic>
#include <cstdint>

namespace NQORVYX20 {

/// A qualifier on a class or declaration. It refers to its element weakly, since the element holds its qualifiers:
/// operations that need the element throw boost::bad_weak_ptr when it has gone.
class TCimHTTPQualifier : public ICIMQualifier, public boost::enable_shared_from_this<TCimHTTPQualifier> {
  public:
    /// A qualifier with the flavor of its declaration.
    TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element,
                      boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value);

    /// A qualifier with a flavor of its own.
    TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element,
                      boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value,
                      ICIMQualifierDecl::EFlavor flavor);

    /// The qualifier of another element taken over by this one: declaration, value, flavor and propagated flag.
    TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element, boost::shared_ptr<ICIMQualifier const> other);

    TCimHTTPQualifier(const TCimHTTPQualifier&) = delete;
    TCimHTTPQualifier& operator=(const TCimHTTPQualifier&) = delete;

    void Validate(TCIMContext context) const override;
    void AddToClassOrProperty(TCIMContext context) const override;
    void RemoveFromClassOrProperty(TCIMContext context) override;
    const std::string& GetName(TCIMContext context) const override;
    boost::shared_ptr<ICIMNamedElement const> GetClassOrProperty(TCIMContext context) const override;
    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;
    boost::shared_ptr<ICIMQualifierDecl const> GetDeclaration(TCIMContext context) const override;
    const TCIMValue& GetValue(TCIMContext context) const override;

    /// A change of value or flavor makes the qualifier its element's own: it is no longer propagated.
    void SetValue(const TCIMValue& value, TCIMContext context) override;
    void SetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext context) override;
    void UnsetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext context) override;
    ICIMQualifierDecl::EFlavor GetFlavor(TCIMContext context) const override;
    bool operator==(ICIMQualifier& other) const override;
    bool operator<(ICIMQualifier& other) const override;
    bool GetPropagated(TCIMContext context) const override;

    /// Copies nothing.
    ICIMQualifier& operator=(const ICIMQualifier& other) override;

    /// A server may give a value of another type than boolean; that is not true either.
    bool IsTrue() const { return value_ == TCIMValue(true); }

    void SetPropagated(bool propagated) { propagated_ = propagated; }

    /// Tells values apart: it changes whenever SetValue gives the qualifier a value.
    std::uint64_t GetRevision() const { return revision_; }

    /// How many values SetValue has given to the qualifiers of all namespaces. As long as it is the same, no revision
    /// has changed.
    static std::uint64_t Changes() { return changes_.load(std::memory_order_relaxed); }

  private:
    boost::weak_ptr<ICIMNamedElement const> element_;
    boost::shared_ptr<ICIMQualifierDecl const> declaration_;
    TCIMValue value_;
    ICIMQualifierDecl::EFlavor flavor_;
    bool propagated_;
    std::uint64_t revision_ = 0;
    static std::atomic<std::uint64_t> changes_;
};

} // namespace NQORVYX20
