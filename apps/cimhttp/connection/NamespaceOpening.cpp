#include "connection/NamespaceOpening.h"

#include "Failure.h"
#include "connection/ConnectionContext.h"
#include "connection/FailureTeller.h"
#include "connection/OperationStatistics.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"

#include <chrono>

namespace cimhttp {

namespace {

using NQORVYX20::ICIMNamespace;
using NQORVYX20::TVYXException;
using NQORVYX20::TVYXStatusCode;

boost::shared_ptr<ICIMNamespace> Allocate(const Plugin& plugin, const Connection& connection) {
    try {
        const auto allocated = plugin.AllocateNamespace(ContextOf(connection));
        return connection.statistics ? plugin.Access().Measured(allocated, connection.statistics) : allocated;
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() != TVYXStatusCode::eTypeMismatch) {
            throw;
        }
        throw Failure(Failure::kUsage, "'" + connection.nameSpace + "' is not the name of a namespace");
    }
}

} // namespace

boost::shared_ptr<ICIMNamespace> OpenNamespace(const Plugin& plugin, const Connection& connection,
                                               const std::optional<ProgressWait>& wait) {
    const FailureTeller failures(plugin.Access(), connection);
    auto opened = Allocate(plugin, connection);
    const auto begin = std::chrono::steady_clock::now();
    const auto connect = [&] {
        plugin.Access().Connect(*opened, connection.host, connection.user, connection.password, connection.Port());
    };
    try {
        if (wait) { // the plug-in has no time-out for connecting; the user has one
            wait->Run("connecting to " + connection.Url(), connect,
                      ProgressWait::Limit{connection.ConnectTimeout(), [&] { return failures.ConnectTimedOut(); }});
        } else {
            connect();
        }
    } catch (const TVYXException& exception) {
        // the client library may be the first to notice that the time is over
        const bool isLate = std::chrono::steady_clock::now() - begin >= connection.ConnectTimeout();
        throw isLate ? failures.ConnectTimedOut() : failures.NotConnected(failures.ReasonOf(exception, *opened));
    }
    return opened;
}

} // namespace cimhttp
