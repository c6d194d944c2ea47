#pragma once

#include "reading/PortionSize.h"
#include "reading/RemoteServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

namespace NQORVYX20 {

/// The instances of a class and its subclasses as a server sends them: in portions, where it has pulled enumerations,
/// or in one answer. That one is read as it arrives where not all of its instances are to be held. Whether it has them
/// is found out once, with the first enumeration: CIM_ERR_NOT_SUPPORTED, CIM_ERR_FAILED, CIM_ERR_NOT_FOUND,
/// CIM_ERR_METHOD_NOT_FOUND and HTTP 501 mean that it does not.
class InstancePortions {
  public:
    static constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

    /// The server must outlive this. No more than `most` are asked for at once, where the server sends portions; with
    /// kAll, one answer is received as a whole before the first of its instances is returned.
    InstancePortions(RemoteServer& server, std::string className, const Pegasus::CIMPropertyList& properties,
                     std::size_t most);

    /// The next portion, which may be empty. Throws what the client library throws; then it has ended.
    Pegasus::Array<Pegasus::CIMInstance> Next();

    bool IsAtEnd() const { return state_ == State::kEnded; }

    /// The bytes of what was sent so far, as far as the client library counts them.
    std::uint64_t Bytes() const { return RemoteServer::BytesOf(enumeration_); }

    /// Closes the enumeration at the server, if it is still open there. Never throws.
    void Close() noexcept;

  private:
    enum class State { kNew, kOpen, kEnded };

    Pegasus::Array<Pegasus::CIMInstance> First();
    Pegasus::Array<Pegasus::CIMInstance> Further();
    Pegasus::Array<Pegasus::CIMInstance> Arrived();

    RemoteServer& server_;
    std::string className_;
    Pegasus::CIMPropertyList properties_;
    State state_ = State::kNew;
    RemoteEnumeration enumeration_;
    bool isHeldInPart_;
    bool isArriving_ = false; // one answer, in parts
    std::weak_ptr<InstanceArrival> arrival_;
    PortionSize size_;
    unsigned emptyPortions_ = 0; // in a row
};

} // namespace NQORVYX20
