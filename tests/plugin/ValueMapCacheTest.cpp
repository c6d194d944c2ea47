// A value map is kept until a qualifier that it was made from is another one, or has another value.

#include "display/ValueMapCache.h"

#include "PropertyTest.h"
#include "display/ValueMapTable.h"

using namespace NQORVYX20;

namespace {

class ValueMapCacheTest : public PropertyTest {
  protected:
    boost::shared_ptr<TCimHTTPQualifier> Qualifier(const std::string& name) {
        return Declare(Uint32(0), {{name, TCIMValue("text")}})->LookupQualifier(name);
    }

    static ValueMapCache::TSource Source(const boost::shared_ptr<TCimHTTPQualifier>& qualifier) {
        return {qualifier, qualifier->GetRevision()};
    }

    boost::shared_ptr<TCimHTTPQualifier> values_ = Qualifier("Values");
    boost::shared_ptr<TCimHTTPQualifier> entries_ = Qualifier("ValueMap");
    boost::shared_ptr<const ValueMapTable> map_ =
        boost::make_shared<ValueMapTable>(std::vector<ValueMapRow>(), std::string());
    ValueMapCache cache_;
};

} // namespace

TEST_F(ValueMapCacheTest, KeepsAMapThatWasMadeFromTheseQualifiers) {
    cache_.Keep(Source(values_), Source(entries_), map_);
    EXPECT_TRUE(cache_.IsMadeFrom(Source(values_), Source(entries_)));
    EXPECT_EQ(cache_.Map(), map_);
}

TEST_F(ValueMapCacheTest, IsMadeFromNoQualifiersAtFirst) {
    EXPECT_FALSE(cache_.IsMadeFrom(Source(values_), Source(entries_)));
    EXPECT_TRUE(cache_.IsMadeFrom({}, {})) << "without qualifiers there is no map";
    EXPECT_FALSE(cache_.Map());
}

TEST_F(ValueMapCacheTest, IsOutOfDateAfterANewValue) {
    cache_.Keep(Source(values_), Source(entries_), map_);
    entries_->SetValue(TCIMValue("other"), TCIMContext());
    EXPECT_FALSE(cache_.IsMadeFrom(Source(values_), Source(entries_)));
    cache_.Keep(Source(values_), Source(entries_), map_);
    values_->SetValue(TCIMValue("other"), TCIMContext());
    EXPECT_FALSE(cache_.IsMadeFrom(Source(values_), Source(entries_)));
}

TEST_F(ValueMapCacheTest, IsOutOfDateWithOtherQualifiersOfTheSameValue) {
    cache_.Keep(Source(values_), Source(entries_), map_);
    EXPECT_FALSE(cache_.IsMadeFrom(Source(Qualifier("Values")), Source(entries_)));
    EXPECT_FALSE(cache_.IsMadeFrom(Source(values_), Source(Qualifier("ValueMap"))));
}

TEST_F(ValueMapCacheTest, AlsoKeepsThatThereIsNoMap) {
    cache_.Keep(Source(values_), Source(entries_), map_);
    cache_.Keep(Source(values_), Source(entries_), {});
    EXPECT_TRUE(cache_.IsMadeFrom(Source(values_), Source(entries_)));
    EXPECT_FALSE(cache_.Map());
}
