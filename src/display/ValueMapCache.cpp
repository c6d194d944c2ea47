#include "display/ValueMapCache.h"

#include "display/ValueMapTable.h"
#include "host/ICIMQualifier.h"

namespace NQORVYX20 {

void ValueMapCache::Keep(const TSource& values, const TSource& entries,
                         const boost::shared_ptr<const ValueMapTable>& map) {
    fValues = values;
    fEntries = entries;
    fMap = map;
}

} // namespace NQORVYX20
