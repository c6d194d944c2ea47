#pragma once

#include "server/AccessLog.h"
#include "server/Answer.h"
#include "server/ListenerState.h"
#include "server/Places.h"
#include "server/RequestHead.h"
#include "server/ResponseWriter.h"
#include "wire/CimRequest.h"

#include <chrono>
#include <cstddef>

namespace demo {

/// Carries out the operation of a request and answers: as a whole where there is memory for it, otherwise in chunks
/// while the answer comes about.
class OperationResponder {
  public:
    /// All must outlive the responder. The record gets the status of the operation.
    OperationResponder(ListenerState& state, ResponseWriter& writer, AccessRecord& record, const RequestHead& head)
        : state_(state), writer_(writer), record_(record), head_(head) {}

    /// Throws Refusal when there is no memory for the answer, and ConnectionLost.
    void Respond(const CimRequest& operation);

  private:
    void RespondOnce(const CimRequest& operation);
    void RespondWhole(const CimRequest& operation);
    void WriteWhole(WholeAnswer answer);
    void WriteChunks(const CimRequest& operation, bool withTrailers);
    bool TakePlace(std::chrono::milliseconds timeout);
    bool MayHold(std::size_t answerBytes, std::chrono::milliseconds timeout);

    ListenerState& state_;
    ResponseWriter& writer_;
    AccessRecord& record_;
    const RequestHead& head_;
    /// What the answer holds while it is long.
    Places::Place place_;
};

} // namespace demo
