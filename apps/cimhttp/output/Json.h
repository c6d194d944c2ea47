#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NQORVYX20 {
class TCIMValue;
} // namespace NQORVYX20

namespace cimhttp {

/// A JSON string (RFC 8259). Bytes that are not UTF-8 become U+FFFD; what could steer a terminal is escaped.
std::string JsonText(std::string_view text);
void AppendJsonText(std::string_view text, std::string& json);

/// A CIM value as JSON: null, a boolean, a number, a string or an array of these. Integers have all their digits; reals
/// read back the same, and where JSON has no number for them they are the strings "nan", "inf" and "-inf"; char16,
/// date-times and references are strings.
std::string JsonValue(const NQORVYX20::TCIMValue& value);
void AppendJsonValue(const NQORVYX20::TCIMValue& value, std::string& json);

/// An array of JSON strings.
std::string JsonTexts(const std::vector<std::string>& texts);
void AppendJsonTexts(const std::vector<std::string>& texts, std::string& json);

/// Puts an object together, its members in the order in which they are added.
class JsonObject {
  public:
    /// `json` must be JSON already.
    JsonObject& Add(std::string_view name, std::string_view json);

    std::string Text() const { return text_.empty() ? "{}" : text_ + '}'; }

  private:
    std::string text_;
};

/// The same for an array.
class JsonArray {
  public:
    void Add(std::string_view json);

    std::string Text() const { return text_.empty() ? "[]" : text_ + ']'; }

  private:
    std::string text_;
};

} // namespace cimhttp
