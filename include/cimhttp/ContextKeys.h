#pragma once

namespace NQORVYX20 {

// What a host may say to the plug-in through contexts. Keys without the prefix "cimhttp." are the host's own.

// --- AllocateNamespace ---
//
// Another key with the prefix is refused, and so are a value of another type than its key's, an empty text, and values
// that contradict each other: after a line in the log that names the key, TVYXException eTypeMismatch is thrown.
//
// All but kReadingKey and kLenientKey are for connect(). The operator of the machine can set them, too, for the servers
// of his choice, as defaults or in the place of the host's (docs/policy.md).

/// How the namespace reads its server: one of the two texts below; compatibly without the key.
constexpr const char* kReadingKey = "cimhttp.reading";

/// The reading that hosts know from the beginning: null becomes the empty value of its type, every instance is one of
/// the class that was asked for, what cannot be read is a line in the log.
constexpr const char* kCompatibleReading = "compatible";

/// The reading that loses nothing: null is null, every instance is of its own class under the server's path, what
/// cannot be read is reported.
constexpr const char* kFaithfulReading = "faithful";

/// A boolean, for faithful namespaces: where it is true, what an answer holds that cannot be read costs that alone. A
/// value that is none of its type is null, bytes that are not UTF-8 are taken as Latin-1 or as U+FFFD; each is an
/// incident (ReadingIncidents.h). Without the key, or with false, such an answer fails as a whole. Refused where it is
/// true and the reading is compatible. Without effect where the client library is not the project's own.
constexpr const char* kLenientKey = "cimhttp.lenient";

/// The remote namespace, a text such as "root/interop"; "root/cimv2" without the key. A text that is no name of a
/// namespace is refused.
constexpr const char* kNamespaceKey = "cimhttp.namespace";

// How connect() reaches the server. Texts, but for the first. The texts are for encrypted connections: where kTlsKey is
// false they are refused; where the port decides that the connection is plain or not made, connect() throws
// TVYXException eRemoteConnectionFailed. A server that they do not allow makes it throw that, too; LastFailure() then
// is of the kind kTls and describes the certificate (RemoteFailure.h).

/// A boolean: with it, connect() takes any port from 1 to 65535, and encrypts as it says. Without, port 5988 is plain,
/// 5989 is encrypted, and no other is connected to.
constexpr const char* kTlsKey = "cimhttp.tls";

/// A PEM file with certificates of authorities, or a folder of such files: the server's certificate must come from one
/// of them, be within its time and be for the host that connect() names. Without this and the next key, connections are
/// encrypted and nobody is verified. Refused where the client library is not the project's own: OpenPegasus does not
/// compare certificates with the names of hosts.
constexpr const char* kTrustKey = "cimhttp.trust";

/// SHA-256 of the certificate that is accepted, whatever its chain, time and names: 64 hexadecimal digits, with or
/// without colons between the pairs. No other is, whatever kTrustKey says. Refused where the client library is not the
/// project's own.
constexpr const char* kFingerprintKey = "cimhttp.fingerprint";

/// PEM files with the client's own certificate, for servers that ask for one, and with its key; without the latter, the
/// key is in the first file. The latter is refused without the former.
constexpr const char* kClientCertificateKey = "cimhttp.client.certificate";
constexpr const char* kClientKeyKey = "cimhttp.client.key";

// Whole numbers of any unsigned type, greater than 0. Each of these keys but the timeout is refused where the client
// library is not the project's own.

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

/// A file to which all requests and answers are written as on the wire, with times and without credentials, for people
/// to read; not there yet, it is made for its owner alone, otherwise written on at its end. It holds what the server
/// tells, whatever that is. An operation ends with the kind kOther where the file cannot be written. Answers of more
/// than 1 MiB may be torn apart where two namespaces write to one file. A text; refused where the client library is not
/// the project's own.
constexpr const char* kTraceKey = "cimhttp.trace";

// --- ICIMClass::EnumerateInstances of a faithful namespace ---

/// The properties that are wanted, an array of names; the others are null in the instances. All without the key.
constexpr const char* kPropertiesKey = "cimhttp.properties";

/// The most instances that are held at once, a whole number of any unsigned type, greater than 0; without the key, all
/// are, and the callback is called when the last one has come. With it, a class that has no more instances is read in
/// the same way. Of a class that has more, the callback gets the first ones before the others are asked for, all of
/// them in the order of the server, two with one path as often as they come, and none is kept for GetInstance; memory
/// then holds so many, and those of one request. A server without pulled enumerations sends all with one request.
constexpr const char* kHeldKey = "cimhttp.held";

} // namespace NQORVYX20
