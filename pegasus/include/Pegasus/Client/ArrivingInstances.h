#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <memory>

namespace Pegasus {
inline namespace bundled {

/// Enumerates instances in parts, when the caller wants them, while the rest of the answer is still on its way: no more
/// of it is received than was asked for and fits into the buffers of the connection. An extension, which other
/// libraries of this API do not have.
///
///     ArrivingInstances arriving(client, "root/cimv2", "CIM_FileSystem");
///     while (!arriving.isAtEnd()) {
///         const Array<CIMInstance> instances = arriving.next(100);
///         ...
///     }
///
/// The client is in use until all have arrived, next() has thrown, or close() is called: its operations throw an
/// Exception meanwhile. The time-out counts while the operation waits and decodes, not between two calls; one that is
/// set to less for the client meanwhile limits the next call, too.
class ArrivingInstances {
  public:
    /// Sends the request, as CIMClient::enumerateInstances() with the same parameters, and reads the beginning of the
    /// answer. Throws as that does. The client must outlive this.
    ArrivingInstances(CIMClient& client, const CIMNamespaceName& nameSpace, const CIMName& className,
                      Boolean deepInheritance = true, Boolean localOnly = true, Boolean includeQualifiers = false,
                      Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList());
    /// Closes.
    ~ArrivingInstances();
    ArrivingInstances(const ArrivingInstances&) = delete;
    ArrivingInstances& operator=(const ArrivingInstances&) = delete;

    /// Waits for the next instances and returns them, each with its path, in the order of the server: as many as have
    /// arrived, and where these are fewer than `count`, those that can be received without waiting. None at the end.
    /// When the server reports an error, or the answer turns out to be invalid, the instances before that are returned,
    /// and the next call throws as CIMClient::enumerateInstances() does. After it has thrown, or after close(), there
    /// are no more, and it throws an Exception.
    Array<CIMInstance> next(Uint32 count = 1);

    /// Whether it is known that all instances were returned.
    Boolean isAtEnd() const noexcept;

    /// Whether the rest of the answer is still to be received, so that the client is in use.
    Boolean isReceiving() const noexcept;

    /// Ends the enumeration early: the connection, on which the rest of the answer would come, is closed, and the next
    /// operation opens it again.
    void close() noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace bundled
} // namespace Pegasus
