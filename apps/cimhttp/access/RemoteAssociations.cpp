#include "access/RemoteAssociations.h"

#include "access/RemotePaths.h"
#include "access/Remotely.h"
#include "convert/HostValues.h"
#include "convert/RemoteText.h"
#include "host/ICIMInstance.h"
#include "host/TVYXException.h"
#include "provider/TCimHTTPNamespace.h"
#include "reading/FaithfulReading.h"
#include "reading/RemoteServer.h"
#include "text/Ascii.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using Wanted = AssociationQuery::Wanted;
using Instances = std::vector<boost::shared_ptr<ICIMInstance>>;

/// The instance that is asked about, and where it is.
AssociationRequest RequestAbout(TCimHTTPNamespace& nameSpace, const std::string& text) {
    const Pegasus::CIMObjectPath path = ParsedPath(text);
    if (path.getKeyBindings().size() == 0) {
        throw std::invalid_argument("cannot be read: it names a class, and not an instance");
    }
    AssociationRequest request;
    request.nameSpace = path.getNameSpace().isNull() ? *nameSpace.getPegNSP() : path.getNameSpace();
    request.object = {Pegasus::String(), Pegasus::CIMNamespaceName(), path.getClassName(), path.getKeyBindings()};
    return request;
}

AssociationRequest RequestFor(TCimHTTPNamespace& nameSpace, const AssociationQuery& query) {
    AssociationRequest request = RequestAbout(nameSpace, query.path);
    for (const std::string& name : {query.associationClass, query.resultClass, query.role, query.resultRole}) {
        if (!name.empty()) {
            CheckName(name);
        }
    }
    request.associationClass = query.associationClass;
    request.resultClass = query.resultClass;
    request.role = query.role;
    request.resultRole = query.resultRole;
    return request;
}

Pegasus::CIMPropertyList PropertyList(const std::vector<std::string>& properties) {
    if (properties.empty()) {
        return {};
    }
    Pegasus::Array<Pegasus::CIMName> names;
    for (const std::string& name : properties) {
        CheckName(name);
        names.append(Pegasus::CIMName(name.c_str()));
    }
    return {names};
}

/// A path with its namespace, which is `nameSpace` where it does not say, and with its host unless that is `ownHost`.
Pegasus::CIMObjectPath WholePath(const Pegasus::CIMObjectPath& path, const Pegasus::CIMNamespaceName& nameSpace,
                                 const std::string& ownHost) {
    const bool isOwn = EqualIgnoringCase(ToStdString(path.getHost()), ownHost);
    return {isOwn ? Pegasus::String() : path.getHost(), path.getNameSpace().isNull() ? nameSpace : path.getNameSpace(),
            path.getClassName(), path.getKeyBindings()};
}

/// Notes that a class came where an instance should be.
void ReportClass(const Pegasus::CIMObject& object, ReadingReport& report) {
    report.AddAndLog({ReadingIncident::Cause::kNotAnInstance, NameText(object.getClassName()),
                      ToHostReference(object.getPath()).GetPath(), std::string(), "the server answers with a class"});
}

class SentObjects : public RelatedObjects {
  public:
    SentObjects(Pegasus::Array<Pegasus::CIMObject>& objects, const Pegasus::CIMNamespaceName& nameSpace,
                const std::string& ownHost) {
        for (Pegasus::Uint32 i = 0; i < objects.size(); ++i) {
            Pegasus::CIMObject object = std::exchange(objects[i], {}); // its memory goes to what is made of it
            object.setPath(WholePath(object.getPath(), nameSpace, ownHost));
            objects_[object.getPath().getNameSpace()].append(object);
        }
    }

    std::vector<std::string> Namespaces() const override {
        std::vector<std::string> names;
        for (const auto& [name, objects] : objects_) {
            names.push_back(NameText(name));
        }
        return names;
    }

    Instances TakeInstances(const std::string& name, ICIMNamespace& nameSpace) override {
        auto& connected = dynamic_cast<TCimHTTPNamespace&>(nameSpace);
        auto instances = InstancesAmong(objects_[Pegasus::CIMNamespaceName(name.c_str())], connected.Report());
        try {
            return dynamic_cast<FaithfulReading&>(*connected.GetReading()).TakeOver(instances);
        } catch (const TVYXException&) {
            if (const auto& failure = connected.LastFailure()) {
                throw RemoteError(*failure);
            }
            throw;
        }
    }

  private:
    struct NameBefore {
        bool operator()(const Pegasus::CIMNamespaceName& one, const Pegasus::CIMNamespaceName& other) const {
            return CompareIgnoringCase(NameText(one), NameText(other)) < 0;
        }
    };

    static Pegasus::Array<Pegasus::CIMInstance> InstancesAmong(Pegasus::Array<Pegasus::CIMObject>& objects,
                                                               ReadingReport& report) {
        Pegasus::Array<Pegasus::CIMInstance> instances;
        for (Pegasus::Uint32 i = 0; i < objects.size(); ++i) {
            const Pegasus::CIMObject object = std::exchange(objects[i], {});
            if (object.isInstance()) {
                instances.append(Pegasus::CIMInstance(object));
            } else {
                ReportClass(object, report);
            }
        }
        return instances;
    }

    std::map<Pegasus::CIMNamespaceName, Pegasus::Array<Pegasus::CIMObject>, NameBefore> objects_;
};

/// The objects that an association's path refers to by its keys.
std::vector<RemoteLink::End> EndsIn(const TCIMReference& association) {
    std::vector<RemoteLink::End> ends;
    association.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        if (value.IsReference() && !value.IsNull()) {
            ends.push_back({name, value.GetReference()});
        }
        return true;
    });
    return ends;
}

/// What an association refers to by its properties.
std::vector<RemoteLink::End> EndsIn(const Pegasus::CIMInstance& association) {
    std::vector<RemoteLink::End> ends;
    for (Pegasus::Uint32 i = 0; i < association.getPropertyCount(); ++i) {
        const auto property = association.getProperty(i);
        const auto& value = property.getValue();
        if (value.getType() == Pegasus::CIMTYPE_REFERENCE && !value.isArray() && !value.isNull()) {
            Pegasus::CIMObjectPath path;
            value.get(path);
            ends.push_back({NameText(property.getName()), ToHostReference(path)});
        }
    }
    return ends;
}

/// Adds the namespaces. An association belongs to the server that was asked, so the host in its path is that server.
RemoteLink PlacedLink(RemoteLink link, const std::string& nameSpace) {
    const std::string ownHost = link.association.GetHost();
    if (link.association.GetNamespaceName().empty()) {
        link.association.SetNamespaceName(nameSpace);
    }
    link.association.SetHost(std::string());
    for (RemoteLink::End& end : link.ends) {
        if (end.object.GetNamespaceName().empty()) {
            end.object.SetNamespaceName(link.association.GetNamespaceName());
        }
        if (EqualIgnoringCase(end.object.GetHost(), ownHost)) {
            end.object.SetHost(std::string());
        }
    }
    return link;
}

} // namespace

std::vector<TCIMReference> ReadRemoteRelatedPaths(TCimHTTPNamespace& nameSpace, const AssociationQuery& query) {
    const AssociationRequest request = RequestFor(nameSpace, query);
    return Remotely([&] {
        auto paths = query.wanted == Wanted::kOtherEnds ? nameSpace.Server().AssociatorNames(request)
                                                        : nameSpace.Server().ReferenceNames(request);
        for (Pegasus::Uint32 i = 0; i < paths.size(); ++i) {
            paths[i] = WholePath(paths[i], request.nameSpace, query.host);
        }
        return HostReferences(paths);
    });
}

std::unique_ptr<RelatedObjects> ReadRemoteRelated(TCimHTTPNamespace& nameSpace, const AssociationQuery& query) {
    const AssociationRequest request = RequestFor(nameSpace, query);
    const Pegasus::CIMPropertyList properties = PropertyList(query.properties);
    return Remotely([&]() -> std::unique_ptr<RelatedObjects> {
        auto objects = query.wanted == Wanted::kOtherEnds ? nameSpace.Server().Associators(request, properties)
                                                          : nameSpace.Server().References(request, properties);
        return std::make_unique<SentObjects>(objects, request.nameSpace, query.host);
    });
}

void CheckRemoteInstance(TCimHTTPNamespace& nameSpace, const std::string& path) {
    const AssociationRequest request = RequestAbout(nameSpace, path);
    Remotely([&] { nameSpace.Server().CheckInstance(request.nameSpace, request.object); });
}

std::vector<RemoteLink> ReadRemoteLinks(TCimHTTPNamespace& nameSpace, const std::string& path) {
    const AssociationRequest request = RequestAbout(nameSpace, path);
    const std::string where = NameText(request.nameSpace);
    return Remotely([&] {
        std::vector<RemoteLink> links;
        bool hasAllEnds = true;
        for (const TCIMReference& association : HostReferences(nameSpace.Server().ReferenceNames(request))) {
            links.push_back(PlacedLink({association, EndsIn(association)}, where));
            hasAllEnds = hasAllEnds && links.back().ends.size() > 1;
        }
        if (hasAllEnds) {
            return links;
        }
        links.clear();
        const auto objects = nameSpace.Server().References(request, Pegasus::CIMPropertyList());
        for (Pegasus::Uint32 i = 0; i < objects.size(); ++i) {
            if (objects[i].isInstance()) {
                const Pegasus::CIMInstance association(objects[i]);
                links.push_back(PlacedLink({ToHostReference(objects[i].getPath()), EndsIn(association)}, where));
            } else {
                ReportClass(objects[i], nameSpace.Report());
            }
        }
        return links;
    });
}

} // namespace cimhttp
