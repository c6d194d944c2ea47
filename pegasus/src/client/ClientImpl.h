#pragma once

#include "cimxml/Findings.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/RequestEncoder.h"
#include "cimxml/ResponseDecoder.h"
#include "client/CimHeaders.h"
#include "client/ReturnValues.h"
#include "errors/Marked.h"
#include "http/HttpConnection.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/CIMClientException.h>

#include <chrono>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace Pegasus {
inline namespace bundled {

/// What a client has, and how it does an operation.
class CIMClient::Impl {
  public:
    Uint32 timeout = 20000;
    Boolean lenient = false;
    cimxml::Findings findings;
    AcceptLanguageList languages;
    ClientOpPerformanceDataHandler* performanceHandler = nullptr;

    /// Does what a client is asked for. Where memory does not suffice, what was made of it is gone when this throws,
    /// with a message that was made before: there may be no memory for it when it is needed.
    template <typename Work>
    auto withinMemory(Work work) const {
        try {
            return work();
        } catch (const std::bad_alloc&) {
        } catch (const std::length_error&) {
            // asked for more than there can be
        }
        throw errors::Marked<OutOfMemoryException, ExceedsLimit>(outOfMemory_);
    }

    void setQualifiedEmbedding(Boolean isOn) noexcept {
        qualifiedEmbedding_ = isOn;
        objects_->setQualifiedEmbedding(isOn);
    }
    void setDoubledProperties(Boolean areRead) noexcept {
        doubledProperties_ = areRead;
        objects_->setDoubledProperties(areRead);
    }

    void setObserver(std::shared_ptr<ExchangeObserver> observer);

    const ClientLimits& limits() const { return limits_; }
    void setLimits(const ClientLimits& limits);

    void connect(const String& host, Uint32 port, const std::optional<SSLContext>& tls, const String& user,
                 const String& password);
    /// See CIMClient::connectLike().
    void connectLike(const Impl& other);
    void disconnect();

    /// One operation: `addParameters` completes the request, a Result takes the objects of the return value.
    template <typename Result, typename AddParameters>
    auto call(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        checkReady();
        return withinMemory([&] {
            return aboutOperation(method, [&] {
                Result result;
                receive(method, nameSpace, addParameters, result);
                return std::move(result).take();
            });
        });
    }

    /// Does an operation whose objects are handed over: false when they were not wanted any more.
    template <typename AddParameters>
    bool handOver(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters,
                  const InstanceStream::Taker& take) {
        checkReady();
        client::HandedOver sink(take);
        const bool isWhole = withinMemory([&] {
            try {
                aboutOperation(method, [&] { receive(method, nameSpace, addParameters, sink); });
                return true;
            } catch (const client::HandedOver::Enough&) {
                return false;
            }
        });
        sink.rethrow(); // here, where its lack of memory is not that of the answer
        return isWhole;
    }

    /// Opens an enumeration and returns its first portion.
    template <typename Kept, typename AddParameters>
    auto open(const char* method, CIMEnumerationContext& context, Boolean& endOfSequence,
              const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        auto portion = call<client::Pulled<Kept>>(method, nameSpace, addParameters);
        CIMEnumerationContext opened;
        opened.nameSpace_ = nameSpace;
        keep(portion, opened, endOfSequence);
        context = opened;
        return portion;
    }

    /// Its next portion.
    template <typename Kept>
    auto pull(const char* method, CIMEnumerationContext& context, Boolean& endOfSequence, Uint32 maxObjectCount) {
        auto portion = ask<client::Pulled<Kept>>(method, context, [&](cimxml::RequestEncoder& request) {
            request.addNumber("MaxObjectCount", maxObjectCount);
        });
        keep(portion, context, endOfSequence);
        return portion.objects;
    }

    /// An operation on an enumeration.
    template <typename Result, typename AddParameters>
    auto ask(const char* method, const CIMEnumerationContext& context, AddParameters addParameters) {
        if (!context.open_) {
            throw CIMException(CIM_ERR_INVALID_ENUMERATION_CONTEXT, "the enumeration is not open");
        }
        return call<Result>(method, context.nameSpace_, [&](cimxml::RequestEncoder& request) {
            request.addString("EnumerationContext", context.id_.view());
            addParameters(request);
        });
    }

    /// What one operation has taken so far.
    class Measurement {
      public:
        explicit Measurement(const char* method) : method_(method) {}

        client::AnswerRemarks remarks;
        Uint64 requestSize = 0;
        Uint64 responseSize = 0;

        /// The time from here to resume() does not count.
        void pause() { paused_ = Clock::now(); }
        void resume() { begin_ += Clock::now() - paused_; }

        ClientOpPerformanceData data() const;

      private:
        using Clock = std::chrono::steady_clock;

        const char* method_;
        Clock::time_point begin_ = Clock::now();
        Clock::time_point paused_;
    };

    /// The end of an operation, looked at while its answer is decoded.
    class EndOfTime : public cimxml::Checkpoint {
      public:
        EndOfTime(const http::Endpoint& endpoint, const http::Deadline& deadline)
            : endpoint_(endpoint), deadline_(deadline) {}

        void pass() const override;

      private:
        const http::Endpoint& endpoint_;
        const http::Deadline& deadline_;
    };

    /// The answer to one request while it is received. The client that it is made of and the sink must outlive it.
    struct Answer {
        Answer(Impl& client, std::string messageId, const char* itsMethod, client::ReturnValueSink& sink)
            : method(itsMethod),
              measurement(itsMethod),
              end(client.deadline()),
              endOfTime(client.connection_->endpoint(), end),
              decoder(std::move(messageId), itsMethod, sink, client.objects_, client.limits_, &endOfTime,
                      client.lenient ? &client.findings : nullptr) {}
        Answer(const Answer&) = delete;
        Answer& operator=(const Answer&) = delete;

        const char* const method;
        Measurement measurement;
        http::Deadline end;
        EndOfTime endOfTime;
        cimxml::ResponseDecoder decoder;
    };

    /// A request that is ready to be sent, and how its answer says which one it answers.
    struct Request {
        std::string messageId;
        http::HttpRequest http;
    };

    template <typename AddParameters>
    Request makeRequest(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        Request made{std::to_string(++lastMessageId_), {}};
        cimxml::RequestEncoder request(made.messageId, method, nameSpace);
        addParameters(request);
        made.http = client::makeCimRequest(method, nameSpace.getString().view(), request.finish(), languages);
        return made;
    }

    void checkReady() const;
    /// Whoever takes instances is called in the middle of an operation.
    void checkIdle() const;

    // An answer in parts, each within during(): begin() sends the request and reads the head; readSome() reads on until
    // it returns true; finish() checks what was read; end(), outside of during(), is the end of the operation.
    // abandon() ends it early; after its end it does nothing.

    /// Does a part of an operation. Where it throws, the operation has ended, and another one may begin.
    template <typename Work>
    void during(Answer& answer, Work work) {
        isReceiving_ = true;
        try {
            work();
        } catch (const CIMException& error) { // a good answer, though not the one hoped for
            failOrderly(answer, error);
        } catch (...) {
            isReceiving_ = false;
            connection_->close();
            throw;
        }
    }
    void begin(Answer& answer, const http::HttpRequest& request) { begin(request, answer.end, answer.measurement); }
    bool readSome(Answer& answer);
    void finish(Answer& answer) { finish(answer.decoder, answer.measurement); }
    void end(Answer& answer);
    void abandon() noexcept;
    bool hasInput() const { return connection_->hasInput(); }

    /// Does a part of an operation. What it throws about the answer names server and operation.
    template <typename Work>
    auto aboutOperation(const char* method, Work work) const {
        const std::string server = connection_->endpoint().text(); // a performance handler may disconnect
        try {
            return work();
        } catch (const CIMClientXmlException& failure) {
            throwAbout(server, method, failure);
        } catch (const CIMClientResponseException& failure) {
            throwAbout(server, method, failure);
        }
    }

    /// Throws an exception of that type, with the same mark, whose message says which server and operation it is about.
    template <typename Failure>
    [[noreturn]] static void throwAbout(const std::string& server, const char* method, const Failure& failure) {
        const String message(server + ": " + method + ": " + std::string(failure.getMessage().view()));
        if (dynamic_cast<const ExceedsLimit*>(&failure) != nullptr) {
            throw errors::Marked<Failure, ExceedsLimit>(message);
        }
        throw Failure(message);
    }

  private:
    static constexpr const char* kOutOfMemory = "there is not enough memory for the server's answer";

    template <typename Portion>
    void keep(const Portion& portion, CIMEnumerationContext& context, Boolean& endOfSequence) const {
        context.id_ = portion.id;
        context.open_ = !portion.isLast;
        context.answerBytes_ += lastAnswerBytes_;
        endOfSequence = portion.isLast;
    }

    template <typename AddParameters>
    void receive(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters,
                 client::ReturnValueSink& sink) {
        const Request request = makeRequest(method, nameSpace, addParameters);
        receive(request.messageId, method, request.http, sink);
    }

    void receive(const std::string& messageId, const char* method, const http::HttpRequest& request,
                 client::ReturnValueSink& sink);
    [[noreturn]] void failOrderly(Answer& answer, const CIMException& error);
    template <typename Make>
    void openConnection(Make make);
    void report(const Measurement& measurement) const;
    http::Deadline deadline() const;
    void exchange(const http::HttpRequest& request, cimxml::ResponseDecoder& decoder, const http::Deadline& end,
                  const EndOfTime& endOfTime, Measurement& measurement);
    void begin(const http::HttpRequest& request, const http::Deadline& end, Measurement& measurement);
    static void take(std::string_view part, cimxml::ResponseDecoder& decoder, const EndOfTime& endOfTime,
                     Measurement& measurement);
    void finish(cimxml::ResponseDecoder& decoder, Measurement& measurement);
    void checkAnswer(const http::HttpHead& head, const http::Deadline& end);
    /// The body of an answer that is refused for its head, which only an observer wants to see.
    void showRefused(const std::exception_ptr& failure, const http::Deadline& end);

    ClientLimits limits_;
    std::shared_ptr<ExchangeObserver> observer_;
    std::optional<http::HttpConnection> connection_;
    String outOfMemory_{kOutOfMemory};
    const std::shared_ptr<cimxml::ObjectDecoder> objects_ = std::make_shared<cimxml::ObjectDecoder>();
    Uint64 lastMessageId_ = 0;
    Uint64 lastAnswerBytes_ = 0;
    Boolean qualifiedEmbedding_ = true;
    Boolean doubledProperties_ = false;
    bool isReceiving_ = false;
};

} // namespace bundled
} // namespace Pegasus
