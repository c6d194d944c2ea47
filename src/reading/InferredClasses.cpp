#include "reading/InferredClasses.h"

#include "convert/HostValues.h"
#include "convert/LetterCase.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "reading/RemoteNamespace.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace NQORVYX20 {

namespace {

constexpr const char* kKey = "Key";

boost::shared_ptr<ICIMQualifierDecl> KeyDeclaration(RemoteNamespace& nameSpace) {
    if (auto known = nameSpace.GetQualifierDecl(kKey, TCIMContext())) {
        return known;
    }
    auto declaration = nameSpace.AllocateQualifierDecl(kKey, TCIMValue(false), ICIMQualifierDecl::eScopeProperty,
                                                       ICIMQualifierDecl::eFlavorToSubclass, TCIMContext());
    nameSpace.AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(declaration));
    return declaration;
}

bool IsKeyOf(const Pegasus::CIMName& name, const Pegasus::CIMObjectPath& path) {
    const auto& keys = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < keys.size(); ++i) {
        if (keys[i].getName().equal(name)) {
            return true;
        }
    }
    return false;
}

} // namespace

boost::shared_ptr<TCimHTTPClass> InferredClasses::Get(const boost::shared_ptr<RemoteNamespace>& nameSpace,
                                                      const std::string& name) {
    auto& cls = classes_[LowerCase(name)];
    if (!cls) {
        cls = boost::make_shared<TCimHTTPClass>(nameSpace, name, boost::shared_ptr<TCimHTTPClass>());
        cls->SetSuperClass(nameSpace->GetRootClass());
    }
    return cls;
}

bool InferredClasses::Has(const TCimHTTPClass& cls) const {
    return std::any_of(classes_.begin(), classes_.end(), [&](const auto& entry) { return entry.second.get() == &cls; });
}

void InferredClasses::Declare(RemoteNamespace& nameSpace, TCimHTTPClass& cls, Pegasus::CIMInstance& instance) const {
    for (Pegasus::Uint32 i = 0; i < instance.getPropertyCount(); ++i) {
        const auto property = instance.getProperty(i);
        const std::string name = ToStdString(property.getName());
        try {
            const std::string key = NormalizeName(name, NameRule::kCim);
            if (cls.GetPropertyDecl(key, TCIMContext())) {
                continue;
            }
            const TCIMValue none(HostType(property.getType(), property.isArray()), 0);
            const auto declaration = cls.AllocatePropertyDecl(name, none, TCIMContext());
            if (IsKeyOf(property.getName(), instance.getPath())) {
                declaration->AddQualifier(
                    declaration->AllocateQualifier(KeyDeclaration(nameSpace), TCIMValue(true), TCIMContext()),
                    TCIMContext());
            }
            cls.KeepPropertyDecl(key, declaration);
        } catch (const TVYXException&) {
            // not declared, so that its value is an incident
        }
    }
}

} // namespace NQORVYX20
