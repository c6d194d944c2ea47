#pragma once

// The types of the host contract that headers name without needing to know more of them.
namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
class ICIMNamespace;
class ICIMProperty;
class ICIMPropertyDecl;
class TCIMDateTime;
class TCIMValue;
class TVYXException;
} // namespace NQORVYX20
