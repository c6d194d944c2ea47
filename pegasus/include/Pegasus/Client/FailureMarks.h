#pragma once

// What an exception means beyond its type. One that bears such a mark is of the documented type and of the mark's, so
// that nobody needs to look into its message:
//
//     catch (const Pegasus::Exception& error) {
//         if (dynamic_cast<const Pegasus::ExceedsLimit*>(&error) != nullptr)

namespace Pegasus {

/// The answer passes a limit of this library. On CIMClientXmlException and CIMClientMalformedHTTPException.
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
