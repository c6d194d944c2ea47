#include "model/TCimHTTPPropertyDecl.h"

#include "display/CompatibleTexts.h"
#include "display/DisplayQualifiers.h"
#include "display/FaithfulTexts.h"
#include "display/ValueMapTable.h"
#include "model/TCimHTTPClass.h"

#include <typeinfo>
#include <utility>

namespace NQORVYX20 {

namespace {

boost::shared_ptr<ICIMQualifier> LookUpInOwn(const ICIMPropertyDecl& declaration, const std::string& normalizedName) {
    return static_cast<const TCimHTTPPropertyDecl&>(declaration).LookupNormalizedQualifier(normalizedName);
}

ValueMapCache::TSource SourceOf(boost::shared_ptr<TCimHTTPQualifier> qualifier) {
    const std::uint64_t revision = qualifier->GetRevision();
    return {std::move(qualifier), revision};
}

} // namespace

TCimHTTPPropertyDecl::TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass> cls, const std::string& name,
                                           const TCIMValue& defaultValue)
    : TCimHTTPDeclaration(name, TCimHTTPClass::NamesOf(cls.get())), class_(cls), defaultValue_(defaultValue) {}

TCimHTTPPropertyDecl::TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass const> /*cls*/,
                                           boost::shared_ptr<ICIMPropertyDecl const> /*other*/)
    : TCimHTTPDeclaration(std::string(), NameRule::kHost) {}

TCimHTTPPropertyDecl::~TCimHTTPPropertyDecl() = default;

void TCimHTTPPropertyDecl::AddToClass(TCIMContext /*context*/) {
    boost::shared_ptr<TCimHTTPClass>(class_)->AddPropertyDecl(shared_from_this());
}

void TCimHTTPPropertyDecl::RemoveFromClass(TCIMContext /*context*/) {}

boost::shared_ptr<ICIMClass> TCimHTTPPropertyDecl::GetClass(TCIMContext /*context*/) const {
    return boost::shared_ptr<TCimHTTPClass>(class_);
}

TCIMValue::TCIMType TCimHTTPPropertyDecl::GetType(TCIMContext /*context*/) const { return defaultValue_.GetType(); }

bool TCimHTTPPropertyDecl::IsArray(TCIMContext /*context*/) const { return defaultValue_.IsArray(); }

const TCIMValue& TCimHTTPPropertyDecl::GetDefaultValue(TCIMContext /*context*/) const { return defaultValue_; }

void TCimHTTPPropertyDecl::SetDefaultValue(const TCIMValue& value, TCIMContext /*context*/) { defaultValue_ = value; }

const TCimHTTPPropertyDecl* TCimHTTPPropertyDecl::AsOwn(const ICIMPropertyDecl& declaration) {
    return typeid(declaration) == typeid(TCimHTTPPropertyDecl) ? static_cast<const TCimHTTPPropertyDecl*>(&declaration)
                                                               : nullptr;
}

DisplayQualifiers TCimHTTPPropertyDecl::DisplayQualifiersOf(boost::shared_ptr<ICIMPropertyDecl const> declaration) {
    const DisplayQualifiers::TLookup lookup = AsOwn(*declaration) != nullptr ? LookUpInOwn : nullptr;
    return {std::move(declaration), lookup};
}

boost::shared_ptr<const ValueMapTable> TCimHTTPPropertyDecl::GetValueMapTable() const {
    static const std::string kValues = "values";
    static const std::string kValueMap = "valuemap";
    auto texts = LookupNormalizedQualifier(kValues);
    auto entries = texts ? LookupNormalizedQualifier(kValueMap) : nullptr;
    if (!entries) {
        return {};
    }
    const auto textSource = SourceOf(std::move(texts));
    const auto entrySource = SourceOf(std::move(entries));
    if (!valueMap_.IsMadeFrom(textSource, entrySource)) {
        valueMap_.Keep(textSource, entrySource, MakeValueMapTable(DisplayQualifiersOf(shared_from_this())));
    }
    return valueMap_.Map();
}

const FaithfulTexts& TCimHTTPPropertyDecl::GetFaithfulTexts() const {
    DropOldTexts();
    if (!faithfulTexts_) {
        faithfulTexts_ =
            std::make_unique<const FaithfulTexts>(NormalizeName(GetName(TCIMContext()), Names()),
                                                  defaultValue_.GetType(), DisplayQualifiersOf(shared_from_this()));
    }
    return *faithfulTexts_;
}

const CompatibleTexts& TCimHTTPPropertyDecl::GetCompatibleTexts() const {
    DropOldTexts();
    if (!compatibleTexts_) {
        compatibleTexts_ =
            std::make_unique<const CompatibleTexts>(*this, DisplayQualifiersOf(shared_from_this()), GetValueMapTable());
    }
    return *compatibleTexts_;
}

void TCimHTTPPropertyDecl::DropTextsOfOtherRevision() const {
    textsChanges_ = QualifierChanges();
    if (textsRevision_ != QualifierRevision()) {
        textsRevision_ = QualifierRevision();
        faithfulTexts_.reset();
        compatibleTexts_.reset();
    }
}

} // namespace NQORVYX20
