#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <new>
#include <stdexcept>
#include <string>

namespace NQORVYX20 {

/// What a server sends passes a limit of the plug-in, or the available memory. It is thrown and caught as the client
/// library's exceptions are, and is a failure of the kind "limit".
class LimitExceeded : public Pegasus::Exception {
  public:
    using Pegasus::Exception::Exception;
};

/// Runs `work`, whose memory is for `purpose`. Throws LimitExceeded when memory runs out; what `work` allocated is
/// freed by then.
template <typename Work>
auto WithinMemory(const Work& work, const char* purpose = "what the server sends") {
    try {
        return work();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
        // more was asked for than there can be
    }
    throw LimitExceeded((std::string("there is not enough memory for ") + purpose).c_str());
}

} // namespace NQORVYX20
