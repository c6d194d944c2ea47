#include "model/SchemaNamespace.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
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
    const std::string key = NormalizeName(name, names_);
    if (classes_.Add(key, cls)) {
        return;
    }
    if (!redefine_) {
        LogDebug("TCimHTTPNamespace: class " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    cls->AdoptSubClasses(*classes_.Find(key));
    classes_.Set(key, cls);
}

void SchemaNamespace::RemoveClass(boost::shared_ptr<TCimHTTPClass> /*cls*/) {}

boost::shared_ptr<TCimHTTPClass> SchemaNamespace::FindClass(const std::string& key) const { return classes_.Find(key); }

void SchemaNamespace::AddQualifierDecl(boost::shared_ptr<TCimHTTPQualifierDecl> declaration) {
    const std::string& name = declaration->GetName(TCIMContext());
    const std::string key = NormalizeName(name, names_);
    if (qualifierDecls_.Add(key, declaration)) {
        return;
    }
    if (!redefine_) {
        LogDebug("CimHTTP: TCimHTTPNamespace: qualifier " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    qualifierDecls_.Set(key, declaration);
}

boost::shared_ptr<ICIMQualifierDecl> SchemaNamespace::GetQualifierDecl(const std::string& name,
                                                                       TCIMContext /*context*/) const {
    return qualifierDecls_.Find(NormalizeName(name, names_));
}

void SchemaNamespace::EnumerateQualifierDecls(
    const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback, TCIMContext /*context*/) const {
    qualifierDecls_.Visit(callback);
}

} // namespace NQORVYX20
