#include <Pegasus/Common/CIMPropertyList.h>

namespace Pegasus {
inline namespace bundled {

String CIMPropertyList::toString() const {
    if (null_ || names_.size() == 0) {
        return null_ ? "NULL" : "EMPTY";
    }
    String text = names_[0].getString();
    for (Uint32 i = 1; i < names_.size(); ++i) {
        text.append(String(",")).append(names_[i].getString());
    }
    return text;
}

} // namespace bundled
} // namespace Pegasus
