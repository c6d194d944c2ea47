#include "client/OperationParameters.h"

namespace Pegasus::client {

void addOptional(RequestEncoder& request, std::string_view parameter, const String& text) {
    if (!text.empty()) {
        request.addString(parameter, text.view());
    }
}

void addExtent(RequestEncoder& request, Boolean includeQualifiers, Boolean includeClassOrigin,
               const CIMPropertyList& propertyList) {
    request.addBoolean("IncludeQualifiers", includeQualifiers);
    request.addBoolean("IncludeClassOrigin", includeClassOrigin);
    request.addPropertyList("PropertyList", propertyList);
}

void addInstancesOf(RequestEncoder& request, const CIMName& className, Boolean deepInheritance, Boolean localOnly,
                    Boolean includeQualifiers, Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    request.addClassName("ClassName", className);
    request.addBoolean("LocalOnly", localOnly);
    request.addBoolean("DeepInheritance", deepInheritance);
    addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
}

void addAssociationFilter(RequestEncoder& request, const CIMName& assocClass, const CIMName& resultClass,
                          const String& role, const String& resultRole) {
    request.addClassName("AssocClass", assocClass);
    request.addClassName("ResultClass", resultClass);
    addOptional(request, "Role", role);
    addOptional(request, "ResultRole", resultRole);
}

void addAssociators(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole) {
    request.addObjectName("ObjectName", objectName);
    addAssociationFilter(request, assocClass, resultClass, role, resultRole);
}

void addSource(RequestEncoder& request, const CIMObjectPath& instanceName, const CIMName& assocClass,
               const CIMName& resultClass, const String& role, const String& resultRole) {
    request.addInstanceName("InstanceName", instanceName);
    addAssociationFilter(request, assocClass, resultClass, role, resultRole);
}

void addReferences(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& resultClass,
                   const String& role) {
    addAssociators(request, objectName, CIMName(), resultClass, role, String::EMPTY);
}

void addOpening(RequestEncoder& request, const Uint32Arg& operationTimeout, Boolean continueOnError,
                Uint32 maxObjectCount) {
    if (!operationTimeout.isNull()) {
        request.addNumber("OperationTimeout", operationTimeout.getValue());
    }
    if (continueOnError) {
        request.addBoolean("ContinueOnError", true);
    }
    request.addNumber("MaxObjectCount", maxObjectCount);
}

void addFilter(RequestEncoder& request, const String& filterQueryLanguage, const String& filterQuery) {
    addOptional(request, "FilterQueryLanguage", filterQueryLanguage);
    addOptional(request, "FilterQuery", filterQuery);
}

} // namespace Pegasus::client
