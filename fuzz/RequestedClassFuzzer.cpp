// A document of connection settings and class names: whatever it is, it gives settings of the known names only, and the
// same classes each time that it is read.

#include "Cost.h"
#include "Require.h"
#include "SilentLog.h"
#include "provider/TCimHTTPRequestedClassParser.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

bool Read(const std::string& document, TCimHTTPRequestedClassParser& parser) {
    parser.SetCharData(document);
    return parser.ParseCharData();
}

void CheckSettings(TCimHTTPRequestedClassParser& parser) {
    for (const auto& [name, value] : parser.GetRequestedNetworkData()) {
        Require(name == "address" || name == "user" || name == "pass" || name == "ssl", "a setting is a known one");
    }
}

void CheckSecondReading(const std::string& document, TCimHTTPRequestedClassParser& parser) {
    const auto settings = parser.GetRequestedNetworkData();
    const auto names = parser.GetRequestedClassData();
    Require(Read(document, parser), "a good document is good twice");
    Require(parser.GetRequestedNetworkData() == settings, "the first setting of a name counts");
    Require(parser.GetRequestedClassData().size() >= names.size(), "the classes of documents add up");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SilentLog::Install();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const std::string document(reinterpret_cast<const char*>(data), size);
    TCimHTTPRequestedClassParser parser;
    const bool isGood = Read(document, parser);
    CheckSettings(parser);
    if (isGood) {
        CheckSecondReading(document, parser);
    }
    return 0;
}
