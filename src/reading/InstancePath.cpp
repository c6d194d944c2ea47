#include "reading/InstancePath.h"

#include "convert/CoreLog.h"
#include "convert/HostValues.h"
#include "convert/LetterCase.h"
#include "convert/RemoteText.h"
#include "host/ICIMClass.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"

#include <algorithm>
#include <iterator>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;

/// What separates the parts of a key; no part has one.
constexpr char kSeparator = '\0';

constexpr std::size_t kUsualKey = 256; // bytes

void AppendInLowerCase(std::string& key, const std::string& text) {
    std::transform(text.begin(), text.end(), std::back_inserter(key), ToLower);
}

/// The type that a class declares for a key; unknown for one that it does not have.
TCIMValue::TCIMType DeclaredType(const ICIMClass& cls, const std::string& name) {
    try {
        const auto declaration = name.empty() ? nullptr : cls.GetPropertyDecl(name, TCIMContext());
        return declaration ? declaration->GetType(TCIMContext()) : TCIMValue::TCIMType(ECIMType::eCIMUnknown);
    } catch (const TVYXException&) {
        return ECIMType::eCIMUnknown; // a name that the host cannot keep
    }
}

bool IsIn(const Pegasus::CIMObjectPath& path, const Pegasus::CIMNamespaceName& read) {
    return path.getNameSpace().isNull() || path.getNameSpace().equal(read);
}

/// The kind that a key of a declared type has in a path.
Pegasus::CIMKeyBinding::Type KindOf(TCIMValue::TCIMType type, Pegasus::CIMKeyBinding::Type otherwise) {
    switch (type) {
    case ECIMType::eCIMUnknown:
        return otherwise;
    case ECIMType::eCIMBoolean:
        return Pegasus::CIMKeyBinding::BOOLEAN;
    case ECIMType::eCIMReference:
        return Pegasus::CIMKeyBinding::REFERENCE;
    case ECIMType::eCIMString:
    case ECIMType::eCIMDateTime:
    case ECIMType::eCIMChar16:
        return Pegasus::CIMKeyBinding::STRING;
    default:
        return type >= ECIMType::eCIMArrayUnknown ? otherwise : Pegasus::CIMKeyBinding::NUMERIC;
    }
}

Pegasus::CIMObjectPath ParsedPath(const TCIMReference& reference) {
    const std::string text = reference.GetPath();
    try {
        return {text.c_str()};
    } catch (const Pegasus::Exception& failure) {
        LogError("TCimHTTPNamespace::GetInstance " + text + ": " + ToStdString(failure.getMessage()));
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
}

/// Makes the key, too, unless that is null.
TCIMReference ReferenceWithKey(const Pegasus::CIMObjectPath& path, const ICIMClass& cls,
                               const Pegasus::CIMNamespaceName& read, std::string* key) {
    TCIMReference reference(cls.GetNamespace(TCIMContext()), TCIMContext());
    if (!IsIn(path, read)) {
        const std::string name = ToStdString(path.getNameSpace().getString());
        reference.SetHost(ToStdString(path.getHost()));
        reference.SetNamespaceName(name);
        if (key != nullptr) {
            *key = LowerCase(name) + ':';
        }
    }
    const std::string className = ToStdString(path.getClassName());
    reference.SetClassName(className);
    if (key != nullptr) {
        AppendInLowerCase(*key, className);
    }
    const auto& bindings = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < bindings.size(); ++i) {
        const std::string name = ToStdString(bindings[i].getName());
        const TCIMValue value = HostKeyValue(bindings[i], DeclaredType(cls, name));
        reference.AddKeyValue(name, value);
        if (key != nullptr) {
            AppendInLowerCase(*key += kSeparator, name);
            (*key += kSeparator) += value.ToString(kDecimal);
        }
    }
    return reference;
}

} // namespace

InstancePath PathOf(const Pegasus::CIMObjectPath& path, const ICIMClass& cls, const Pegasus::CIMNamespaceName& read) {
    std::string key;
    key.reserve(kUsualKey);
    TCIMReference reference = ReferenceWithKey(path, cls, read, &key);
    return {std::move(reference), std::move(key)};
}

TCIMReference ReferenceOf(const Pegasus::CIMObjectPath& path, const ICIMClass& cls,
                          const Pegasus::CIMNamespaceName& read) {
    return ReferenceWithKey(path, cls, read, nullptr);
}

Pegasus::CIMObjectPath RemotePathOf(const TCIMReference& reference, const ICIMClass& cls,
                                    const Pegasus::CIMNamespaceName& read) {
    const Pegasus::CIMObjectPath path = ParsedPath(reference);
    if (!IsIn(path, read)) {
        LogError("TCimHTTPNamespace::GetInstance " + reference.GetPath() + ": the path is in another namespace than " +
                 ToStdString(read.getString()));
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    Pegasus::Array<Pegasus::CIMKeyBinding> keys;
    const auto& given = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < given.size(); ++i) {
        const auto type = DeclaredType(cls, ToStdString(given[i].getName()));
        keys.append(Pegasus::CIMKeyBinding(given[i].getName(), given[i].getValue(), KindOf(type, given[i].getType())));
    }
    return {Pegasus::String(), Pegasus::CIMNamespaceName(), path.getClassName(), keys};
}

} // namespace NQORVYX20
