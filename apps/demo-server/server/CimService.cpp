#include "server/CimService.h"

#include "operations/AssociationOperations.h"
#include "operations/ClassOperations.h"
#include "operations/InstanceOperations.h"
#include "operations/QualifierOperations.h"
#include "wire/CimError.h"

#include <utility>

namespace demo {

CimService::CimService(Schema schema, InstanceProviders providers, std::string host)
    : repository_(std::move(schema), std::move(providers), {std::move(host), kNamespace}) {
    for (const auto& family : {ClassOperations(), InstanceOperations(), AssociationOperations(), QualifierOperations()})
        for (const auto& operation : family)
            operations_.emplace(operation.name, operation);
}

/// Where several statuses apply to a request, the first one in the order of DSP0200 is the answer.
void CimService::Execute(const CimRequest& request, XmlWriter& writer) const {
    if (request.kind == CimRequest::Kind::kExtrinsic)
        throw CimError(CimStatus::kNotSupported, "this server does not invoke methods of classes");
    const auto operation = operations_.find(request.method);
    if (operation == operations_.end())
        throw CimError(CimStatus::kNotSupported, "this server has no operation " + request.method);
    if (!SameName(request.nameSpace, repository_.Location().nameSpace))
        throw CimError(CimStatus::kInvalidNamespace, "there is no namespace " + request.nameSpace);
    operation->second.execute(repository_, Parameters(request, operation->second.parameters), writer);
}

} // namespace demo
