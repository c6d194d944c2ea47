#include "client/ServersError.h"

#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Common/CIMInstance.h>

#include <string>

namespace Pegasus::client {

namespace {

class ServersError final : public CIMException, public RefusedByServer {
  public:
    ServersError(const CIMException& error, const std::string& server, const char* method)
        : CIMException(error.getCode(), String(text(error) + " (" + server + ": " + method + ")")),
          RefusedByServer(String(server), error.getMessage()) {
        for (Uint32 i = 0; i < error.getErrorCount(); ++i) {
            addError(error.getError(i));
        }
    }

  private:
    static std::string text(const CIMException& error) { return std::string(error.getMessage().view()); }
};

} // namespace

void throwServersError(const CIMException& error, const http::Endpoint& endpoint, const char* method,
                       const ContentLanguageList& languages) {
    ServersError named(error, endpoint.text(), method);
    named.setContentLanguages(languages);
    throw named;
}

} // namespace Pegasus::client
