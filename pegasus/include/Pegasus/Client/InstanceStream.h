#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <functional>

namespace Pegasus {
inline namespace bundled {

/// Enumerates instances without collecting them: each is handed over as soon as its text has arrived, while the rest of
/// the answer is still on its way. An extension, which other libraries of this API do not have.
///
///     InstanceStream stream(client);
///     stream.enumerateInstances("root/cimv2", "CIM_FileSystem", [](const CIMInstance& instance) {
///         std::cout << instance.getPath().toString() << '\n';
///         return true;
///     });
class InstanceStream {
  public:
    /// Takes one instance, with its path; false ends the enumeration. While it runs, the client is in use: its
    /// operations throw an Exception. An exception thrown here ends the enumeration, too, and reaches the caller of
    /// enumerateInstances().
    using Taker = std::function<Boolean(const CIMInstance& instance)>;

    /// The client must outlive the stream.
    explicit InstanceStream(CIMClient& client) : client_(client) {}

    /// As CIMClient::enumerateInstances(), with the same parameters. True when all instances were handed over, false
    /// when the taker ended it; the connection, on which the rest of the answer would come, is then closed, and the
    /// next operation opens it again. When the server reports an error, or the answer turns out to be invalid, the
    /// instances before that have been handed over. The time-out covers all of it, including the time that the taker
    /// needs.
    Boolean enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className, const Taker& take,
                               Boolean deepInheritance = true, Boolean localOnly = true,
                               Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                               const CIMPropertyList& propertyList = CIMPropertyList());

  private:
    CIMClient& client_;
};

} // namespace bundled
} // namespace Pegasus
