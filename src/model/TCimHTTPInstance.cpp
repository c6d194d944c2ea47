#include "model/TCimHTTPInstance.h"

#include "model/Required.h"
#include "model/TCimHTTPClass.h"

namespace NQORVYX20 {

namespace {

constexpr int kValueLayout = 1; // the host's in-memory instances know one layout of their values

} // namespace

TCimHTTPInstance::TCimHTTPInstance(boost::shared_ptr<ICIMClass> cls, TCIMContext /*context*/)
    : TInmemInstance(cls, kValueLayout) {}

void TCimHTTPInstance::AddToNamespace(TCIMContext context) {
    const auto cls = boost::dynamic_pointer_cast<TCimHTTPClass>(GetClass(context));
    Required(cls, TVYXStatusCode::eTypeMismatch)
        .AddInstance(boost::dynamic_pointer_cast<TCimHTTPInstance>(shared_from_this()));
}

} // namespace NQORVYX20
