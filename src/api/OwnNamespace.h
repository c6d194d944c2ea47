#pragma once

namespace NQORVYX20 {

class ICIMNamespace;
class TCimHTTPNamespace;

/// The namespace, which is one of the plug-in's. Throws TVYXException eTypeMismatch, after a line in the log, for any
/// other.
TCimHTTPNamespace& OwnNamespace(ICIMNamespace& nameSpace);
const TCimHTTPNamespace& OwnNamespace(const ICIMNamespace& nameSpace);

} // namespace NQORVYX20
