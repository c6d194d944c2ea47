#include "display/ValueMapCache.h"

#include "display/ValueMapTable.h"
#include "host/ICIMQualifier.h"

namespace NQORVYX20 {

void ValueMapCache::Keep(const TSource& values, const TSource& entries,
                         const boost::shared_ptr<const ValueMapTable>& map) {
    values_ = values;
    entries_ = entries;
    map_ = map;
}

} // namespace NQORVYX20
