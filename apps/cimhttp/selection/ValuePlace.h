#pragma once

#include "host/TCIMValue.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// The place of a value among others: numbers by their size, whatever their types; booleans, false first; instants and
/// lengths of time; everything else by its text, without regard to case. Null follows all.
class ValuePlace {
  public:
    /// Of a value that is no array.
    explicit ValuePlace(const NQORVYX20::TCIMValue& value);

    /// Of what a user writes, among values of a type (for an array, that of its elements); nothing when no value of
    /// the type is written like this.
    static std::optional<ValuePlace> Of(const std::string& text, NQORVYX20::TCIMValue::TCIMType type);

    bool IsNull() const { return kind_ == Kind::kNull; }

    // Nothing is known between values of different kinds, of null, of what is not a number, and where asterisks in a
    // date-time leave it open.
    std::optional<bool> IsLessThan(const ValuePlace& other) const;
    std::optional<bool> IsAtMost(const ValuePlace& other) const;

    /// An order for sorting: kinds first, date-times by the earliest time that they may stand for.
    friend bool operator<(const ValuePlace& one, const ValuePlace& other);

  private:
    enum class Kind { kNumber, kNotANumber, kInterval, kInstant, kText, kNull };

    explicit ValuePlace(long double number);
    explicit ValuePlace(std::string text) : kind_(Kind::kText), text_(std::move(text)) {}
    explicit ValuePlace(const NQORVYX20::TCIMDateTime& dateTime);

    bool IsComparableWith(const ValuePlace& other) const;

    static ValuePlace Placed(const NQORVYX20::TCIMValue& value);

    // A long double holds every integer of 64 bits and every double.
    Kind kind_;
    long double lowest_ = 0;
    long double highest_ = 0;
    std::string text_;
};

/// The places of the elements of an array, or the one of another value.
std::vector<ValuePlace> PlacesOf(const NQORVYX20::TCIMValue& value);

} // namespace cimhttp
