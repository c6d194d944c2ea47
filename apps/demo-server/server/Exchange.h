#pragma once

#include "server/AccessLog.h"
#include "server/Connection.h"
#include "server/ListenerState.h"
#include "server/Places.h"
#include "server/Refusal.h"
#include "server/RequestReader.h"
#include "server/ResponseWriter.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"

#include <string>

namespace demo {

/// A request and its answer, from the first byte to the last.
class Exchange {
  public:
    /// The first byte of the request has arrived. State and connection must outlive the exchange.
    Exchange(ListenerState& state, Connection& connection, std::string client);

    /// Reads the request, answers it and writes its line to the log. Whether the connection goes on.
    bool Run();

  private:
    bool IsAnswered();
    void Answer();
    void CarryOut();
    CimRequest ReadOperation(const RequestHead& head);
    std::string ReadBody();
    void Refuse(const Refusal& refusal);
    void Refuse(const HttpError& error);
    void Write(ResponseWriter::Whole answer);
    void DecideWhetherConnectionEnds();

    ListenerState& state_;
    Connection& connection_;
    RequestReader reader_;
    ResponseWriter writer_;
    AccessRecord record_;
    /// What the request holds while it is long.
    Places::Place place_;
};

} // namespace demo
