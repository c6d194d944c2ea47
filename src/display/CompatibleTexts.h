#pragma once

#include "display/DisplayQualifiers.h"
#include "display/DisplayUnits.h"
#include "display/PropertyTexts.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class ValueMapTable;

/// The texts of the compatible reading: Values and ValueMap for booleans and unsigned integers; UNITS with
/// DISPLAYFIXEDUNITS, ABBREVIATEUNITS and DISPLAYCPUTIME for other unsigned integers; BASE for what has no unit;
/// NULLDISPLAY for null. A choice of the caller has no effect. A qualifier is looked up when a text needs it, and only
/// once.
class CompatibleTexts : public PropertyTexts {
  public:
    using TMap = boost::shared_ptr<const ValueMapTable>;

    /// `qualifiers` are those of the declaration, which must outlive the object.
    CompatibleTexts(const ICIMPropertyDecl& declaration, DisplayQualifiers qualifiers);

    /// Of a declaration whose look-ups do not fail, and of which the value map is known: all is looked up at once, and
    /// the object, which the declaration may keep, does not keep the declaration. The texts are made without look-ups.
    CompatibleTexts(const ICIMPropertyDecl& declaration, DisplayQualifiers qualifiers, TMap map);

    const std::string* Find(const TCIMValue& value, const DisplayChoice& choice) const override;

    /// A scalar's text is that without its value map.
    std::vector<std::string> OfElements(const TCIMValue& value, const DisplayChoice& choice) const override;
    void AddElements(const TCIMValue& value, const DisplayChoice& choice, TextMemory& texts) const override;

    /// The texts without the value map.
    std::vector<std::string> OfElementsWithoutMap(const TCIMValue& value) const;

    /// The text of a value without the value map; the value in the declaration's base.
    std::string WithoutMap(const TCIMValue& value) const;
    std::string WithBase(const TCIMValue& value) const;

    /// The number by which a value is found in a value map. Throws TVYXException eNotSupported for null and for a value
    /// that is neither a boolean nor an unsigned integer.
    static std::uint64_t NumberOf(const TCIMValue& value);

    /// The text of a value that no row of a value map covers: the default text, else the value in base 10.
    static std::string TextOfOther(const TCIMValue& value, const std::string& defaultText);

  private:
    /// What has been looked up so far.
    struct TKnown {
        std::optional<TMap> map;
        std::optional<std::string> nullDisplay;
        std::optional<unsigned char> base;
        std::optional<std::optional<DisplayUnits>> units;
        std::optional<bool> isCpuTime;
        std::optional<std::string> fixedUnits;
        std::optional<bool> isAbbreviated;
    };

    const TMap& Map() const;
    const std::string& NullDisplay() const;
    unsigned char Base() const;
    const std::optional<DisplayUnits>& Units() const;
    bool IsCpuTime() const;
    const std::string& FixedUnits() const;
    bool IsAbbreviated() const;

    template <typename Texts>
    void AddTo(Texts& texts, const TCIMValue& value) const;
    template <typename Texts>
    void AddWithoutMapTo(Texts& texts, const TCIMValue& value) const;
    void AppendMade(const TCIMValue& value, const DisplayChoice& choice, std::string& text) const override;
    void AppendInMap(const TCIMValue& value, const ValueMapTable& map, std::string& text) const;
    void AppendWithoutMap(const TCIMValue& value, std::string& text) const;
    void AppendWithBase(const TCIMValue& value, std::string& text) const;
    void AppendWithUnits(const TCIMValue& value, const DisplayUnits& units, std::string& text) const;

    const ICIMPropertyDecl& declaration_;
    std::optional<DisplayQualifiers> qualifiers_; // none where all is known
    mutable TKnown known_;
};

} // namespace NQORVYX20
