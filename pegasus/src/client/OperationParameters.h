#pragma once

#include "cimxml/RequestEncoder.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/UintArgs.h>

#include <string_view>

// The parameters that several operations have. Their names are those of DSP0200, intrinsic methods.

namespace Pegasus::client {

using cimxml::RequestEncoder;

/// Adds a text that is left out when it is empty.
void addOptional(RequestEncoder& request, std::string_view parameter, const String& text);

/// Adds the parameters that say how much of each object is asked for.
void addExtent(RequestEncoder& request, Boolean includeQualifiers, Boolean includeClassOrigin,
               const CIMPropertyList& propertyList = CIMPropertyList());

/// Adds the parameters that say which instances of a class are asked for.
void addInstancesOf(RequestEncoder& request, const CIMName& className, Boolean deepInheritance, Boolean localOnly,
                    Boolean includeQualifiers, Boolean includeClassOrigin, const CIMPropertyList& propertyList);

/// Adds which associations are followed.
void addAssociationFilter(RequestEncoder& request, const CIMName& assocClass, const CIMName& resultClass,
                          const String& role, const String& resultRole);

/// Adds the parameters that lead from an object over associations to others.
void addAssociators(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole);

/// Adds the parameters that lead from an instance to others, as the pulled enumerations call them.
void addSource(RequestEncoder& request, const CIMObjectPath& instanceName, const CIMName& assocClass,
               const CIMName& resultClass, const String& role, const String& resultRole);

/// Adds the parameters that lead from an object to its associations.
void addReferences(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& resultClass,
                   const String& role);

/// Adds what every operation has that opens an enumeration.
void addOpening(RequestEncoder& request, const Uint32Arg& operationTimeout, Boolean continueOnError,
                Uint32 maxObjectCount);

/// Adds which of the objects are wanted.
void addFilter(RequestEncoder& request, const String& filterQueryLanguage, const String& filterQuery);

} // namespace Pegasus::client
