#include "model/BitWords.h"

#include <Pegasus/Common/CIMFlavor.h>

namespace Pegasus {
inline namespace bundled {

const CIMFlavor CIMFlavor::NONE(0);
const CIMFlavor CIMFlavor::OVERRIDABLE(1);
const CIMFlavor CIMFlavor::ENABLEOVERRIDE(1);
const CIMFlavor CIMFlavor::TOSUBCLASS(2);
const CIMFlavor CIMFlavor::TOINSTANCE(4);
const CIMFlavor CIMFlavor::TRANSLATABLE(8);
const CIMFlavor CIMFlavor::DISABLEOVERRIDE(16);
const CIMFlavor CIMFlavor::RESTRICTED(32);
const CIMFlavor CIMFlavor::DEFAULTS(3);

String CIMFlavor::toString() const {
    constexpr std::array<const char*, 6> kWords = {"OVERRIDABLE",  "TOSUBCLASS",      "TOINSTANCE",
                                                   "TRANSLATABLE", "DISABLEOVERRIDE", "RESTRICTED"};
    return detail::bitWords(bits_, kWords);
}

} // namespace bundled
} // namespace Pegasus
