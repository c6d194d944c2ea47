#pragma once

#include "display/BitNames.h"
#include "display/PropertyTexts.h"
#include "display/StandardValueMap.h"
#include "display/Unit.h"
#include "host/TCIMValue.h"

#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

class DisplayQualifiers;

/// The texts for people of one property's values, by the standard qualifiers: Values and ValueMap, BitValues and
/// BitMap, PUnit or else Units, and NULLDISPLAY and BASE. Made once for a declaration.
class FaithfulTexts : public PropertyTexts {
  public:
    /// `name` and `type` are those of the declaration, the name in its normal form. Throws what the look-ups throw.
    FaithfulTexts(const std::string& name, TCIMValue::TCIMType type, const DisplayQualifiers& qualifiers);

    const std::string* Find(const TCIMValue& value, const DisplayChoice& choice) const override;
    std::vector<std::string> OfElements(const TCIMValue& value, const DisplayChoice& choice) const override;
    void AddElements(const TCIMValue& value, const DisplayChoice& choice, TextMemory& texts) const override;

    /// Whether a value that is neither null nor an array nor a date-time shows as it is, integers in decimal.
    bool ShowsAsItIs() const;

    /// Whether the property has the name of a numeric sensor's reading.
    bool IsNamedAsReading() const { return isNamedAsReading_; }

    /// The property of the same class that holds the unit, by the qualifier ISPUnit; empty for none.
    const std::string& UnitHolder() const { return unitHolder_; }

    /// Whether an instance may tell the unit, by one of these two.
    bool MayHaveUnitOfInstance() const { return isNamedAsReading_ || !unitHolder_.empty(); }

  private:
    template <typename Texts>
    void AddTo(Texts& texts, const TCIMValue& value, const DisplayChoice& choice) const;

    /// The elements of an array stand in braces.
    void AppendMade(const TCIMValue& value, const DisplayChoice& choice, std::string& text) const override;
    void AppendList(const std::vector<TCIMValue>& elements, const DisplayChoice& choice, std::string& text) const;
    template <typename Number>
    void AppendNumber(Number number, const TCIMValue& value, const DisplayChoice& choice, std::string& text) const;
    template <typename Number>
    void AppendQuantity(Number number, const TCIMValue& value, const DisplayChoice& choice, std::string& text) const;

    std::string nullText_;
    unsigned char base_;
    std::optional<StandardValueMap> map_;
    std::optional<BitNames> bits_;
    std::optional<Unit> unit_;
    std::string unknownUnit_; ///< a unit that is not known, as the qualifier has it
    std::string unitHolder_;
    bool isNamedAsReading_;
};

} // namespace NQORVYX20
