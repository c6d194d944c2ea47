#include "model/TCimHTTPQualifier.h"

#include "convert/NormalName.h"
#include "host/ICIMNamedElement.h"
#include "model/TCimHTTPQualifierDecl.h"

namespace NQORVYX20 {

namespace {

std::string NormalizedName(const ICIMQualifier& qualifier) {
    const auto declaration = qualifier.GetDeclaration(TCIMContext());
    const auto* const own = dynamic_cast<const TCimHTTPQualifierDecl*>(declaration.get());
    return NormalizeName(declaration->GetName(TCIMContext()), own != nullptr ? own->Names() : NameRule::kHost);
}

} // namespace

std::atomic<std::uint64_t> TCimHTTPQualifier::changes_{0};

TCimHTTPQualifier::TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element,
                                     boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value)
    : TCimHTTPQualifier(element, declaration, value, declaration->GetFlavor(TCIMContext())) {}

TCimHTTPQualifier::TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element,
                                     boost::shared_ptr<ICIMQualifierDecl const> declaration, const TCIMValue& value,
                                     ICIMQualifierDecl::EFlavor flavor)
    : element_(element), declaration_(declaration), value_(value), flavor_(flavor), propagated_(false) {}

TCimHTTPQualifier::TCimHTTPQualifier(boost::shared_ptr<ICIMNamedElement const> element,
                                     boost::shared_ptr<ICIMQualifier const> other)
    : element_(element),
      declaration_(other->GetDeclaration(TCIMContext())),
      value_(other->GetValue(TCIMContext())),
      flavor_(other->GetFlavor(TCIMContext())),
      propagated_(other->GetPropagated(TCIMContext())) {}

void TCimHTTPQualifier::Validate(TCIMContext /*context*/) const {}

void TCimHTTPQualifier::AddToClassOrProperty(TCIMContext context) const {
    // The interface calls this operation const and hands out elements as const, but adding changes the element.
    const auto element = boost::const_pointer_cast<ICIMNamedElement>(GetClassOrProperty(context));
    element->AddQualifier(boost::const_pointer_cast<TCimHTTPQualifier>(shared_from_this()), context);
}

void TCimHTTPQualifier::RemoveFromClassOrProperty(TCIMContext /*context*/) {}

const std::string& TCimHTTPQualifier::GetName(TCIMContext context) const { return declaration_->GetName(context); }

boost::shared_ptr<ICIMNamedElement const> TCimHTTPQualifier::GetClassOrProperty(TCIMContext /*context*/) const {
    return boost::shared_ptr<ICIMNamedElement const>(element_);
}

TCIMValue::TCIMType TCimHTTPQualifier::GetType(TCIMContext /*context*/) const { return value_.GetType(); }

bool TCimHTTPQualifier::IsArray(TCIMContext /*context*/) const { return value_.IsArray(); }

boost::shared_ptr<ICIMQualifierDecl const> TCimHTTPQualifier::GetDeclaration(TCIMContext /*context*/) const {
    return declaration_;
}

const TCIMValue& TCimHTTPQualifier::GetValue(TCIMContext /*context*/) const { return value_; }

void TCimHTTPQualifier::SetValue(const TCIMValue& value, TCIMContext /*context*/) {
    value_ = value;
    ++revision_;
    changes_.fetch_add(1, std::memory_order_relaxed);
    propagated_ = false;
}

void TCimHTTPQualifier::SetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext /*context*/) {
    flavor_ = static_cast<ICIMQualifierDecl::EFlavor>(flavor_ | flavor);
    propagated_ = false;
}

void TCimHTTPQualifier::UnsetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext /*context*/) {
    flavor_ = static_cast<ICIMQualifierDecl::EFlavor>(flavor_ & ~flavor);
    propagated_ = false;
}

ICIMQualifierDecl::EFlavor TCimHTTPQualifier::GetFlavor(TCIMContext /*context*/) const { return flavor_; }

bool TCimHTTPQualifier::operator==(ICIMQualifier& other) const {
    return NormalizedName(*this) == NormalizedName(other);
}

bool TCimHTTPQualifier::operator<(ICIMQualifier& other) const { return NormalizedName(*this) < NormalizedName(other); }

bool TCimHTTPQualifier::GetPropagated(TCIMContext /*context*/) const { return propagated_; }

ICIMQualifier& TCimHTTPQualifier::operator=(const ICIMQualifier& /*other*/) { return *this; }

} // namespace NQORVYX20
