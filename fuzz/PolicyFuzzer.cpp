// The policy of a machine: whatever it is, it is refused in words, or every server is connected to as it says, or
// refused in words.

#include "Cost.h"
#include "Require.h"
#include "SilentLog.h"
#include "cimhttp/ContextKeys.h"
#include "provider/ConnectionPlan.h"
#include "provider/ConnectionRefusal.h"
#include "provider/OptionRules.h"
#include "provider/PolicyFault.h"
#include "support/TemporaryDirectory.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>

using namespace NQORVYX20;

namespace {

constexpr mode_t kOnlyOwner = 0600;

const std::string& File() {
    static const support::TemporaryDirectory directory;
    static const std::string path = (directory.Path() / "policy.json").string();
    return path;
}

void Write(const std::uint8_t* data, std::size_t size) {
    std::ofstream(File(), std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<long>(size));
    Require(::chmod(File().c_str(), kOnlyOwner) == 0, "the file is there");
}

bool IsPrintable(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char character) { return character >= ' ' && character <= '~'; });
}

void CheckComplaint(const std::string& complaint) {
    Require(complaint.find(File()) != std::string::npos, "a complaint names the file");
    Require(IsPrintable(complaint), "a complaint is one line");
}

std::optional<ConnectionPolicy> Read() {
    try {
        return ConnectionPolicy(PolicyFile(File(), false));
    } catch (const PolicyFault& fault) {
        CheckComplaint(fault.what());
        return std::nullopt;
    }
}

void CheckOptions(const ConnectionOptions& options) {
    for (const auto& [key, value] : options.All()) {
        const OptionRule* const rule = FindOptionRule(key);
        Require(rule != nullptr && rule->FaultOf(value).empty(), "an option has a good value");
    }
    Require(!options.Has(kClientKeyKey) || options.Has(kClientCertificateKey), "a key has its certificate");
}

void CheckForced(const ConnectionPolicy& policy, const std::string& host, const ConnectionPlan& plan) {
    const auto matches = policy.MatchesFor(host);
    if (!matches.empty()) {
        for (const auto& [key, value] : matches.front().entry->forced.All()) {
            const auto found = plan.Options().All().find(key);
            Require(found != plan.Options().All().end() && found->second == value, "what is forced first counts");
        }
    }
}

void Plan(const ConnectionPolicy& policy, const ConnectionOptions& ofHost, const std::string& host, int port) {
    try {
        const ConnectionPlan plan(ofHost, policy, host, port);
        CheckOptions(plan.Options());
        CheckForced(policy, host, plan);
        Require(KeysThatNeedTls(plan.Options()).empty() || plan.ChosenTransport() == ConnectionPlan::Transport::kTls,
                "nothing that needs encryption goes without");
        Require(plan.Decision().empty() == policy.MatchesFor(host).empty(), "a decision is told");
        Require(IsPrintable(plan.Decision()), "a decision is one line");
    } catch (const ConnectionRefusal& refusal) {
        Require(IsPrintable(refusal.what()), "a refusal is one line");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SilentLog::Install();
    File();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::array<std::string, 4> kHosts{"", "Array7.storage.example.", "[::ffff:10.0.0.1]", "fe80::1%eth0"};
    Write(data, size);
    const CostGuard guard(kReaderBounds, size);
    const auto policy = Read();
    ConnectionOptions verified;
    verified.Set(kTrustKey, std::string("/own.pem"));
    verified.Set(kTimeoutKey, std::uint64_t{1000});
    for (const std::string& host : kHosts) {
        for (const int port : {5988, 5989, 8080}) {
            if (policy) {
                Plan(*policy, ConnectionOptions(), host, port);
                Plan(*policy, verified, host, port);
            }
        }
    }
    return 0;
}
