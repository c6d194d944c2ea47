#include "cimhttp/ReadingIncidents.h"

#include "api/OwnNamespace.h"
#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

ReadingIncidents TakeIncidents(ICIMNamespace& nameSpace) { return OwnNamespace(nameSpace).TakeIncidents(); }

} // namespace NQORVYX20
