#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace NQORVYX20 {

/// A unit as the qualifier UNITS names it, a prefix and a base unit in one word, and the texts of numbers in that unit.
/// The texts do not depend on the locale.
class DisplayUnits {
  public:
    /// Splits `KiloBytes` into `Kilo` and `Bytes`, in exactly this spelling.
    explicit DisplayUnits(const std::string& units);

    /// True for `Seconds`: show numbers with TimeText.
    bool IsTime() const;

    /// True for `Bytes`, `Bits`, `Bytes per Second` and `Bits per Second`: show numbers with DataText.
    bool IsData() const;

    /// The number as an interval of days, hours, minutes, seconds and microseconds. Prefixes above one have no meaning
    /// for time and give the empty interval. Nothing for more days than an interval can hold.
    std::optional<std::string> TimeText(std::uint64_t number) const;

    /// The number with its unit, `1.5 Kilobytes`, or `1.5 KB` when abbreviated. `fixedPrefix` is the one to reach,
    /// `Kilo`, `Mega`, `Giga` or `Tera`; with any other text the number is divided until it is small. Numbers that
    /// already have a larger prefix stay what they are.
    void AppendData(std::uint64_t number, const std::string& fixedPrefix, bool isAbbreviated, std::string& text) const;
    std::string DataText(std::uint64_t number, const std::string& fixedPrefix, bool isAbbreviated) const {
        std::string text;
        AppendData(number, fixedPrefix, isAbbreviated, text);
        return text;
    }

  private:
    float Divisor() const;
    void AppendLongUnit(std::size_t prefix, std::string& text) const;
    void AppendShortUnit(std::size_t prefix, std::string& text) const;

    std::size_t prefix_; // index of the prefix; the larger the prefix, the smaller the index
    std::string base_;
};

} // namespace NQORVYX20
