#pragma once

#include "display/DisplayChoice.h"
#include "host/ICIMProperty.h"

#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// The value of one property: a declaration, and a value of its own unless the declaration's default applies. It refers
/// to its declaration weakly, since the class keeps declarations: operations that need the declaration throw
/// boost::bad_weak_ptr when it has gone.
///
/// The texts for people are made from the declaration's qualifiers, by the rules of the reading that the declaration
/// belongs to: see CompatibleTexts and FaithfulTexts. A qualifier that is absent, null or of the wrong type has no
/// effect. When a lookup of a qualifier fails with TVYXException, other than eNotFound for its absence, the text's
/// caller gets a TVYXException of that code.
class TCimHTTPProperty : public ICIMProperty {
  public:
    /// A row of a value-map table: the text of the values from `low` to `high`, both included. A row that is open at
    /// its end has all bits of `high` set.
    struct TValueMapEntry {
        std::uint64_t low;
        std::uint64_t high;
        std::string text;
    };

    /// A property that shows its declaration's default.
    explicit TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration);

    /// Throws as SetValue does.
    TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration, const TCIMValue& value);

    /// A property of the same declaration, with the other's value, unless null, as its own: also when the other shows
    /// the default. Takes no previous value over.
    explicit TCimHTTPProperty(boost::shared_ptr<ICIMProperty const> other);

    TCimHTTPProperty(const TCimHTTPProperty&) = delete;
    TCimHTTPProperty& operator=(const TCimHTTPProperty&) = delete;

    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;
    bool IsDefaultValue(TCIMContext context) const override;
    const TCIMValue& GetValue(TCIMContext context) const override;

    /// Throws TVYXException eTypeMismatch, after a line in the log, when the value's type is not the declared one (an
    /// array is a type of its own), or when a reference names another class than the declaration's default does. The
    /// names must be the same in every letter: a subclass is another class.
    void SetValue(const TCIMValue& value, TCIMContext context) override;

    /// True when the value comes from the declaration.
    bool GetPropagated(TCIMContext context) const override;
    boost::shared_ptr<ICIMPropertyDecl const> GetDeclaration(TCIMContext context) const override;

    /// Compare this property's own value, never the default: without one it equals nothing, and is less than a property
    /// only by its declaration. Declarations are ordered by address.
    bool operator==(ICIMProperty& other) const override;
    bool operator<(ICIMProperty& other) const override;

    /// Copies nothing.
    ICIMProperty& operator=(const ICIMProperty& other) override;
    const TCIMValue& GetPrevValue() const override;

    /// Checks a value that is not null as SetValue does.
    void SetPrevValue(const TCIMValue& value) override;
    void SetPrevValue() override;
    bool IsPrevValueDifferent() const override;

    std::string ToString() const override;
    std::string ToString(const DisplayChoice& choice) const;
    std::string PrevValueToString() const override;

    /// Elements that are null show as null does, also with a value map. No text for an array that is null.
    std::vector<std::string> ToStringVector() const override;
    std::vector<std::string> ToStringVector(const DisplayChoice& choice) const;

    /// As ToStringVector, without the value map.
    std::vector<std::string> ToStringVectorWithBase() const;

    /// The text of one value, without the value map.
    std::string ToStringWithQualifiers(const TCIMValue& value) const;

    /// The value in the number base of the qualifier BASE, or in base 10 without one. What is written in a base that
    /// is none from 2 to 36 is up to the host's TCIMValue.
    std::string ToStringWithBase(const TCIMValue& value) const;

    /// Makes the table of the value map, in the order of the qualifier ValueMap, and the text for all other values,
    /// empty for none. Entries without a text of their own get an empty one. False, leaving both empty, when the
    /// declaration has no value map or a contradictory one.
    bool BuildValueMapEntryArray(std::vector<TValueMapEntry>& table, std::string& defaultText) const;

    /// The text of the first row that covers the value; else the default text; else the value in base 10. Changes
    /// neither table nor text. Throws TVYXException eNotSupported for a value that is not a boolean or an unsigned
    /// integer, and for null.
    std::string LookupInTable(const TCIMValue& value, std::vector<TValueMapEntry>& table,
                              std::string& defaultText) const;

  private:
    boost::shared_ptr<ICIMPropertyDecl const> LockDeclaration() const;

    /// GetValue() by the declaration, which is locked.
    const TCIMValue& ValueOf(const ICIMPropertyDecl& declaration) const;

    /// Logs and throws for a value that the declaration does not allow; `operation` begins the message.
    static void Check(const ICIMPropertyDecl& declaration, const TCIMValue& value, const char* operation);

    boost::weak_ptr<ICIMPropertyDecl const> declaration_;
    std::optional<TCIMValue> value_;
    std::unique_ptr<TCIMValue> prevValue_; // which hardly any has
    bool isPrevValueDifferent_ = false;
};

} // namespace NQORVYX20
