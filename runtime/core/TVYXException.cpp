#include "host/TVYXException.h"

namespace NQORVYX20 {

const char* TVYXException::what() const noexcept { return status_.TranslateStatusCode(); }

} // namespace NQORVYX20
