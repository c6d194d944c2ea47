#include "model/TCimHTTPQualifierMap.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPQualifier.h"

namespace NQORVYX20 {

namespace {

constexpr const char* kKey = "key"; // in its normal form

bool IsOverridable(const TCimHTTPQualifier& qualifier) {
    return (qualifier.GetFlavor(TCIMContext()) & ICIMQualifierDecl::eFlavorEnableOverride) != 0;
}

bool IsSame(const ICIMQualifier& left, const ICIMQualifier& right) {
    return left.GetValue(TCIMContext()) == right.GetValue(TCIMContext()) &&
           left.GetFlavor(TCIMContext()) == right.GetFlavor(TCIMContext());
}

[[noreturn]] void RefuseConflict(const std::string& qualifier, const TCimHTTPQualifierMap::TElement& element) {
    LogError("TCimHTTP: Attempt to add qualifier " + qualifier + " to " + element.kind + " " + element.name +
             ": already exists with another value or flavor and may not be overridden");
    throw TVYXException(TVYXStatusCode::eQualifierConflict);
}

} // namespace

bool TCimHTTPQualifierMap::Add(const boost::shared_ptr<ICIMQualifier>& qualifier, const TElement& element) {
    if (!qualifier) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    const std::string name = NormalizeName(qualifier->GetName(TCIMContext()), names_);
    const auto existing = FindNormalized(name);
    if (existing && !IsOverridable(*existing)) {
        if (!IsSame(*existing, *qualifier)) {
            RefuseConflict(qualifier->GetName(TCIMContext()), element);
        }
        return false;
    }
    Keep(name, boost::dynamic_pointer_cast<TCimHTTPQualifier>(qualifier));
    return true;
}

void TCimHTTPQualifierMap::AddOrReplace(const boost::shared_ptr<ICIMQualifier>& qualifier, const TElement& element) {
    if (Add(qualifier, element)) {
        return;
    }
    if (const auto same = boost::dynamic_pointer_cast<TCimHTTPQualifier>(qualifier)) {
        Keep(NormalizeName(same->GetName(TCIMContext()), names_), same);
    }
}

void TCimHTTPQualifierMap::Keep(const std::string& name, const boost::shared_ptr<TCimHTTPQualifier>& qualifier) {
    if (!qualifier) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    Forget(name);
    qualifiers_.Set(name, qualifier);
    if (name == kKey) {
        key_ = qualifier;
    }
}

/// The revisions of removed qualifiers stay in the sum, so that the map's revision never repeats.
void TCimHTTPQualifierMap::Forget(const std::string& name) {
    const auto known = FindNormalized(name);
    past_ += 1 + (known ? known->GetRevision() : 0);
}

std::uint64_t TCimHTTPQualifierMap::Revision() const {
    std::uint64_t revision = past_;
    for (const auto& [name, qualifier] : qualifiers_) {
        revision += qualifier->GetRevision();
    }
    return revision;
}

void TCimHTTPQualifierMap::Remove(const std::string& name) {
    const std::string normalized = NormalizeName(name, names_);
    Forget(normalized);
    if (!qualifiers_.Remove(normalized)) {
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    if (normalized == kKey) {
        key_.reset();
    }
}

void TCimHTTPQualifierMap::Clear() {
    past_ = Revision() + 1;
    qualifiers_.Clear();
    key_.reset();
}

boost::shared_ptr<TCimHTTPQualifier> TCimHTTPQualifierMap::Find(const std::string& name) const {
    return FindNormalized(NormalizeName(name, names_));
}

boost::shared_ptr<TCimHTTPQualifier> TCimHTTPQualifierMap::FindNormalized(const std::string& name) const {
    return qualifiers_.Find(name);
}

boost::shared_ptr<TCimHTTPQualifier> TCimHTTPQualifierMap::Get(const std::string& name) const {
    auto qualifier = Find(name);
    if (!qualifier) {
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    return qualifier;
}

void TCimHTTPQualifierMap::Visit(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback) const {
    qualifiers_.Visit(callback);
}

} // namespace NQORVYX20
