#include "model/BitWords.h"

#include <Pegasus/Common/CIMScope.h>

namespace Pegasus {
inline namespace bundled {

const CIMScope CIMScope::NONE(0);
const CIMScope CIMScope::CLASS(1);
const CIMScope CIMScope::ASSOCIATION(2);
const CIMScope CIMScope::INDICATION(4);
const CIMScope CIMScope::PROPERTY(8);
const CIMScope CIMScope::REFERENCE(16);
const CIMScope CIMScope::METHOD(32);
const CIMScope CIMScope::PARAMETER(64);
const CIMScope CIMScope::ANY(127);

String CIMScope::toString() const {
    constexpr std::array<const char*, 7> kWords = {"CLASS",     "ASSOCIATION", "INDICATION", "PROPERTY",
                                                   "REFERENCE", "METHOD",      "PARAMETER"};
    return detail::bitWords(bits_, kWords);
}

} // namespace bundled
} // namespace Pegasus
