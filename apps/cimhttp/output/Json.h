#pragma once

#include "HostTypes.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

class TextBuffer;

/// A JSON string (RFC 8259). Bytes that are not UTF-8 become U+FFFD; what could steer a terminal is escaped.
std::string JsonText(std::string_view text);
void AppendJsonText(std::string_view text, std::string& json);
void AppendJsonText(std::string_view text, TextBuffer& json);

/// A CIM value as JSON: null, a boolean, a number, a string or an array of these. Integers have all their digits; reals
/// read back the same, and where JSON has no number for them they are the strings "nan", "inf" and "-inf"; char16,
/// date-times and references are strings.
std::string JsonValue(const NQORVYX20::TCIMValue& value);
void AppendJsonValue(const NQORVYX20::TCIMValue& value, TextBuffer& json);

/// An array of JSON strings.
std::string JsonTexts(const std::vector<std::string>& texts);
void AppendJsonTexts(const std::vector<std::string>& texts, std::string& json);

/// Puts an object together, its members in the order in which they are added.
class JsonObject {
  public:
    /// `json` must be JSON already.
    JsonObject& Add(std::string_view name, std::string_view json);

    /// Adds members of another object, which are JSON without its braces.
    JsonObject& AddMembers(std::string_view members);

    std::string Text() const { return text_.empty() ? "{}" : text_ + '}'; }

  private:
    std::string text_;
};

/// An array in one line; `json` makes the JSON of an element.
template <typename Elements, typename Json>
std::string JsonArray(const Elements& elements, const Json& json) {
    std::string text;
    for (const auto& element : elements) {
        text += (text.empty() ? "[" : ",") + json(element);
    }
    return text.empty() ? "[]" : text + ']';
}

/// Writes an array to a stream, each element on a line of its own. Nothing is written before the first.
class JsonLines {
  public:
    explicit JsonLines(std::ostream& output) : output_(output) {}

    /// The stream, to write the next element to.
    std::ostream& Next();

    /// Closes the array, with the bracket on a line of its own or, with another `end`, without.
    void End(const char* end = "\n]");

  private:
    std::ostream& output_;
    bool isEmpty_ = true;
};

/// Writes the elements with JsonLines; `json` makes the JSON of one.
template <typename Element, typename Json>
void WriteJsonLines(const std::vector<Element>& elements, const Json& json, std::ostream& output) {
    JsonLines lines(output);
    for (const Element& element : elements) {
        lines.Next() << json(element);
    }
    lines.End();
}

} // namespace cimhttp
