#include "model/ValueMapCache.h"

#include "model/TCimHTTPQualifier.h"
#include "model/ValueMapTable.h"

namespace NQORVYX20 {

bool ValueMapCache::TSource::IsStill(const TQualifier& other) const {
    return qualifier && qualifier == other && revision == other->GetRevision();
}

void ValueMapCache::Keep(const TQualifier& values, const TQualifier& entries,
                         const boost::shared_ptr<const ValueMapTable>& map) {
    fValues = {values, values->GetRevision()};
    fEntries = {entries, entries->GetRevision()};
    fMap = map;
}

} // namespace NQORVYX20
