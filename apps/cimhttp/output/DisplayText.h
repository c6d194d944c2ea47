#pragma once

#include "HostTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

class TextBuffer;

/// What a property's value says to people by its declaration's qualifiers, such as `98.3 GiB` for a number of bytes, or
/// `2026-11-21 08:39:00 +01:00` for a date-time: one text, or for an array one for each element. Null has an empty text
/// where the declaration has none for it. A value for which the plug-in has no text, because a qualifier cannot be
/// read, shows as it is; so does a reference. See ValueTexts.
class DisplayText {
  public:
    /// `texts` are one for each element of an array that is not null, otherwise one.
    DisplayText(const NQORVYX20::TCIMValue& value, std::vector<std::string> texts);

    /// True for an array that is not null.
    bool IsList() const { return isList_; }

    /// As many as the array has elements; exactly one otherwise.
    const std::vector<std::string>& Texts() const { return texts_; }

    /// The texts in one line, `rw, relatime`; an empty one among several shows as `""`, one of null as an en dash.
    std::string Joined() const;

    /// Appends a JSON string, or for a list an array of them.
    void AppendJson(std::string& json) const;

  private:
    bool isList_;
    std::vector<bool> isNull_; // for each element of a list
    std::vector<std::string> texts_;
};

/// What stands for the text of a list's element among those of the others: `""` for an empty one, for null an en dash.
std::string_view TextInList(std::string_view text, bool isNull);

/// Whether a value is one of those that PluginAccess::ShowsAsItIs() speaks of, and a text, a boolean or an integer.
bool ShowsAsItIs(const NQORVYX20::TCIMValue& value);

/// A value as it is, in the usual notation of integers; null is the empty text.
std::string PlainText(const NQORVYX20::TCIMValue& value);
void AppendPlainText(const NQORVYX20::TCIMValue& value, TextBuffer& text);

/// The PlainText() of each element of an array that is not null, otherwise of the value.
std::vector<std::string> PlainTexts(const NQORVYX20::TCIMValue& value);

/// A value as it is: integers in decimal, the elements of an array in braces, a null one as an en dash; null itself has
/// an empty text.
std::string RawText(const NQORVYX20::TCIMValue& value);

} // namespace cimhttp
