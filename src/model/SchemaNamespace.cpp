#include "model/SchemaNamespace.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
#include "model/EntryMap.h"
#include "model/Reading.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPQualifierDecl.h"

#include <utility>

namespace NQORVYX20 {

SchemaNamespace::SchemaNamespace(bool redefine) : redefine_(redefine) {}

SchemaNamespace::~SchemaNamespace() = default;

void SchemaNamespace::SetReading(boost::shared_ptr<Reading> reading) {
    reading_ = std::move(reading);
    names_ = reading_->Names();
}

void SchemaNamespace::SetRootClass(boost::shared_ptr<TCimHTTPClass> cls) { rootClass_ = std::move(cls); }

void SchemaNamespace::AddClass(boost::shared_ptr<TCimHTTPClass> cls) {
    const std::string& name = cls->GetName(TCIMContext());
    const auto [entry, isNew] = classes_.emplace(NormalizeName(name, names_), cls);
    if (isNew) {
        return;
    }
    if (!redefine_) {
        LogDebug("TCimHTTPNamespace: class " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    cls->AdoptSubClasses(*entry->second);
    entry->second = cls;
}

void SchemaNamespace::RemoveClass(boost::shared_ptr<TCimHTTPClass> /*cls*/) {}

boost::shared_ptr<TCimHTTPClass> SchemaNamespace::FindClass(const std::string& key) const { return FindEntry(classes_, key); }

void SchemaNamespace::AddQualifierDecl(boost::shared_ptr<TCimHTTPQualifierDecl> declaration) {
    const std::string& name = declaration->GetName(TCIMContext());
    const auto [entry, isNew] = qualifierDecls_.emplace(NormalizeName(name, names_), declaration);
    if (isNew) {
        return;
    }
    if (!redefine_) {
        LogDebug("CimHTTP: TCimHTTPNamespace: qualifier " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    entry->second = declaration;
}

boost::shared_ptr<ICIMQualifierDecl> SchemaNamespace::GetQualifierDecl(const std::string& name,
                                                                       TCIMContext /*context*/) const {
    return FindEntry(qualifierDecls_, NormalizeName(name, names_));
}

void SchemaNamespace::EnumerateQualifierDecls(
    const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback, TCIMContext /*context*/) const {
    VisitEntries(qualifierDecls_, callback);
}

} // namespace NQORVYX20
