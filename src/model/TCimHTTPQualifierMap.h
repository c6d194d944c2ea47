#pragma once

#include "convert/NormalName.h"
#include "model/NamedEntries.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NQORVYX20 {

class ICIMQualifier;
class TCimHTTPQualifier;

/// The qualifiers of one element, by normalised name, with the rule for a second qualifier of a name. Invalid names
/// throw TVYXException eInvalidName.
class TCimHTTPQualifierMap {
  public:
    explicit TCimHTTPQualifierMap(NameRule names = NameRule::kHost) : names_(names) {}

    /// The element that has the qualifiers, for what the log says of it: `class` `CIM_System`.
    struct TElement {
        const char* kind;
        const std::string& name;
    };

    /// Adds a qualifier. It replaces one of that name whose flavor enables override; otherwise the new one
    /// must have its value and flavor, changes nothing, and the result is false. Throws TVYXException
    /// eQualifierConflict, after a line in the log, when it differs, and eTypeMismatch when the one to keep is not a
    /// TCimHTTPQualifier.
    bool Add(const boost::shared_ptr<ICIMQualifier>& qualifier, const TElement& element);

    /// Adds a qualifier as Add() does. A TCimHTTPQualifier also replaces one of its own value and flavor.
    void AddOrReplace(const boost::shared_ptr<ICIMQualifier>& qualifier, const TElement& element);

    /// Removes the qualifier of that name. Throws TVYXException eNotFound when there is none.
    void Remove(const std::string& name);

    /// The qualifier of that name, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> Find(const std::string& name) const;

    /// The qualifier of that name, which is in its normal form, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> FindNormalized(const std::string& name) const;

    /// The qualifier Key, or an empty pointer. It is kept at hand, since every instance that is filed asks all
    /// declarations of its class for it.
    const boost::shared_ptr<TCimHTTPQualifier>& Key() const { return key_; }

    /// The qualifier of that name. Throws TVYXException eNotFound when there is none.
    boost::shared_ptr<TCimHTTPQualifier> Get(const std::string& name) const;

    /// Calls back once per qualifier, in the order of the normalised names, until the callback returns false.
    void Visit(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback) const;

    void Clear();

    /// A number that differs after each change, also of a qualifier's value.
    std::uint64_t Revision() const;

    /// How often the collection has changed. As long as that, and what TCimHTTPQualifier::Changes() says, is the same,
    /// so is Revision(), which is made of more.
    std::uint64_t Changes() const { return past_; }

  private:
    void Forget(const std::string& name);
    void Keep(const std::string& name, const boost::shared_ptr<TCimHTTPQualifier>& qualifier);

    NameRule names_;
    NamedEntries<TCimHTTPQualifier> qualifiers_;
    boost::shared_ptr<TCimHTTPQualifier> key_;
    std::uint64_t past_ = 0; // changes of the collection, and those of qualifiers that are no longer in it
};

} // namespace NQORVYX20
