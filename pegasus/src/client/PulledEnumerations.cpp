#include "client/ClientImpl.h"
#include "client/OperationParameters.h"

namespace Pegasus {
inline namespace bundled {

using namespace client;

namespace {

constexpr Uint32 kNotImplemented = 501;

} // namespace

Array<CIMInstance> CIMClient::openEnumerateInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                     const CIMNamespaceName& nameSpace, const CIMName& className,
                                                     Boolean deepInheritance, Boolean includeClassOrigin,
                                                     const CIMPropertyList& propertyList,
                                                     const String& filterQueryLanguage, const String& filterQuery,
                                                     const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                     Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenEnumerateInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openEnumerateInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                           const CIMNamespaceName& nameSpace, const CIMName& className,
                                                           const String& filterQueryLanguage, const String& filterQuery,
                                                           const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                           Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenEnumerateInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openReferenceInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                     const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                                     const CIMName& resultClass, const String& role,
                                                     Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                                                     const String& filterQueryLanguage, const String& filterQuery,
                                                     const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                     Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, CIMName(), resultClass, role, String::EMPTY);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenReferenceInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openReferenceInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                           const CIMNamespaceName& nameSpace,
                                                           const CIMObjectPath& objectName, const CIMName& resultClass,
                                                           const String& role, const String& filterQueryLanguage,
                                                           const String& filterQuery, const Uint32Arg& operationTimeout,
                                                           Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, CIMName(), resultClass, role, String::EMPTY);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenReferenceInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openAssociatorInstances(
    CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
    const CIMObjectPath& objectName, const CIMName& assocClass, const CIMName& resultClass, const String& role,
    const String& resultRole, Boolean includeClassOrigin, const CIMPropertyList& propertyList,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, assocClass, resultClass, role, resultRole);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenAssociatorInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openAssociatorInstancePaths(
    CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
    const CIMObjectPath& objectName, const CIMName& assocClass, const CIMName& resultClass, const String& role,
    const String& resultRole, const String& filterQueryLanguage, const String& filterQuery,
    const Uint32Arg& operationTimeout, Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, assocClass, resultClass, role, resultRole);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenAssociatorInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openQueryInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                 const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                                 const String& query, CIMClass& queryResultClass,
                                                 Boolean returnQueryResultClass, const Uint32Arg& operationTimeout,
                                                 Boolean continueOnError, Uint32 maxObjectCount) {
    auto portion = impl_->open<Instances<Many>>(
        "OpenQueryInstances", context, endOfSequence, nameSpace, [&](RequestEncoder& request) {
            addFilter(request, queryLanguage, query);
            request.addBoolean("ReturnQueryResultClass", returnQueryResultClass);
            addOpening(request, operationTimeout, continueOnError, maxObjectCount);
        });
    if (returnQueryResultClass && portion.queryResultClass) {
        queryResultClass = *portion.queryResultClass;
    }
    return portion.objects;
}

Array<CIMInstance> CIMClient::pullInstancesWithPath(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                    Uint32 maxObjectCount) {
    return impl_->pull<NamedInstances>("PullInstancesWithPath", context, endOfSequence, maxObjectCount);
}

Array<CIMObjectPath> CIMClient::pullInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                  Uint32 maxObjectCount) {
    return impl_->pull<InstancePaths>("PullInstancePaths", context, endOfSequence, maxObjectCount);
}

Array<CIMInstance> CIMClient::pullInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                            Uint32 maxObjectCount) {
    return impl_->pull<Instances<Many>>("PullInstances", context, endOfSequence, maxObjectCount);
}

void CIMClient::closeEnumeration(CIMEnumerationContext& context) {
    impl_->ask<Nothing>("CloseEnumeration", context, [](RequestEncoder& /*request*/) {});
    context.clear();
}

Uint64Arg CIMClient::enumerationCount(CIMEnumerationContext& context) {
    return impl_->ask<Number>("EnumerationCount", context, [](RequestEncoder& /*request*/) {});
}

Boolean CIMClient::hasPulledEnumerations(const CIMNamespaceName& nameSpace) {
    try {
        impl_->call<InstanceNames>("OpenEnumerateInstancePaths", nameSpace, [](RequestEncoder& request) {
            request.addClassName("ClassName", CIMName("CIMHTTP_NoSuchClass"));
        });
    } catch (const CIMException& error) {
        switch (error.getCode()) {
        case CIM_ERR_INVALID_CLASS:
        case CIM_ERR_NOT_FOUND:
            return true;
        case CIM_ERR_NOT_SUPPORTED:
        case CIM_ERR_FAILED: // with which older servers refuse what they do not know
            return false;
        default:
            throw;
        }
    } catch (const CIMClientHTTPErrorException& error) {
        if (error.getCode() != kNotImplemented) {
            throw;
        }
        return false;
    }
    return true;
}

} // namespace bundled
} // namespace Pegasus
