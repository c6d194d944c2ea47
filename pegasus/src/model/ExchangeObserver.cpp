#include <Pegasus/Client/ExchangeObserver.h>

namespace Pegasus {
inline namespace bundled {

ExchangeObserver::~ExchangeObserver() = default;

void ExchangeObserver::onConnecting(const String& /*server*/, Boolean /*encrypted*/, Time /*time*/) {}

} // namespace bundled
} // namespace Pegasus
