#include "convert/RemoteTypes.h"

#include "convert/RemoteText.h"

#include <string>
#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

template <typename Code, std::size_t Count>
Code FindKeyword(const std::string& text, const std::pair<const char*, Code> (&table)[Count], Code otherwise) {
    for (const auto& [keyword, code] : table) {
        if (text == keyword) {
            return code;
        }
    }
    return otherwise;
}

} // namespace

TCIMValue::TCIMType pegTypeToVYXType(Pegasus::CIMType type, bool isArray) {
    const auto index = static_cast<unsigned int>(type);
    if (index > static_cast<unsigned int>(Pegasus::CIMTYPE_REFERENCE)) {
        return isArray ? ECIMType::eCIMArrayUnknown : ECIMType::eCIMUnknown;
    }
    return static_cast<ECIMType>(index + (isArray ? ECIMType::eCIMBooleanArray : ECIMType::eCIMBoolean));
}

ICIMQualifierDecl::EScope pegScopeToVYXScope(Pegasus::CIMScope scope) {
    return ScopeOfText(ToStdString(scope.toString()));
}

ICIMQualifierDecl::EFlavor pegFlavorToVYXFlavor(Pegasus::CIMFlavor flavor) {
    return FlavorOfText(ToStdString(flavor.toString()));
}

ICIMQualifierDecl::EScope ScopeOfText(const std::string& text) {
    static constexpr std::pair<const char*, ICIMQualifierDecl::EScope> kScopes[] = {
        {"CLASS", ICIMQualifierDecl::eScopeClass},           {"ASSOCIATION", ICIMQualifierDecl::eScopeAssociation},
        {"INDICATION", ICIMQualifierDecl::eScopeIndication}, {"PROPERTY", ICIMQualifierDecl::eScopeProperty},
        {"REFERENCE", ICIMQualifierDecl::eScopeReference},   {"METHOD", ICIMQualifierDecl::eScopeMethod},
        {"PARAMETER", ICIMQualifierDecl::eScopeParameter},   {"ANY", ICIMQualifierDecl::eScopeAny}};
    return FindKeyword(text, kScopes, ICIMQualifierDecl::eScopeNone);
}

ICIMQualifierDecl::EFlavor FlavorOfText(const std::string& text) {
    static constexpr std::pair<const char*, ICIMQualifierDecl::EFlavor> kFlavors[] = {
        {"OVERRIDABLE", ICIMQualifierDecl::eFlavorNone},
        {"ENABLEOVERRIDE", ICIMQualifierDecl::eFlavorEnableOverride},
        {"TOSUBCLASS", ICIMQualifierDecl::eFlavorToSubclass},
        {"RESTRICTED", ICIMQualifierDecl::eFlavorNone},
        {"TRANSLATABLE", ICIMQualifierDecl::eFlavorTranslatable},
        {"DEFAULTS", ICIMQualifierDecl::eFlavorDefaults}};
    return FindKeyword(text, kFlavors, ICIMQualifierDecl::eFlavorNone);
}

} // namespace NQORVYX20
