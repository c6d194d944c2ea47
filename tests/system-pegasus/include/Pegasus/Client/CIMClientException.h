#pragma once

#include <Pegasus/Common/Exception.h>

namespace Pegasus {

// The library makes all of these itself.
// clang-format off
class CIMClientMalformedHTTPException : public Exception { CIMClientMalformedHTTPException(); };
class CIMClientXmlException : public Exception { CIMClientXmlException(); };
class CIMClientResponseException : public Exception { CIMClientResponseException(); };
// clang-format on

class CIMClientHTTPErrorException : public Exception {
    CIMClientHTTPErrorException();

  public:
    Uint32 getCode() const;
    const String& getCIMError() const;
    const String& getCIMErrorDetail() const;
};

} // namespace Pegasus
