#pragma once

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

class ILogger;
class INamespaceProviderManager;

/// The process-wide services of the host. All operations may be called from several threads at once, and until the very
/// end of the process, from the destructors of statics too.
class TRootObject {
  public:
    TRootObject() = delete;

    /// The logger at this moment, never empty. Fetch it for each message: the host may exchange it at any time.
    /// Until the host sets one, errors and warnings go to the standard error stream.
    static boost::shared_ptr<ILogger> GetCoreLogger();

    /// Exchanges the logger. An empty pointer brings back the first one.
    static void SetCoreLogger(boost::shared_ptr<ILogger> logger);

    /// Never empty.
    static boost::shared_ptr<INamespaceProviderManager> GetNamespaceProviderManager();
};

} // namespace NQORVYX20
