#include "reading/RemoteNames.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "model/TCimHTTPClass.h"

#include <utility>

namespace NQORVYX20 {

const RemoteNames::TName& RemoteNames::At(Pegasus::Uint32 place, const Pegasus::CIMName& name) {
    if (place >= names_.size()) {
        names_.resize(place + 1);
    }
    TName& known = names_[place];
    if (!known.given.equal(name)) { // without regard to case, which the normal form does not show either
        std::string normalized = NormalizeName(ToStdString(name));
        auto declaration = class_.GetPropertyDecl(normalized, TCIMContext());
        known = {name, std::move(normalized), std::move(declaration)};
    }
    return known;
}

} // namespace NQORVYX20
