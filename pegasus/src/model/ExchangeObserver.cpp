#include <Pegasus/Client/ExchangeObserver.h>

namespace Pegasus {

ExchangeObserver::~ExchangeObserver() = default;

void ExchangeObserver::onConnecting(const String& /*server*/, Boolean /*encrypted*/, Time /*time*/) {}

} // namespace Pegasus
