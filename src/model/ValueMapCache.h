#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace NQORVYX20 {

class TCimHTTPQualifier;
struct ValueMapTable;

/// The value map of a declaration, kept as long as the two qualifiers that it was made from are the same and have the
/// same values.
class ValueMapCache {
  public:
    using TQualifier = boost::shared_ptr<TCimHTTPQualifier>;

    /// True when the map was made from these qualifiers as they are now.
    bool IsMadeFrom(const TQualifier& values, const TQualifier& entries) const {
        return fValues.IsStill(values) && fEntries.IsStill(entries);
    }

    /// Keeps a map, which may be empty, made from these qualifiers.
    void Keep(const TQualifier& values, const TQualifier& entries, const boost::shared_ptr<const ValueMapTable>& map);

    const boost::shared_ptr<const ValueMapTable>& Map() const { return fMap; }

  private:
    struct TSource {
        bool IsStill(const TQualifier& other) const;

        TQualifier qualifier;
        std::uint64_t revision = 0;
    };

    TSource fValues;
    TSource fEntries;
    boost::shared_ptr<const ValueMapTable> fMap;
};

} // namespace NQORVYX20
