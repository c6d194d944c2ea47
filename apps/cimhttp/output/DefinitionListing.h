#pragma once

#include "access/RemoteModel.h"
#include "output/Listing.h"

#include <vector>

namespace cimhttp {

// What a server says of classes and qualifiers, as listings.

/// The properties of a class, a row each.
Listing PropertyListing(const RemoteClass& cls);

/// The methods of a class, a row each.
Listing MethodListing(const RemoteClass& cls);

/// The qualifiers of a class and of its elements, a row each.
Listing QualifierListing(const RemoteClass& cls);

Listing DeclarationListing(const std::vector<RemoteQualifierDeclaration>& declarations);

} // namespace cimhttp
