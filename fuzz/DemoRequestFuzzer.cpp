// The body of a request to the demo server: it is refused as no request, or answered with what a client can read.

#include "Cost.h"
#include "DemoAnswer.h"
#include "Require.h"
#include "providers/LiveProviders.h"
#include "schema/SchemaReader.h"
#include "server/CimService.h"
#include "wire/CimError.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t kVolumes = 3;

/// A server on a machine that tells nothing of itself, so that it is the same each time.
const demo::CimService& Service() {
    static const demo::CimService service = [] {
        demo::Schema schema = demo::BuiltInSchema();
        const demo::SystemFiles nothing("/proc/self/fdinfo/none");
        auto providers = demo::LiveProviders(schema, nothing, kVolumes);
        return demo::CimService(std::move(schema), std::move(providers), "server.example");
    }();
    return service;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    Service();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kServiceBounds, size);
    try {
        CheckAnswer(Service(), demo::ReadRequest({reinterpret_cast<const char*>(data), size}));
    } catch (const demo::HttpError& error) {
        Require(error.HttpStatus() >= 400 && !error.CimErrorValue().empty(), "a refusal has a status and a reason");
    }
    return 0;
}
