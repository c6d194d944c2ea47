#pragma once

#include "host/ICIMQualifierDecl.h"
#include "host/TCIMValue.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

/// The host's code of a remote type: `eCIMUnknown`, or `eCIMArrayUnknown` for an array, where the host has none.
TCIMValue::TCIMType pegTypeToVYXType(Pegasus::CIMType type, bool isArray);

/// The host's code of a remote scope or flavor, decided by its text form as below.
ICIMQualifierDecl::EScope pegScopeToVYXScope(Pegasus::CIMScope scope);
ICIMQualifierDecl::EFlavor pegFlavorToVYXFlavor(Pegasus::CIMFlavor flavor);

/// The scope that one upper-case keyword names. Every other text, one with several keywords too, is `eScopeNone`.
ICIMQualifierDecl::EScope ScopeOfText(const std::string& text);

/// The flavor that one upper-case keyword names. Every other text, one with several keywords too, is `eFlavorNone`.
ICIMQualifierDecl::EFlavor FlavorOfText(const std::string& text);

} // namespace NQORVYX20
