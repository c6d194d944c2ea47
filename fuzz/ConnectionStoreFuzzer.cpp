// The file of named connections: whatever is in it, it is refused in words, or its connections are the same when the
// file was written anew.

#include "Cost.h"
#include "Failure.h"
#include "Require.h"
#include "connection/ConnectionStore.h"
#include "support/TemporaryDirectory.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <tuple>

using cimhttp::ConnectionStore;
using cimhttp::Failure;
using cimhttp::SavedConnection;
using cimhttp::TlsSettings;

namespace {

constexpr mode_t kOnlyOwner = 0600;

/// The file, only for its owner, since it may hold a password.
const std::string& StoreFile() {
    static const support::TemporaryDirectory directory;
    static const std::string path = (directory.Path() / "connections.json").string();
    return path;
}

void Write(const std::uint8_t* data, std::size_t size) {
    std::ofstream(StoreFile(), std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<long>(size));
    Require(::chmod(StoreFile().c_str(), kOnlyOwner) == 0, "the file is there");
}

std::optional<ConnectionStore::Connections> Read(const ConnectionStore& store) {
    try {
        return store.Read();
    } catch (const Failure& failure) {
        Require(failure.Status() == Failure::kUsage, "a file that cannot be read is the user's concern");
        Require(std::string(failure.what()).find(store.Path()) != std::string::npos, "a complaint names the file");
        return std::nullopt;
    }
}

auto Fields(const TlsSettings& settings) {
    return std::tie(settings.ca, settings.fingerprint, settings.certificate, settings.key, settings.verify);
}

bool IsSame(const SavedConnection& one, const SavedConnection& other) {
    return one.host == other.host && one.tls == other.tls && one.user == other.user && one.password == other.password &&
           one.timeout == other.timeout && one.port == other.port && one.nameSpace == other.nameSpace &&
           Fields(one.tlsSettings) == Fields(other.tlsSettings);
}

void CheckWrittenForm(const ConnectionStore& store, const ConnectionStore::Connections& connections) {
    store.Update([](auto& /*connections*/) {});
    const auto read = Read(store);
    Require(read && read->size() == connections.size(), "connections are written and read back");
    for (const auto& [name, connection] : connections) {
        Require(!connection.host.empty(), "a connection has a host");
        Require(read->count(name) == 1 && IsSame(read->at(name), connection), "a connection is read back as it was");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    StoreFile();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Write(data, size);
    const CostGuard guard(kReaderBounds, size);
    const ConnectionStore store(StoreFile());
    if (const auto connections = Read(store)) {
        CheckWrittenForm(store, *connections);
    }
    return 0;
}
