#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>

#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// Builds the body of one request: a CIM-XML document with one intrinsic method call (DSP0201, 5.2.4). Parameters are
/// added in any order; take the body last.
///
///     RequestEncoder request("17", "GetClass", nameSpace);
///     request.addClassName("ClassName", CIMName("CIM_Processor"));
///     request.addBoolean("LocalOnly", false);
///     send(request.finish());
class RequestEncoder {
  public:
    RequestEncoder(std::string_view messageId, std::string_view method, const CIMNamespaceName& nameSpace);

    void addBoolean(std::string_view parameter, bool value);
    void addString(std::string_view parameter, std::string_view value);
    void addNumber(std::string_view parameter, Uint64 value);
    /// A class name as a CLASSNAME element. The null name is left out.
    void addClassName(std::string_view parameter, const CIMName& name);
    /// The name of an instance within the request's namespace as an INSTANCENAME element; the path's own host and
    /// namespace are no part of it. The empty path is left out. Throws MalformedObjectNameException when the value of a
    /// reference key is not the text form of a path.
    void addInstanceName(std::string_view parameter, const CIMObjectPath& path);
    /// The name of a class or an instance: like addInstanceName(), but a path without keys as a CLASSNAME element.
    void addObjectName(std::string_view parameter, const CIMObjectPath& path);
    /// A property list as an array of strings. The null list is left out; an empty one is sent as an empty array.
    void addPropertyList(std::string_view parameter, const CIMPropertyList& list);

    /// Ends the document and returns it. Nothing can be added afterwards.
    std::string finish();

  private:
    void open(std::string_view parameter);
    void close();

    std::string body_;
};

} // namespace Pegasus::cimxml
