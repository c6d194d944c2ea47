#pragma once

#include "display/ValueMapCache.h"
#include "host/ICIMPropertyDecl.h"
#include "model/TCimHTTPDeclaration.h"

#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <memory>

namespace NQORVYX20 {

class CompatibleTexts;
class DisplayQualifiers;
class FaithfulTexts;
class TCimHTTPClass;

/// The declaration of a property in a class. The default value carries the type. It refers to its class weakly:
/// operations that need the class throw boost::bad_weak_ptr when it has gone.
class TCimHTTPPropertyDecl : public TCimHTTPDeclaration<TCimHTTPPropertyDecl, ICIMPropertyDecl> {
  public:
    static constexpr const char* kKind = "property";

    TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass> cls, const std::string& name, const TCIMValue& defaultValue);

    /// An empty declaration: it takes nothing over from either argument.
    TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass const> cls, boost::shared_ptr<ICIMPropertyDecl const> other);

    ~TCimHTTPPropertyDecl() override;

    using TCimHTTPDeclaration::operator=;

    /// Throws as TCimHTTPClass::AddPropertyDecl does.
    void AddToClass(TCIMContext context) override;

    /// Does nothing.
    void RemoveFromClass(TCIMContext context) override;
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const override;
    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;
    const TCIMValue& GetDefaultValue(TCIMContext context) const override;
    void SetDefaultValue(const TCIMValue& value, TCIMContext context) override;

    /// The declaration as the plug-in's own, whose look-ups do not fail; null for another, and for one that is derived
    /// from it.
    static const TCimHTTPPropertyDecl* AsOwn(const ICIMPropertyDecl& declaration);

    /// The qualifiers of a declaration, own or not, as the display of values reads them.
    static DisplayQualifiers DisplayQualifiersOf(boost::shared_ptr<ICIMPropertyDecl const> declaration);

    /// The qualifier of that name, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> LookupQualifier(const std::string& name) const { return FindQualifier(name); }

    /// The qualifier of that name, which is in its normal form, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> LookupNormalizedQualifier(const std::string& name) const {
        return FindNormalizedQualifier(name);
    }

    /// True when the property is a key: it has the qualifier Key, whose value is true.
    bool IsKey() const { return KeyQualifier() && KeyQualifier()->IsTrue(); }

    /// The value map of the qualifiers Values and ValueMap, see MakeValueMapTable. It is made anew only after one of
    /// them has changed.
    boost::shared_ptr<const ValueMapTable> GetValueMapTable() const;

    /// Whether it belongs to a namespace that reads faithfully.
    bool IsFaithful() const { return Names() == NameRule::kCim; }

    /// The texts of a faithful declaration, and those by the rules of the compatible reading. They are made anew only
    /// after a qualifier has changed; valid until then.
    const FaithfulTexts& GetFaithfulTexts() const;
    const CompatibleTexts& GetCompatibleTexts() const;

  private:
    /// Drops the texts that were made before the last change of a qualifier. As long as none changes, it compares two
    /// numbers.
    void DropOldTexts() const {
        if (textsChanges_ != QualifierChanges()) {
            DropTextsOfOtherRevision();
        }
    }
    void DropTextsOfOtherRevision() const;

    boost::weak_ptr<TCimHTTPClass> class_;
    TCIMValue defaultValue_;
    mutable ValueMapCache valueMap_;
    mutable std::unique_ptr<const FaithfulTexts> faithfulTexts_;
    mutable std::unique_ptr<const CompatibleTexts> compatibleTexts_;
    mutable std::uint64_t textsRevision_ = 0;
    mutable std::uint64_t textsChanges_ = 0;
};

} // namespace NQORVYX20
