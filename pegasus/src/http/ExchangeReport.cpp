#include "http/ExchangeReport.h"

#include "http/PublicHead.h"

#include <chrono>
#include <exception>

namespace Pegasus::http {

namespace {

ExchangeObserver::Time now() { return std::chrono::system_clock::now(); }

/// Takes the rest of a body, which only the observer is to see.
class Rest {
  public:
    explicit Rest(const Deadline& deadline) : deadline_(deadline) {}

    /// When the body must have arrived; begin() sets an earlier time for the rest.
    const Deadline& deadline() const { return deadline_; }
    const std::exception_ptr& failure() const { return failure_; }

    /// To be called while the exception of the sink is handled.
    void begin() {
        failure_ = std::current_exception();
        deadline_ = deadline_.ofStep(std::chrono::milliseconds(ExchangeObserver::kRestMilliseconds));
    }

    void count(std::size_t bytes) {
        bytes_ += bytes;
        if (bytes_ > ExchangeObserver::kRestBytes) {
            std::rethrow_exception(failure_);
        }
    }

  private:
    Deadline deadline_;
    std::exception_ptr failure_;
    std::size_t bytes_ = 0;
};

} // namespace

void ExchangeReport::prepare(ResponseReader& reader) const {
    if (observer_) {
        reader.keepHeads();
    }
}

void ExchangeReport::connecting(const Endpoint& endpoint, bool encrypted) const {
    if (const auto observer = observer_) {
        observer->onConnecting(String(endpoint.text()), encrypted, now());
    }
}

void ExchangeReport::request(std::string_view bytes, std::size_t bodySize) const {
    if (const auto observer = observer_) {
        const std::size_t headSize = bytes.size() - bodySize;
        observer->onRequest(withoutCredentials(bytes.substr(0, headSize)), bytes.substr(headSize), now());
    }
}

void ExchangeReport::answerHead(const ResponseReader& reader) const {
    const auto observer = observer_;
    if (observer && !reader.headBytes().empty()) {
        observer->onAnswerHead(withoutCredentials(reader.headBytes()), now());
    }
}

void ExchangeReport::readBody(ResponseReader& reader, const BodySink& sink, const Deadline& deadline) const {
    const auto observer = observer_;
    if (!observer) {
        reader.readBody(sink, deadline);
        return;
    }
    during([&] { readObserved(Extent::kAll, reader, sink, deadline); });
    observer->onAnswerEnd(withoutCredentials(reader.trailers().lines()), now());
}

bool ExchangeReport::readSome(ResponseReader& reader, const BodySink& sink, const Deadline& deadline) const {
    const auto observer = observer_;
    if (!observer) {
        return reader.readSome(sink, deadline);
    }
    const bool isRead = during([&] { return readObserved(Extent::kSome, reader, sink, deadline); });
    if (isRead) {
        observer->onAnswerEnd(withoutCredentials(reader.trailers().lines()), now());
    }
    return isRead;
}

/// Returns whether the body is read. When the sink rejects a body, the rest of it is reported, too; not when the sink
/// ends the operation for another reason.
bool ExchangeReport::readObserved(Extent extent, ResponseReader& reader, const BodySink& sink,
                                  const Deadline& deadline) const {
    const auto observer = observer_; // another may take its place meanwhile
    Rest rest(deadline);
    bool isRead = false;
    try {
        const BodySink toBoth = [&](std::string_view part) {
            observer->onAnswerBody(part);
            if (rest.failure()) {
                rest.count(part.size());
                return;
            }
            try {
                sink(part);
            } catch (const Exception&) {
                rest.begin();
            }
        };
        do {
            isRead = reader.readSome(toBoth, rest.deadline());
        } while (!isRead && (extent == Extent::kAll || rest.failure()));
    } catch (...) {
        if (!rest.failure()) {
            throw;
        }
    }
    if (rest.failure()) {
        std::rethrow_exception(rest.failure()); // the first one counts, whatever came of the rest
    }
    return isRead;
}

void ExchangeReport::ended() const { failure("the operation was ended"); }

void ExchangeReport::failure(const String& message) const {
    if (const auto observer = observer_) {
        observer->onFailure(message, now());
    }
}

} // namespace Pegasus::http
