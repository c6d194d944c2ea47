#include "model/RemoteNames.h"

#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

const std::string& RemoteNames::Normalized(Pegasus::Uint32 place, const Pegasus::CIMName& name) {
    if (place >= fNames.size()) {
        fNames.resize(place + 1);
    }
    TName& known = fNames[place];
    const auto given = name.getString().getCString();
    if (known.given != static_cast<const char*>(given)) {
        known.normalized = TCimHTTPNamespace::NormalizeName(static_cast<const char*>(given));
        known.given = given;
    }
    return known.normalized;
}

} // namespace NQORVYX20
