#include "host/TRootObject.h"

#include "TNamespaceProviderManager.h"
#include "host/TLogger.h"

#include <boost/make_shared.hpp>

#include <iostream>
#include <mutex>

namespace NQORVYX20 {

namespace {

struct TServices {
    std::mutex mutex; // of the logger
    const boost::shared_ptr<ILogger> firstLogger = boost::make_shared<TLogger>(std::cerr, ILogger::eLogWarning);
    boost::shared_ptr<ILogger> logger = firstLogger;
    const boost::shared_ptr<INamespaceProviderManager> manager = boost::make_shared<TNamespaceProviderManager>();
};

// Made by the first use, which may come from the static constructor of a plug-in, and never destroyed: the destructors
// of statics elsewhere may still log when the process ends.
TServices& Services() {
    static TServices& services = *new TServices;
    return services;
}

} // namespace

boost::shared_ptr<ILogger> TRootObject::GetCoreLogger() {
    TServices& services = Services();
    const std::lock_guard<std::mutex> lock(services.mutex);
    return services.logger;
}

void TRootObject::SetCoreLogger(boost::shared_ptr<ILogger> logger) {
    TServices& services = Services();
    if (!logger) {
        logger = services.firstLogger;
    }
    const std::lock_guard<std::mutex> lock(services.mutex);
    services.logger.swap(logger); // the old one ends with the argument, after the lock
}

boost::shared_ptr<INamespaceProviderManager> TRootObject::GetNamespaceProviderManager() { return Services().manager; }

} // namespace NQORVYX20
