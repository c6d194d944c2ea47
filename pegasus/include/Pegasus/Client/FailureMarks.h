#pragma once

// What an exception means beyond its type. One that bears such a mark is of the documented type and of the mark's, so
// that nobody needs to look into its message:
//
//     catch (const Pegasus::Exception& error) {
//         if (dynamic_cast<const Pegasus::ExceedsLimit*>(&error) != nullptr)

namespace Pegasus {

/// The answer passes a limit: one of this library's or of the ClientLimits, or the memory that there is. On
/// CIMClientXmlException, CIMClientMalformedHTTPException and OutOfMemoryException.
class ExceedsLimit {
  public:
    virtual ~ExceedsLimit();
};

/// The server speaks TLS on a port that was connected to without it. On CIMClientMalformedHTTPException.
class PeerSpeaksTls {
  public:
    virtual ~PeerSpeaksTls();
};

/// The server accepted the connection and ended it before it said anything. On the CannotConnectException of an
/// operation.
class ClosedWithoutAnswer {
  public:
    virtual ~ClosedWithoutAnswer();
};

} // namespace Pegasus
