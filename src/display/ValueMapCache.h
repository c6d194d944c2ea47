#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace NQORVYX20 {

class ICIMQualifier;
class ValueMapTable;

/// The value map of a declaration, kept as long as the two qualifiers that it was made from are the same and have the
/// same values.
class ValueMapCache {
  public:
    /// A qualifier as it is now: its revision tells its values apart.
    struct TSource {
        bool operator==(const TSource& other) const {
            return qualifier == other.qualifier && revision == other.revision;
        }

        boost::shared_ptr<const ICIMQualifier> qualifier;
        std::uint64_t revision = 0;
    };

    /// True when the map was made from these qualifiers as they are now.
    bool IsMadeFrom(const TSource& values, const TSource& entries) const {
        return values_ == values && entries_ == entries;
    }

    /// Keeps a map, which may be empty, made from these qualifiers.
    void Keep(const TSource& values, const TSource& entries, const boost::shared_ptr<const ValueMapTable>& map);

    const boost::shared_ptr<const ValueMapTable>& Map() const { return map_; }

  private:
    TSource values_;
    TSource entries_;
    boost::shared_ptr<const ValueMapTable> map_;
};

} // namespace NQORVYX20
