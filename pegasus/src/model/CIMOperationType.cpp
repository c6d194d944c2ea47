#include "model/OperationTypes.h"

#include <array>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

constexpr std::array<std::pair<CIMOperationType, const char*>, 26> kOperations = {
    {{CIMOPTYPE_GET_CLASS, "GetClass"},
     {CIMOPTYPE_GET_INSTANCE, "GetInstance"},
     {CIMOPTYPE_ENUMERATE_CLASSES, "EnumerateClasses"},
     {CIMOPTYPE_ENUMERATE_CLASS_NAMES, "EnumerateClassNames"},
     {CIMOPTYPE_ENUMERATE_INSTANCES, "EnumerateInstances"},
     {CIMOPTYPE_ENUMERATE_INSTANCE_NAMES, "EnumerateInstanceNames"},
     {CIMOPTYPE_EXEC_QUERY, "ExecQuery"},
     {CIMOPTYPE_ASSOCIATORS, "Associators"},
     {CIMOPTYPE_ASSOCIATOR_NAMES, "AssociatorNames"},
     {CIMOPTYPE_REFERENCES, "References"},
     {CIMOPTYPE_REFERENCE_NAMES, "ReferenceNames"},
     {CIMOPTYPE_GET_PROPERTY, "GetProperty"},
     {CIMOPTYPE_GET_QUALIFIER, "GetQualifier"},
     {CIMOPTYPE_ENUMERATE_QUALIFIERS, "EnumerateQualifiers"},
     {CIMOPTYPE_OPEN_ENUMERATE_INSTANCES, "OpenEnumerateInstances"},
     {CIMOPTYPE_OPEN_ENUMERATE_INSTANCE_PATHS, "OpenEnumerateInstancePaths"},
     {CIMOPTYPE_OPEN_REFERENCE_INSTANCES, "OpenReferenceInstances"},
     {CIMOPTYPE_OPEN_REFERENCE_INSTANCE_PATHS, "OpenReferenceInstancePaths"},
     {CIMOPTYPE_OPEN_ASSOCIATOR_INSTANCES, "OpenAssociatorInstances"},
     {CIMOPTYPE_OPEN_ASSOCIATOR_INSTANCE_PATHS, "OpenAssociatorInstancePaths"},
     {CIMOPTYPE_OPEN_QUERY_INSTANCES, "OpenQueryInstances"},
     {CIMOPTYPE_PULL_INSTANCES_WITH_PATH, "PullInstancesWithPath"},
     {CIMOPTYPE_PULL_INSTANCE_PATHS, "PullInstancePaths"},
     {CIMOPTYPE_PULL_INSTANCES, "PullInstances"},
     {CIMOPTYPE_CLOSE_ENUMERATION, "CloseEnumeration"},
     {CIMOPTYPE_ENUMERATION_COUNT, "EnumerationCount"}}};

} // namespace

const char* cimOperationTypeToString(CIMOperationType operation) noexcept {
    for (const auto& [type, name] : kOperations) {
        if (type == operation) {
            return name;
        }
    }
    return "unknown";
}

CIMOperationType detail::operationTypeOf(std::string_view name) noexcept {
    for (const auto& [type, itsName] : kOperations) {
        if (name == itsName) {
            return type;
        }
    }
    return CIMOperationType(0);
}

} // namespace bundled
} // namespace Pegasus
