#pragma once

#include <string>

namespace NQORVYX20 {

/// Which names there are.
enum class NameRule {
    kHost, ///< those that hosts know: letters, of A to Z and of the locale, digits and underscores
    kCim   ///< those of DSP0004: all characters beyond ASCII, too, which are the same in no other letter case
};

/// The name in lower case, under which every collection of the plug-in keeps its elements. The empty name is
/// accepted. Throws TVYXException eInvalidName, after a line in the log, for a name that is not one by the rule, or
/// that begins with a digit.
std::string NormalizeName(const std::string& name, NameRule rule = NameRule::kHost);

} // namespace NQORVYX20
