#pragma once

namespace NQORVYX20 {

// What a host may say to the plug-in through contexts. Keys without the prefix "cimhttp." are the host's own.

// --- AllocateNamespace ---

/// How the namespace reads its server: one of the two texts below; compatibly without the key. Another value is refused
/// with TVYXException 14.
constexpr const char* kReadingKey = "cimhttp.reading";

/// The reading that hosts know from the beginning: null becomes the empty value of its type, every instance is one of
/// the class that was asked for, what cannot be read is a line in the log.
constexpr const char* kCompatibleReading = "compatible";

/// The reading that loses nothing: null is null, every instance is of its own class under the server's path, what
/// cannot be read is reported.
constexpr const char* kFaithfulReading = "faithful";

/// The remote namespace, a text such as "root/interop"; "root/cimv2" without the key. A text that is no name of a
/// namespace is refused with TVYXException 14.
constexpr const char* kNamespaceKey = "cimhttp.namespace";

// Whole numbers of any unsigned type, greater than 0. A value of another type, and 0, is refused with TVYXException 14,
// and so is each of these keys but the timeout where the client library is not the project's own.

/// For each step towards a connection (resolving the name, one address, the TLS handshake), in milliseconds; 10,000
/// without the key.
constexpr const char* kConnectTimeoutKey = "cimhttp.connect.timeout";

/// For one request with its answer, in milliseconds; 65,535,000 without the key, which is about 18 hours.
constexpr const char* kTimeoutKey = "cimhttp.timeout";

/// The most that one answer may hold: bytes of its body (1 GiB without the key), and objects (10,000,000). Past it the
/// operation fails, with the kind kLimit (RemoteFailure.h).
constexpr const char* kLimitBytesKey = "cimhttp.limit.bytes";
constexpr const char* kLimitObjectsKey = "cimhttp.limit.objects";

/// The most that the classes of the namespace may hold in all: properties, methods, parameters and qualifiers;
/// 4,000,000 without the key. Past it no further class can be had, with the kind kLimit.
constexpr const char* kLimitElementsKey = "cimhttp.limit.elements";

// --- ICIMClass::EnumerateInstances of a faithful namespace ---

/// The properties that are wanted, an array of names; the others are null in the instances. All without the key.
constexpr const char* kPropertiesKey = "cimhttp.properties";

} // namespace NQORVYX20
