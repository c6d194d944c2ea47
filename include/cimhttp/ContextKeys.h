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

// --- ICIMClass::EnumerateInstances of a faithful namespace ---

/// The properties that are wanted, an array of names; the others are null in the instances. All without the key.
constexpr const char* kPropertiesKey = "cimhttp.properties";

} // namespace NQORVYX20
