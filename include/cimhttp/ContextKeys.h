#pragma once

namespace NQORVYX20 {

// The keys of contexts by which a host tells the plug-in what it wants. Keys without the prefix "cimhttp." are the
// host's own.

// --- AllocateRemoteNamespace, INamespaceProvider::AllocateNamespace ---

/// The name by which classes say where they come from, in their qualifier PLUGINNAME: a text. Without the key,
/// INamespaceProvider::AllocateNamespace throws TVYXException eContextValueMissing.
constexpr const char* kPluginNameKey = "pluginNameQualDeclValue";

// A key with the prefix that is not named here is refused, and so are a value of another type than its key takes, an
// empty text, and values that contradict each other: a line in the log names the key, and TVYXException eTypeMismatch
// is thrown.
//
// All but kReadingKey and kLenientKey are for ConnectNamespace. The operator of the machine can set these, too, for any
// servers, as defaults or in place of the host's (docs/policy.md).

/// How the namespace reads its server: one of the two texts below; kCompatibleReading without the key.
constexpr const char* kReadingKey = "cimhttp.reading";

/// The reading that hosts have always had: null becomes the empty value of its type, every instance is one of the class
/// that was asked for, and what cannot be read is a line in the log.
constexpr const char* kCompatibleReading = "compatible";

/// The reading that loses nothing: null is null, every instance is of its own class under the server's path, and what
/// cannot be read is reported.
constexpr const char* kFaithfulReading = "faithful";

/// A boolean, for faithful namespaces: with true, a part of an answer that cannot be read does not cost the rest. A
/// value that is not valid for its type becomes null, bytes that are not UTF-8 are taken as Latin-1 or as U+FFFD; each
/// is an incident (ReadingIncidents.h). Without the key, or with false, such an answer fails as a whole. True is
/// refused for a compatible namespace. Without effect where the client library is not the project's own.
constexpr const char* kLenientKey = "cimhttp.lenient";

/// The remote namespace, a text such as "root/interop"; "root/cimv2" without the key. A text that is not a valid
/// namespace name is refused.
constexpr const char* kNamespaceKey = "cimhttp.namespace";

// How ConnectNamespace reaches the server. The first key is a boolean, the others are texts. The texts apply to
// encrypted connections: with kTlsKey false they are refused; without it, on a port other than 5989, ConnectNamespace
// throws TVYXException eRemoteConnectionFailed. It also throws that for a server that they do not allow; LastFailure is
// then of the kind kTls and describes the certificate (RemoteFailure.h).

/// A boolean: whether ConnectNamespace encrypts, on any port from 1 to 65535. Without the key, port 5988 is plain, 5989
/// is encrypted, and no other is connected to.
constexpr const char* kTlsKey = "cimhttp.tls";

/// A PEM file with certificates of authorities, or a folder of such files: the server's certificate must come from one
/// of them, be within its time and be for the host that ConnectNamespace names. Without this and the next key,
/// connections are encrypted and the server is not verified. Refused where the client library is not the project's own:
/// OpenPegasus does not compare certificates with the names of hosts.
constexpr const char* kTrustKey = "cimhttp.trust";

/// SHA-256 of the only certificate that is accepted, whatever its chain, time and names, and whatever kTrustKey says:
/// 64 hexadecimal digits, with or without colons between the pairs. Refused where the client library is not the
/// project's own.
constexpr const char* kFingerprintKey = "cimhttp.fingerprint";

/// PEM files with the client's own certificate, for servers that ask for one, and with its key. Without kClientKeyKey,
/// the key is in the file of the certificate; without kClientCertificateKey, kClientKeyKey is refused.
constexpr const char* kClientCertificateKey = "cimhttp.client.certificate";
constexpr const char* kClientKeyKey = "cimhttp.client.key";

// Whole numbers of any unsigned type, greater than 0. All of these but kTimeoutKey are refused where the client library
// is not the project's own.

/// The time for each step of connecting (resolving the name, connecting to one address, the TLS handshake), in
/// milliseconds; 10,000 without the key.
constexpr const char* kConnectTimeoutKey = "cimhttp.connect.timeout";

/// The time for one request with its answer, in milliseconds; 65,535,000 without the key, which is about 18 hours.
constexpr const char* kTimeoutKey = "cimhttp.timeout";

/// The most that one answer may hold: bytes of its body (1 GiB without the key), and objects (10,000,000). Beyond that
/// the operation fails, with the kind kLimit (RemoteFailure.h).
constexpr const char* kLimitBytesKey = "cimhttp.limit.bytes";
constexpr const char* kLimitObjectsKey = "cimhttp.limit.objects";

/// The most that the classes of the namespace may hold in all: properties, methods, parameters and qualifiers;
/// 4,000,000 without the key. Beyond that no further class can be fetched; the failure is of the kind kLimit.
constexpr const char* kLimitElementsKey = "cimhttp.limit.elements";

/// The path of a file to which all requests and answers are written as on the wire, with times and without credentials,
/// for people to read. A new file is readable for its owner alone; an existing one is appended to. It holds whatever
/// the server sends. An operation fails with the kind kOther where the file cannot be written. Where two namespaces
/// write to one file, answers of more than 1 MiB may be interleaved. A text; refused where the client library is not
/// the project's own.
constexpr const char* kTraceKey = "cimhttp.trace";

// --- ICIMClass::EnumerateInstances of a faithful namespace ---

/// The properties that are wanted, an array of names; the others are null in the instances. Without the key, all are
/// wanted.
constexpr const char* kPropertiesKey = "cimhttp.properties";

/// The most instances that are held at once, a whole number of any unsigned type, greater than 0. Without the key all
/// are held, and the callback is called when the last one has arrived. With it, a class with no more instances than
/// that is read in this way, too. Of a class with more, the callback gets the first ones before the others are
/// requested, all in the order of the server; instances with equal paths are all passed on, and none is kept for
/// GetInstance. Memory then holds that many instances and those of one request; of a server without pulled
/// enumerations, which sends all with one request, a few hundred while the others arrive. What the callback reads of
/// the server meanwhile may take a second connection. Where the client library is not the project's own, all are
/// received first.
constexpr const char* kHeldKey = "cimhttp.held";

} // namespace NQORVYX20
