#pragma once

#include "display/DisplayChoice.h"

#include <string>
#include <vector>

namespace NQORVYX20 {

class TCIMValue;

/// Makes texts for people of the values of one property. There is an implementation for each of the two readings.
class PropertyTexts {
  public:
    virtual ~PropertyTexts() = default;

    /// The text of a value; an array's is one, too.
    virtual std::string Of(const TCIMValue& value, const DisplayChoice& choice) const = 0;

    /// The texts of an array's elements, none for null; one text for a scalar.
    virtual std::vector<std::string> OfElements(const TCIMValue& value, const DisplayChoice& choice) const = 0;

  protected:
    PropertyTexts() = default;
    PropertyTexts(const PropertyTexts&) = default;
    PropertyTexts& operator=(const PropertyTexts&) = default;
};

} // namespace NQORVYX20
