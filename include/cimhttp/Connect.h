#pragma once

#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMNamespace;

// What a host does with a namespace of the plug-in beyond the operations of ICIMNamespace. The functions are exported
// by the plug-in, so that a program or library that calls them is linked to it; loading it registers its provider.
//
// A namespace is used from one thread at a time, by these functions, too; different namespaces may be used by different
// threads at once. Each function but the first one throws TVYXException eTypeMismatch, after a line in the log, for a
// namespace that is not one of the plug-in's.

/// A new namespace of the plug-in, not connected, from the provider "cimhttp" of the host's provider manager. It
/// belongs to the caller alone; when the last pointer goes, it disconnects, and what was read from it can no longer be
/// asked for anything that needs it (boost::bad_weak_ptr). `options` has keys of ContextKeys.h, such as kReadingKey and
/// kTimeoutKey; kPluginNameKey is "cimhttp" when it is not among them. May be called from several threads at once.
/// Throws TVYXException, after a line in the log: eNotFound when the manager has no such provider, eTypeMismatch for an
/// option that ContextKeys.h does not allow, eRemoteConnectionFailed when there is no client to be had.
boost::shared_ptr<ICIMNamespace> AllocateRemoteNamespace(TCIMContext options);

/// Connects to a server: plain on port 5988, with TLS but without verification of the server on port 5989. On any other
/// port nothing is attempted, and the namespace counts as connected all the same. The options and the policy of the
/// machine, which is read anew each time, can say otherwise, of transport and verification. `host` is a name or an
/// address. User and password are sent when the server asks for them, so that a login that it refuses shows when
/// something is read; they are kept in memory for that.
///
/// Returns when the connection stands, or throws TVYXException eRemoteConnectionFailed after a line in the log:
/// LastFailure says why, and the namespace stays as it was. Waits no longer than kConnectTimeoutKey says, for each
/// step. A namespace that is connected to a server is refused another one until DisconnectNamespace.
void ConnectNamespace(ICIMNamespace& nameSpace, const std::string& host, const std::string& user,
                      const std::string& password, int port);

/// Ends the connection, if there is one; the classes that the namespace has are kept for the next one. It does not have
/// to be called.
void DisconnectNamespace(ICIMNamespace& nameSpace);

/// True from ConnectNamespace to DisconnectNamespace. Says nothing about the server, which may have gone meanwhile: the
/// next operation connects again by itself.
bool IsConnected(ICIMNamespace& nameSpace);

/// Whether ConnectNamespace would verify who that server is, by the options or by the policy of the machine. True, too,
/// where it would refuse to connect. Connects to nothing.
bool WouldVerifyServer(const ICIMNamespace& nameSpace, const std::string& host, int port);

} // namespace NQORVYX20
