#pragma once

#include "http/Channel.h"
#include "http/Deadline.h"
#include "http/Endpoint.h"
#include "http/ResponseReader.h"

#include <Pegasus/Client/ExchangeObserver.h>
#include <Pegasus/Common/Exception.h>

#include <memory>
#include <string_view>
#include <utility>

namespace Pegasus::http {

/// Tells an observer, if there is one, what a connection does.
class ExchangeReport {
  public:
    void setObserver(std::shared_ptr<ExchangeObserver> observer) { observer_ = std::move(observer); }

    bool isObserved() const { return observer_ != nullptr; }

    /// Has a reader keep what is to be reported of its answers.
    void prepare(ResponseReader& reader) const;

    void connecting(const Endpoint& endpoint, bool encrypted) const;
    /// `bytes` are head and body, the latter `bodySize` of them.
    void request(std::string_view bytes, std::size_t bodySize) const;
    void answerHead(const ResponseReader& reader) const;

    /// Reads and reports the body, including the rest of one that the sink rejects.
    void readBody(ResponseReader& reader, const BodySink& sink, const Deadline& deadline) const;

    /// Reads and reports some of the body, see ResponseReader::readSome(); all that is left of one that the sink
    /// rejects.
    bool readSome(ResponseReader& reader, const BodySink& sink, const Deadline& deadline) const;

    /// Reports that nobody wants the rest of an answer.
    void ended() const;

    /// Runs a step; when it fails, that is reported.
    template <typename Step>
    decltype(auto) during(Step step) const {
        try {
            return step();
        } catch (const ConnectionLost& lost) {
            failure(String(lost.reason));
            throw;
        } catch (const Exception& exception) {
            failure(exception.getMessage());
            throw;
        } catch (...) {
            ended();
            throw;
        }
    }

  private:
    void failure(const String& message) const;
    enum class Extent { kSome, kAll };
    bool readObserved(Extent extent, ResponseReader& reader, const BodySink& sink, const Deadline& deadline) const;

    std::shared_ptr<ExchangeObserver> observer_;
};

} // namespace Pegasus::http
