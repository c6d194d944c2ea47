#pragma once

#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMProperty;
} // namespace NQORVYX20

namespace cimhttp {

class PluginAccess;

/// What a property's value says to people by its declaration's qualifiers, such as `98.3 Gigabytes` for a number of
/// bytes, or `2026-11-21 08:39:00 +01:00` for a date-time: one text, or for an array one for each element. A value for
/// which the plug-in has no text, because a qualifier cannot be read, shows as it is.
class DisplayText {
  public:
    DisplayText(const PluginAccess& access, const NQORVYX20::ICIMProperty& property);

    /// True for an array that is not null.
    bool IsList() const { return is_list_; }

    /// As many as the array has elements; exactly one otherwise.
    const std::vector<std::string>& Texts() const { return texts_; }

    /// The texts in one line, `rw, relatime`; an empty one among several shows as `""`.
    std::string Joined() const;

  private:
    bool is_list_;
    std::vector<std::string> texts_;
};

} // namespace cimhttp
