#pragma once

#include <string>

namespace NQORVYX20 {

/// Which texts are names.
enum class NameRule {
    kHost, ///< those that hosts know: letters, of A to Z and of the locale, digits and underscores
    kCim   ///< those of DSP0004: with all characters beyond ASCII, too, whose letter case counts
};

/// The name in lower case, under which every collection of the plug-in keeps its elements. The empty name is accepted.
/// Throws TVYXException eInvalidName, after a line in the log, for a text that is no name by the rule, or that begins
/// with a digit.
std::string NormalizeName(const std::string& name, NameRule rule = NameRule::kHost);

} // namespace NQORVYX20
