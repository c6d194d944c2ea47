#include "reading/RemoteNames.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"

namespace NQORVYX20 {

const std::string& RemoteNames::Normalized(Pegasus::Uint32 place, const Pegasus::CIMName& name) {
    if (place >= names_.size()) {
        names_.resize(place + 1);
    }
    TName& known = names_[place];
    if (!known.given.equal(name)) { // without regard to case, which the normal form does not show either
        known.normalized = NormalizeName(ToStdString(name));
        known.given = name;
    }
    return known.normalized;
}

} // namespace NQORVYX20
