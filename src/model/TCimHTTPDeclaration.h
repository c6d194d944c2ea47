#pragma once

#include "convert/NormalName.h"
#include "host/TCIMContext.h"
#include "model/TCimHTTPQualifier.h"
#include "model/TCimHTTPQualifierMap.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

/// What property, method and parameter declarations have in common: a name, qualifiers, comparison by normalised name.
/// `Interface` is the contract's interface that `Derived` implements; `Derived::kKind` is what the log calls such an
/// element.
template <typename Derived, typename Interface>
class TCimHTTPDeclaration : public Interface, public boost::enable_shared_from_this<Derived> {
  public:
    TCimHTTPDeclaration(const TCimHTTPDeclaration&) = delete;
    TCimHTTPDeclaration& operator=(const TCimHTTPDeclaration&) = delete;

    void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext /*context*/) override {
        qualifiers_.Add(qualifier, {Derived::kKind, name_});
    }

    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, TCIMContext /*context*/) const override {
        return boost::make_shared<TCimHTTPQualifier>(this->shared_from_this(), declaration, value);
    }

    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor,
                                                       TCIMContext /*context*/) const override {
        return boost::make_shared<TCimHTTPQualifier>(this->shared_from_this(), declaration, value, flavor);
    }

    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext /*context*/) const override {
        return qualifiers_.Get(name);
    }

    void EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback,
                             TCIMContext /*context*/) const override {
        qualifiers_.Visit(callback);
    }

    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& found,
                                                  TCIMContext /*context*/) const override {
        auto qualifier = qualifiers_.Find(name);
        found = qualifier != nullptr;
        return qualifier;
    }

    void Validate(TCIMContext /*context*/) const override {}

    const std::string& GetName(TCIMContext /*context*/) const override { return name_; }

    bool operator==(Interface& other) const override { return NormalizedName(*this) == NormalizedName(other); }
    bool operator<(Interface& other) const override { return NormalizedName(*this) < NormalizedName(other); }

    /// Copies nothing.
    Interface& operator=(const Interface& /*other*/) override { return *this; }

    /// Removes the qualifier of the same name. Throws TVYXException eNotFound when there is none.
    void RemoveQualifier(boost::shared_ptr<ICIMQualifier> qualifier) {
        qualifiers_.Remove(qualifier->GetName(TCIMContext()));
    }

  protected:
    TCimHTTPDeclaration(const std::string& name, NameRule names) : name_(name), names_(names), qualifiers_(names) {}
    ~TCimHTTPDeclaration() override = default;

    /// What a name is to this element and its parts.
    NameRule Names() const { return names_; }

    /// The qualifier of that name, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> FindQualifier(const std::string& name) const { return qualifiers_.Find(name); }
    boost::shared_ptr<TCimHTTPQualifier> FindNormalizedQualifier(const std::string& name) const {
        return qualifiers_.FindNormalized(name);
    }
    std::uint64_t QualifierRevision() const { return qualifiers_.Revision(); }

    /// As long as it is the same, so is QualifierRevision().
    std::uint64_t QualifierChanges() const { return qualifiers_.Changes() + TCimHTTPQualifier::Changes(); }
    const boost::shared_ptr<TCimHTTPQualifier>& KeyQualifier() const { return qualifiers_.Key(); }

  private:
    std::string NormalizedName(const Interface& declaration) const {
        return NormalizeName(declaration.GetName(TCIMContext()), names_);
    }

    std::string name_;
    NameRule names_;
    TCimHTTPQualifierMap qualifiers_;
};

} // namespace NQORVYX20
