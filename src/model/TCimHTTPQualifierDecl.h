#pragma once

#include "convert/NormalName.h"
#include "host/ICIMQualifierDecl.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

namespace NQORVYX20 {

class SchemaNamespace;

/// The declaration of a qualifier in a namespace. It refers to its namespace weakly: operations that need the namespace
/// throw boost::bad_weak_ptr when it has gone.
class TCimHTTPQualifierDecl : public ICIMQualifierDecl, public boost::enable_shared_from_this<TCimHTTPQualifierDecl> {
  public:
    TCimHTTPQualifierDecl(boost::shared_ptr<SchemaNamespace> nameSpace, const std::string& name,
                          const TCIMValue& defaultValue, EScope scope, EFlavor flavor);
    TCimHTTPQualifierDecl(const TCimHTTPQualifierDecl&) = delete;
    TCimHTTPQualifierDecl& operator=(const TCimHTTPQualifierDecl&) = delete;

    void Validate(TCIMContext context) const override;

    /// Throws as SchemaNamespace::AddQualifierDecl does.
    void AddToNamespace(TCIMContext context) override;

    /// Does nothing: a declaration stays as long as its namespace.
    void RemoveQualifierDecl(TCIMContext context) override;
    const std::string& GetName(TCIMContext context) const override;
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const override;
    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;
    const TCIMValue& GetDefaultValue(TCIMContext context) const override;
    void SetDefaultValue(const TCIMValue& value, TCIMContext context) override;
    EScope GetScope(TCIMContext context) const override;
    void SetFlavor(EFlavor flavor, TCIMContext context) override;
    void UnsetFlavor(EFlavor flavor, TCIMContext context) override;
    EFlavor GetFlavor(TCIMContext context) const override;
    bool operator==(ICIMQualifierDecl& other) const override;
    bool operator<(ICIMQualifierDecl& other) const override;

    /// Copies nothing.
    ICIMQualifierDecl& operator=(const ICIMQualifierDecl& other) override;

    NameRule Names() const { return names_; }

  private:
    boost::weak_ptr<SchemaNamespace> namespace_;
    std::string name_;
    NameRule names_;
    TCIMValue defaultValue_;
    EScope scope_;
    EFlavor flavor_;
};

} // namespace NQORVYX20
