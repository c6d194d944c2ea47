#include "server/CimService.h"

#include "operations/AssociationOperations.h"
#include "operations/ClassOperations.h"
#include "operations/InstanceOperations.h"
#include "operations/PulledOperations.h"
#include "operations/QualifierOperations.h"
#include "wire/CimError.h"

#include <utility>

namespace demo {

namespace {

std::vector<NamespaceContent> OneNamespace(Schema schema, InstanceProviders providers) {
    std::vector<NamespaceContent> namespaces;
    namespaces.push_back({CimService::kNamespace, std::move(schema), std::move(providers)});
    return namespaces;
}

} // namespace

CimService::CimService(std::vector<NamespaceContent> namespaces, const std::string& host,
                       const EnumerationLimits& enumerations, Enumerations::Clock clock)
    : enumerations_(std::make_unique<Enumerations>(enumerations, std::move(clock))) {
    for (auto& [name, schema, providers] : namespaces) {
        namespaces_.Add(std::move(schema), std::move(providers), {host, std::move(name)});
    }
    for (const auto& family : {ClassOperations(), InstanceOperations(), AssociationOperations(), QualifierOperations(),
                               enumerations.open == 0 ? Operations() : PulledOperations(*enumerations_)}) {
        for (const auto& operation : family) {
            operations_.emplace(operation.name, operation);
        }
    }
}

CimService::CimService(Schema schema, InstanceProviders providers, const std::string& host,
                       const EnumerationLimits& enumerations, Enumerations::Clock clock)
    : CimService(OneNamespace(std::move(schema), std::move(providers)), host, enumerations, std::move(clock)) {}

bool CimService::IsOnce(const CimRequest& request) const {
    const auto operation = operations_.find(request.method);
    return request.kind == CimRequest::Kind::kIntrinsic && operation != operations_.end() && operation->second.isOnce;
}

/// Where several statuses apply to a request, the first one in the order of DSP0200 is the answer.
void CimService::Execute(const CimRequest& request, XmlWriter& writer) const {
    if (request.kind == CimRequest::Kind::kExtrinsic) {
        throw CimError(CimStatus::kNotSupported, "this server does not invoke methods of classes");
    }
    const auto operation = operations_.find(request.method);
    if (operation == operations_.end()) {
        throw CimError(CimStatus::kNotSupported, "this server has no operation " + request.method);
    }
    const Repository* const repository = namespaces_.Find(request.nameSpace);
    if (!repository) {
        throw CimError(CimStatus::kInvalidNamespace, "there is no namespace " + request.nameSpace);
    }
    operation->second.execute(*repository, Parameters(request, operation->second.parameters), writer);
}

} // namespace demo
