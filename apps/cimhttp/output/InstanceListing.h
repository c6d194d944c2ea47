#pragma once

#include "output/InstanceProperties.h"
#include "output/Listing.h"
#include "output/ValueTexts.h"

#include <string>

namespace cimhttp {

/// Turns instances into listings for people.
class InstanceListing {
  public:
    /// Values are shown as people read them, or with `isRaw` as they are.
    InstanceListing(const ValueTexts& texts, bool isRaw) : texts_(texts), isRaw_(isRaw) {}

    /// An instance a row, a property a column, and before them, with `hasClass`, the name of the class. A property
    /// that an instance's own class does not declare is an empty text. Columns of properties that were asked for by
    /// name stay, however narrow the table gets.
    Listing Table(const Instances& instances, const Properties& properties, bool hasClass, bool isAsked) const;

    /// How much the column of a property is missed where there is no room for all.
    static Listing::Importance ImportanceOf(const NQORVYX20::ICIMPropertyDecl& property);

    /// A property a row: the property, type, value and text.
    Listing Values(const NQORVYX20::ICIMInstance& instance, const Properties& properties) const;

    /// True when there is nothing to show of a property in any instance: null that has no text, or an empty text.
    bool IsEmpty(const Instances& instances, const NQORVYX20::ICIMPropertyDecl& property) const;

    /// True for a property that is null and has no text for that.
    bool LacksValue(const NQORVYX20::ICIMInstance& instance, const NQORVYX20::ICIMPropertyDecl& property) const;

  private:
    std::string Text(const NQORVYX20::ICIMInstance& instance, const NQORVYX20::ICIMProperty& property) const;
    Cell CellOf(const NQORVYX20::ICIMInstance& instance, const std::string& property) const;

    ValueTexts texts_;
    bool isRaw_;
};

} // namespace cimhttp
