#pragma once

#include "access/RemoteModel.h"
#include "output/Listing.h"

#include <string>
#include <vector>

namespace cimhttp {

// What a server says of classes and qualifiers, as listings and JSON.

/// The properties of a class, a row each.
Listing PropertyListing(const RemoteClass& cls);

/// The methods of a class, a row each.
Listing MethodListing(const RemoteClass& cls);

/// The qualifiers of a class and of its elements, a row each.
Listing QualifierListing(const RemoteClass& cls);

Listing DeclarationListing(const std::vector<RemoteQualifierDeclaration>& declarations);

/// A class with all that the server says of it, in one line.
std::string ClassJson(const RemoteClass& cls);

std::string MethodsJson(const RemoteClass& cls);

} // namespace cimhttp
