#pragma once

#include "host/TCIMReference.h"
#include "output/Listing.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// The names of all keys that paths have, each once, in the order in which they come.
std::vector<std::string> KeyNames(const std::vector<NQORVYX20::TCIMReference>& paths);

/// The paths as texts, in their order.
std::vector<std::string> PathTexts(const std::vector<NQORVYX20::TCIMReference>& paths);

/// Instances by their keys, a path a row: with `hasClass` the class, then a column for each key.
Listing KeyListing(const std::vector<NQORVYX20::TCIMReference>& paths, bool hasClass);

/// Writes them as JSON, an array with an object for each path, one a line:
///
///     {"class":"CIM_Disk","keys":{"Name":"a","Number":3}}
void WriteKeysJson(const std::vector<NQORVYX20::TCIMReference>& paths, std::ostream& output);

/// Whether the paths name several classes.
bool HaveSeveralClasses(const std::vector<NQORVYX20::TCIMReference>& paths);

} // namespace cimhttp
