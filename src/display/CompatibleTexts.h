#pragma once

#include "display/DisplayQualifiers.h"
#include "display/PropertyTexts.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class ValueMapTable;

/// The texts of the compatible reading: Values and ValueMap for booleans and unsigned integers; UNITS with
/// DISPLAYFIXEDUNITS, ABBREVIATEUNITS and DISPLAYCPUTIME for other unsigned integers; BASE for what has no unit;
/// NULLDISPLAY for null. The qualifiers are looked up each time; a choice of the caller has no effect.
class CompatibleTexts : public PropertyTexts {
  public:
    /// Finds the value map of a declaration; an empty pointer when it has none.
    using TMapSource = boost::shared_ptr<const ValueMapTable> (*)(const boost::shared_ptr<ICIMPropertyDecl const>&);

    /// `qualifiers` are those of the declaration; the pointer to it must outlive the object.
    CompatibleTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, DisplayQualifiers qualifiers,
                    TMapSource findMap);

    std::string Of(const TCIMValue& value, const DisplayChoice& choice) const override;

    /// A scalar's text is that without its value map.
    std::vector<std::string> OfElements(const TCIMValue& value, const DisplayChoice& choice) const override;

    /// The text without the value map.
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
    std::string WithUnits(const TCIMValue& value, const std::string& units) const;

    const boost::shared_ptr<ICIMPropertyDecl const>& declaration_;
    DisplayQualifiers qualifiers_;
    TMapSource findMap_;
};

} // namespace NQORVYX20
