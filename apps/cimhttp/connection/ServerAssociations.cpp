#include "connection/ServerAssociations.h"

#include "connection/PathReader.h"
#include "connection/RemoteReason.h"
#include "connection/ServerSchema.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "text/Names.h"

#include <algorithm>
#include <stdexcept>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

bool HasName(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(), [&](const std::string& one) { return IsSameName(one, name); });
}

/// Those that the user gives.
std::vector<std::string> NamesOf(const AssociationQuery& query) {
    std::vector<std::string> names{query.associationClass, query.role, query.resultClass, query.resultRole};
    names.insert(names.end(), query.properties.begin(), query.properties.end());
    return names;
}

bool IsAboutNames(const RemoteFailure& failure) {
    return failure.kind == RemoteFailure::Kind::kCimStatus &&
           (failure.cimStatus == kCimInvalidParameter || failure.cimStatus == kCimInvalidClass);
}

} // namespace

template <typename Operation>
auto ServerAssociations::Reading(const AssociationQuery& query, const Operation& operation) const {
    try {
        return session_.Awaited("the associations of " + query.path, operation);
    } catch (const RemoteError& error) {
        Fail(query, error.Failure());
    } catch (const std::invalid_argument& error) {
        if (HasName(NamesOf(query), error.what())) {
            throw Failure(Failure::kUsage, std::string("'") + error.what() + "' is not a name");
        }
        throw NotAPath(query.path, error.what());
    }
}

void ServerAssociations::Fail(const AssociationQuery& query, const RemoteFailure& failure) const {
    const PathReader paths(session_);
    std::vector<std::string> classes;
    if (IsAboutNames(failure)) {
        classes = ServerSchema(session_).KnownClassNames(session_.NamespaceNamed(paths.NamespaceIn(query.path)));
    }
    for (const std::string& name : {paths.ClassIn(query.path), query.associationClass, query.resultClass}) {
        if (!name.empty() && !classes.empty() && !HasName(classes, name)) {
            throw NoSuchClass(name, session_.Server(), classes);
        }
    }
    session_.Failures().Fail("the associations of " + query.path + " cannot be read from " + session_.Server(),
                             failure);
}

std::vector<TCIMReference> ServerAssociations::RelatedPaths(AssociationQuery query) const {
    query.host = session_.Target().host;
    return Reading(query, [&] { return session_.Access().RelatedPaths(session_.Namespace(), query); });
}

std::vector<boost::shared_ptr<ICIMInstance>> ServerAssociations::Related(AssociationQuery query) const {
    query.host = session_.Target().host;
    const auto objects = Reading(query, [&] { return session_.Access().ReadRelated(session_.Namespace(), query); });
    std::vector<boost::shared_ptr<ICIMInstance>> all;
    for (const std::string& name : objects->Namespaces()) {
        ICIMNamespace& where = session_.NamespaceNamed(name);
        const auto instances = Reading(query, [&] { return objects->TakeInstances(name, where); });
        all.insert(all.end(), instances.begin(), instances.end());
    }
    return all;
}

std::vector<RemoteLink> ServerAssociations::Links(const std::string& path) const {
    AssociationQuery query;
    query.path = path;
    return Reading(query, [&] { return session_.Access().ReadLinks(session_.Namespace(), path); });
}

} // namespace cimhttp
