// What a server sends over its connections, as bytes: whatever they are, the operations of a client with credentials
// end with objects or with an exception of the client library.
//
// A line "%%" in the input stands between the answers, of which each request gets the next one; when they are used up,
// the connection is closed. In an answer, "$ID$" stands for the ID of the request's message, which has as many letters.

#include "Cost.h"
#include "LoopbackServer.h"
#include "Require.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

using namespace Pegasus;

namespace {

constexpr std::string_view kSeparator = "%%\n";
constexpr std::string_view kId = "$ID$";
constexpr Uint32 kTimeoutMs = 5000; // nobody waits so long: the server closes the connection where nothing comes

/// The answers of an input, one after the other.
class RawAnswers {
  public:
    explicit RawAnswers(std::string_view input) : rest_(input) {}

    std::optional<std::string> To(std::string_view request) {
        if (rest_.empty()) {
            return std::nullopt;
        }
        const std::size_t end = std::min(rest_.find(kSeparator), rest_.size());
        std::string answer(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + kSeparator.size(), rest_.size()));
        FillIn(request, answer);
        return answer;
    }

  private:
    static void FillIn(std::string_view request, std::string& answer) {
        constexpr std::string_view kBegin = "<MESSAGE ID=\"";
        const std::size_t begin = request.find(kBegin);
        if (begin == std::string_view::npos) {
            return;
        }
        const std::string_view id = request.substr(begin + kBegin.size(), kId.size());
        for (auto place = answer.find(kId); place != std::string::npos; place = answer.find(kId, place + kId.size())) {
            answer.replace(place, kId.size(), id);
        }
    }

    std::string_view rest_;
};

LoopbackServer& Server() {
    static LoopbackServer server(0, LoopbackServer::Silence::kEnds);
    return server;
}

/// False when the client says that it cannot.
bool Try(const std::function<void()>& operation) {
    try {
        operation();
        return true;
    } catch (const CIMException& exception) {
        Require(exception.getCode() != CIM_ERR_SUCCESS, "success is no error");
    } catch (const Exception& exception) {
        Require(!exception.getMessage().empty(), "an error says what is wrong");
    }
    return false;
}

/// Pulls an enumeration of a few portions, and closes it before its end if that has not come by then.
void Pull(CIMClient& client, const CIMNamespaceName& space, const CIMName& name) {
    constexpr int kPortions = 3;
    constexpr Uint32 kCount = 10;
    CIMEnumerationContext context;
    Boolean end = false;
    client.openEnumerateInstances(context, end, space, name, true, false, CIMPropertyList(), String(), String(),
                                  Uint32Arg(), false, kCount);
    for (int i = 0; i < kPortions && !end; ++i) {
        client.pullInstancesWithPath(context, end, kCount);
    }
    if (!end) {
        client.enumerationCount(context);
        client.closeEnumeration(context);
    }
}

void UseClient() {
    const CIMNamespaceName space("root/cimv2");
    const CIMName name("A");
    CIMClient client;
    client.setTimeout(kTimeoutMs);
    const LoopbackServer& server = Server();
    Require(Try([&] { client.connect(String(server.Address()), server.Port(), "user", "password"); }),
            "the client connects");
    Try([&] { Require(!client.getClass(space, name).getClassName().isNull(), "a class has a name"); });
    Try([&] { client.enumerateInstances(space, name); });
    Try([&] { client.enumerateInstanceNames(space, name); });
    Try([&] { client.enumerateQualifiers(space); });
    Try([&] { Pull(client, space, name); });
    Try([&] {
        CIMEnumerationContext context;
        Boolean end = false;
        client.openEnumerateInstancePaths(context, end, space, name);
    });
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    Server();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    RawAnswers answers({reinterpret_cast<const char*>(data), size});
    Server().SetAnswers([&](const std::string& request) { return answers.To(request); });
    {
        const CostGuard guard(kDialogueBounds, size);
        UseClient();
    }
    Server().SetAnswers({});
    return 0;
}
