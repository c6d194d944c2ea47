#include "host/TVYXException.h"

namespace NQORVYX20 {

const char* TVYXException::what() const noexcept { return fStatus.TranslateStatusCode(); }

} // namespace NQORVYX20
