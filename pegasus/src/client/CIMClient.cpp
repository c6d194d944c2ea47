#include "cimxml/Findings.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/RequestEncoder.h"
#include "cimxml/ResponseDecoder.h"
#include "cimxml/ScalarDecoder.h"
#include "client/CimHeaders.h"
#include "client/ServersError.h"
#include "errors/Marked.h"
#include "http/HttpConnection.h"
#include "http/TimeOut.h"
#include "model/OperationTypes.h"
#include "model/Unchecked.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/ExchangeObserver.h>
#include <Pegasus/Client/InstanceStream.h>

#include <chrono>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace Pegasus {

namespace {

using cimxml::RequestEncoder;
using cimxml::ResponseDecoder;
using cimxml::ReturnValueSink;

constexpr Uint32 kDefaultTimeout = 20000;
constexpr Uint32 kNotImplemented = 501;

std::string toText(const String& text) { return std::string(text.view()); }

/// Keeps all objects of a return value.
template <typename Object>
class Many : public ReturnValueSink {
  public:
    Array<Object> take() && { return std::move(objects_); }

  protected:
    void keep(const Object& object) { objects_.append(object); }

  private:
    Array<Object> objects_;
};

/// Keeps the one object of a return value.
template <typename Object>
class Single : public ReturnValueSink {
  public:
    Object take() && {
        if (!found_) {
            throw CIMClientResponseException("the answer holds no object");
        }
        return std::move(object_);
    }

  protected:
    void keep(const Object& object) {
        if (found_) {
            throw CIMClientResponseException("the answer holds more than the one object asked for");
        }
        object_ = object;
        found_ = true;
    }

  private:
    Object object_;
    bool found_ = false;
};

// What an operation returns: objects of one kind, one of them or many.

template <template <typename> class Kept>
class Classes : public Kept<CIMClass> {
    void onClass(const CIMClass& cimClass) override { this->keep(cimClass); }
};

class ClassNames : public Many<CIMName> {
    void onClassName(const CIMName& name) override { keep(name); }
};

/// Those of which nobody needs a path.
template <template <typename> class Kept>
class Instances : public Kept<CIMInstance> {
    void onInstance(const CIMInstance& instance) override { this->keep(instance); }
};

[[noreturn]] void throwWithoutPath(const CIMInstance& instance) {
    throw CIMClientResponseException(String("the answer holds an instance of ") + instance.getClassName().getString() +
                                     String(" without its path"));
}

class NamedInstances : public Many<CIMInstance> {
    void onInstance(const CIMInstance& instance) override { keep(instance); }
    void onInstanceAlone(const CIMInstance& instance) override { throwWithoutPath(instance); }
};

class InstanceNames : public Many<CIMObjectPath> {
    void onInstanceName(const CIMObjectPath& name) override { keep(name); }
};

class Objects : public Many<CIMObject> {
    void onObject(const CIMObject& object) override { keep(object); }
};

class ObjectPaths : public Many<CIMObjectPath> {
    void onObjectPath(const CIMObjectPath& path) override { keep(path); }
};

class InstancePaths : public Many<CIMObjectPath> {
    void onInstancePath(const CIMObjectPath& path) override { keep(path); }
};

/// No objects at all.
class Nothing : public ReturnValueSink {
  public:
    bool take() && { return true; }
};

/// A number, or null.
class Number : public ReturnValueSink {
  public:
    Uint64Arg take() && { return number_; }

  private:
    void onValueText(const String& text) override { number_.setValue(cimxml::decodeScalar<Uint64>(text.view())); }

    Uint64Arg number_;
};

/// Hands instances over instead of keeping them.
class HandedOver : public ReturnValueSink {
  public:
    /// Thrown when whoever takes the instances wants no more.
    struct Enough {};

    explicit HandedOver(const InstanceStream::Taker& take) : take_(take) {}

    /// Throws what the taker threw, if it did.
    void rethrow() const {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

  private:
    void onInstance(const CIMInstance& instance) override {
        try {
            if (take_(instance)) {
                return;
            }
        } catch (...) { // which is not to be taken for the server's or the connection's
            error_ = std::current_exception();
        }
        throw Enough();
    }
    void onInstanceAlone(const CIMInstance& instance) override { throwWithoutPath(instance); }

    const InstanceStream::Taker& take_;
    std::exception_ptr error_;
};

/// What comes with one portion of a pulled enumeration.
template <typename Objects>
struct Portion {
    Objects objects;
    bool isLast;
    String id; // under which the server keeps the enumeration open, unless it is the last one
    std::optional<CIMClass> queryResultClass;
};

/// One portion with objects as they are Kept.
template <typename Kept>
class Pulled : public Kept {
  public:
    auto take() && {
        if (!isLast_ || (!*isLast_ && !id_)) {
            throw CIMClientResponseException(String("the answer lacks the output parameter ") +
                                             String(isLast_ ? "EnumerationContext" : "EndOfSequence"));
        }
        return Portion<decltype(static_cast<Kept&&>(*this).take())>{
            static_cast<Kept&&>(*this).take(), *isLast_, id_.value_or(String()), std::move(queryResultClass_)};
    }

  private:
    void onOutputText(const String& name, const String& text) override {
        if (String::equalNoCase(name, "EndOfSequence")) {
            isLast_ = cimxml::decodeScalar<Boolean>(text.view());
        } else if (String::equalNoCase(name, "EnumerationContext")) {
            id_ = text;
        }
    }

    void onOutputClass(const String& name, const CIMClass& cimClass) override {
        if (String::equalNoCase(name, "QueryResultClass")) {
            queryResultClass_ = cimClass;
        }
    }

    std::optional<bool> isLast_;
    std::optional<String> id_;
    std::optional<CIMClass> queryResultClass_;
};

template <template <typename> class Kept>
class QualifierDecls : public Kept<CIMQualifierDecl> {
    void onQualifierDecl(const CIMQualifierDecl& declaration) override { this->keep(declaration); }
};

/// A return value that is no object. An answer without one says that there is none.
class Value : public ReturnValueSink {
  public:
    CIMValue take() && { return std::move(value_); }

  private:
    bool takesValues() const override { return true; }
    void onValue(const CIMValue& value) override { value_ = value; }

    CIMValue value_{CIMTYPE_STRING, false};
};

/// What one operation has taken so far.
class Measurement {
  public:
    explicit Measurement(const char* method) : method_(method) {}

    client::AnswerRemarks remarks;
    Uint64 requestSize = 0;
    Uint64 responseSize = 0;

    ClientOpPerformanceData data() const {
        const auto elapsed = std::chrono::steady_clock::now() - begin_;
        return {detail::operationTypeOf(method_),
                remarks.serverMicroseconds.has_value(),
                remarks.serverMicroseconds.value_or(0),
                static_cast<Uint64>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count()),
                requestSize,
                responseSize};
    }

  private:
    const char* method_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// Adds a text that is left out when it is empty.
void addOptional(RequestEncoder& request, std::string_view parameter, const String& text) {
    if (!text.empty()) {
        request.addString(parameter, text.view());
    }
}

/// Adds the parameters that say how much of each object is asked for.
void addExtent(RequestEncoder& request, Boolean includeQualifiers, Boolean includeClassOrigin,
               const CIMPropertyList& propertyList = CIMPropertyList()) {
    request.addBoolean("IncludeQualifiers", includeQualifiers);
    request.addBoolean("IncludeClassOrigin", includeClassOrigin);
    request.addPropertyList("PropertyList", propertyList);
}

/// Adds the parameters that say which instances of a class are asked for.
void addInstancesOf(RequestEncoder& request, const CIMName& className, Boolean deepInheritance, Boolean localOnly,
                    Boolean includeQualifiers, Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    request.addClassName("ClassName", className);
    request.addBoolean("LocalOnly", localOnly);
    request.addBoolean("DeepInheritance", deepInheritance);
    addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
}

/// Adds which associations are followed.
void addAssociationFilter(RequestEncoder& request, const CIMName& assocClass, const CIMName& resultClass,
                          const String& role, const String& resultRole) {
    request.addClassName("AssocClass", assocClass);
    request.addClassName("ResultClass", resultClass);
    addOptional(request, "Role", role);
    addOptional(request, "ResultRole", resultRole);
}

/// Adds the parameters that lead from an object over associations to others.
void addAssociators(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole) {
    request.addObjectName("ObjectName", objectName);
    addAssociationFilter(request, assocClass, resultClass, role, resultRole);
}

/// Adds the parameters that lead from an instance to others, as the pulled enumerations call them.
void addSource(RequestEncoder& request, const CIMObjectPath& instanceName, const CIMName& assocClass,
               const CIMName& resultClass, const String& role, const String& resultRole) {
    request.addInstanceName("InstanceName", instanceName);
    addAssociationFilter(request, assocClass, resultClass, role, resultRole);
}

/// Adds the parameters that lead from an object to its associations.
void addReferences(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& resultClass,
                   const String& role) {
    addAssociators(request, objectName, CIMName(), resultClass, role, String::EMPTY);
}

/// Adds what every operation has that opens an enumeration.
void addOpening(RequestEncoder& request, const Uint32Arg& operationTimeout, Boolean continueOnError,
                Uint32 maxObjectCount) {
    if (!operationTimeout.isNull()) {
        request.addNumber("OperationTimeout", operationTimeout.getValue());
    }
    if (continueOnError) {
        request.addBoolean("ContinueOnError", true);
    }
    request.addNumber("MaxObjectCount", maxObjectCount);
}

/// Adds which of the objects are wanted.
void addFilter(RequestEncoder& request, const String& filterQueryLanguage, const String& filterQuery) {
    addOptional(request, "FilterQueryLanguage", filterQueryLanguage);
    addOptional(request, "FilterQuery", filterQuery);
}

/// The end of an operation, looked at while its answer is decoded.
class EndOfTime : public cimxml::Checkpoint {
  public:
    EndOfTime(const http::Endpoint& endpoint, const http::Deadline& deadline)
        : endpoint_(endpoint), deadline_(deadline) {}

    void pass() const override {
        if (deadline_.remaining() == http::Deadline::Clock::duration::zero()) {
            http::throwTimeOut(endpoint_, deadline_, "the answer was not read");
        }
    }

  private:
    const http::Endpoint& endpoint_;
    const http::Deadline& deadline_;
};

const char* const kOutOfMemory = "there is not enough memory for the server's answer";

/// Does what a client is asked for. Where memory does not suffice, what was made of it is gone when this throws, with a
/// message that was made before: there may be no memory for it when it is needed.
template <typename Work>
auto withinMemory(const String& outOfMemory, Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
        // asked for more than there can be
    }
    throw errors::Marked<OutOfMemoryException, ExceedsLimit>(outOfMemory);
}

/// Throws an exception of that type, with the same mark, whose message says which server and operation it is about.
template <typename Failure>
[[noreturn]] void throwAbout(const http::Endpoint& endpoint, const char* method, const Failure& failure) {
    const String message(endpoint.text() + ": " + method + ": " + toText(failure.getMessage()));
    if (dynamic_cast<const ExceedsLimit*>(&failure) != nullptr) {
        throw errors::Marked<Failure, ExceedsLimit>(message);
    }
    throw Failure(message);
}

/// Does a part of an operation. What it throws about the answer names server and operation.
template <typename Work>
auto aboutOperation(const http::Endpoint& endpoint, const char* method, Work work) {
    try {
        return work();
    } catch (const CIMClientXmlException& failure) {
        throwAbout(endpoint, method, failure);
    } catch (const CIMClientResponseException& failure) {
        throwAbout(endpoint, method, failure);
    }
}

} // namespace

class CIMClient::Impl {
  public:
    Uint32 timeout = kDefaultTimeout;
    Boolean lenient = false;
    cimxml::Findings findings;
    AcceptLanguageList languages;
    ClientOpPerformanceDataHandler* performanceHandler = nullptr;

    template <typename Work>
    auto withinMemory(Work work) const {
        return Pegasus::withinMemory(outOfMemory_, work);
    }

    void setQualifiedEmbedding(Boolean isOn) noexcept { objects_->setQualifiedEmbedding(isOn); }
    void setDoubledProperties(Boolean areRead) noexcept { objects_->setDoubledProperties(areRead); }

    void setObserver(std::shared_ptr<ExchangeObserver> observer) {
        observer_ = std::move(observer);
        if (connection_) {
            connection_->setObserver(observer_);
        }
    }

    const ClientLimits& limits() const { return limits_; }
    void setLimits(const ClientLimits& limits) {
        limits_ = limits;
        if (connection_) {
            connection_->setLimits(limits);
        }
    }

    void connect(const String& host, Uint32 port, std::optional<SSLContext> tls, const String& user,
                 const String& password) {
        if (connection_) {
            throw AlreadyConnectedException();
        }
        withinMemory([&] {
            try {
                connection_.emplace(http::Endpoint(toText(host), port), std::move(tls),
                                    http::Credentials{toText(user), toText(password)});
                connection_->setLimits(limits_);
                connection_->setObserver(observer_);
                connection_->open(deadline());
                outOfMemory_ = String(connection_->endpoint().text() + ": " + kOutOfMemory);
            } catch (...) {
                connection_.reset();
                throw;
            }
        });
    }

    void disconnect() {
        checkIdle();
        connection_.reset();
    }

    /// One operation: `addParameters` completes the request, a Result takes the objects of the return value.
    template <typename Result, typename AddParameters>
    auto call(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        checkReady();
        return withinMemory([&] {
            return aboutOperation(connection_->endpoint(), method, [&] {
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
        HandedOver sink(take);
        const bool isWhole = withinMemory([&] {
            try {
                aboutOperation(connection_->endpoint(), method,
                               [&] { receive(method, nameSpace, addParameters, sink); });
                return true;
            } catch (const HandedOver::Enough&) {
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
        auto portion = call<Pulled<Kept>>(method, nameSpace, addParameters);
        CIMEnumerationContext opened;
        opened.nameSpace_ = nameSpace;
        keep(portion, opened, endOfSequence);
        context = opened;
        return portion;
    }

    /// Its next portion.
    template <typename Kept>
    auto pull(const char* method, CIMEnumerationContext& context, Boolean& endOfSequence, Uint32 maxObjectCount) {
        auto portion = ask<Pulled<Kept>>(
            method, context, [&](RequestEncoder& request) { request.addNumber("MaxObjectCount", maxObjectCount); });
        keep(portion, context, endOfSequence);
        return portion.objects;
    }

    /// An operation on an enumeration.
    template <typename Result, typename AddParameters>
    auto ask(const char* method, const CIMEnumerationContext& context, AddParameters addParameters) {
        if (!context.open_) {
            throw CIMException(CIM_ERR_INVALID_ENUMERATION_CONTEXT, "the enumeration is not open");
        }
        return call<Result>(method, context.nameSpace_, [&](RequestEncoder& request) {
            request.addString("EnumerationContext", context.id_.view());
            addParameters(request);
        });
    }

  private:
    template <typename Answer>
    void keep(const Answer& portion, CIMEnumerationContext& context, Boolean& endOfSequence) const {
        context.id_ = portion.id;
        context.open_ = !portion.isLast;
        context.answerBytes_ += lastAnswerBytes_;
        endOfSequence = portion.isLast;
    }

    void checkReady() const {
        if (!connection_) {
            throw NotConnectedException();
        }
        checkIdle();
    }

    /// Whoever takes instances is called in the middle of an operation.
    void checkIdle() const {
        if (isReceiving_) {
            throw Exception("the client is in use: it is handing over the instances of an answer");
        }
    }

    template <typename AddParameters>
    void receive(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters,
                 ReturnValueSink& sink) {
        const std::string messageId = std::to_string(++lastMessageId_);
        RequestEncoder request(messageId, method, nameSpace);
        addParameters(request);
        const http::Deadline end = deadline();
        const EndOfTime endOfTime(connection_->endpoint(), end);
        ResponseDecoder decoder(messageId, method, sink, objects_, limits_, &endOfTime, lenient ? &findings : nullptr);
        Measurement measurement(method);
        isReceiving_ = true;
        try {
            exchange(client::makeCimRequest(method, nameSpace.getString().view(), request.finish(), languages), decoder,
                     end, endOfTime, measurement);
        } catch (const CIMException& error) { // a good answer, though not the one hoped for
            isReceiving_ = false;
            report(measurement);
            client::throwServersError(error, connection_->endpoint(), method, measurement.remarks.languages);
        } catch (...) {
            isReceiving_ = false;
            connection_->close();
            throw;
        }
        isReceiving_ = false;
        lastAnswerBytes_ = decoder.bytes();
        report(measurement);
    }

    void report(const Measurement& measurement) const {
        if (performanceHandler != nullptr) {
            performanceHandler->handleClientOpPerformanceData(measurement.data());
        }
    }

    http::Deadline deadline() const { return http::Deadline(std::chrono::milliseconds(timeout)); }

    void exchange(const http::HttpRequest& request, ResponseDecoder& decoder, const http::Deadline& end,
                  const EndOfTime& endOfTime, Measurement& measurement) {
        measurement.requestSize = request.body.size();
        const http::HttpHead& head = connection_->post(request, end);
        checkAnswer(head, end);
        client::addRemarks(head.fields, measurement.remarks);
        const http::HttpFields& trailers = connection_->readBody(
            [&](std::string_view part) {
                endOfTime.pass();
                measurement.responseSize += part.size();
                decoder.feed(part);
            },
            end);
        client::addRemarks(trailers, measurement.remarks);
        client::checkCimTrailers(trailers, connection_->endpoint());
        decoder.finish();
    }

    void checkAnswer(const http::HttpHead& head, const http::Deadline& end) {
        try {
            client::checkCimAnswer(head, connection_->endpoint());
        } catch (...) {
            showRefused(std::current_exception(), end);
            throw;
        }
    }

    /// The body of an answer that is refused for its head, which only an observer wants to see.
    void showRefused(const std::exception_ptr& failure, const http::Deadline& end) {
        if (!connection_->isObserved()) {
            return;
        }
        try {
            connection_->readBody([&](std::string_view) { std::rethrow_exception(failure); },
                                  end.ofStep(std::chrono::milliseconds(ExchangeObserver::kRestMilliseconds)));
        } catch (...) {
            // why it is refused counts
        }
    }

    ClientLimits limits_;
    std::shared_ptr<ExchangeObserver> observer_;
    std::optional<http::HttpConnection> connection_;
    String outOfMemory_{kOutOfMemory};
    const std::shared_ptr<cimxml::ObjectDecoder> objects_ = std::make_shared<cimxml::ObjectDecoder>();
    Uint64 lastMessageId_ = 0;
    Uint64 lastAnswerBytes_ = 0;
    bool isReceiving_ = false;
};

CIMClient::CIMClient() : impl_(std::make_unique<Impl>()) {}

CIMClient::~CIMClient() = default;

void CIMClient::setTimeout(Uint32 timeoutMilliseconds) { impl_->timeout = timeoutMilliseconds; }

Uint32 CIMClient::getTimeout() const { return impl_->timeout; }

void CIMClient::setLimits(const ClientLimits& limits) { impl_->setLimits(limits); }

const ClientLimits& CIMClient::getLimits() const { return impl_->limits(); }

void CIMClient::setLenient(Boolean lenient) { impl_->lenient = lenient; }

Boolean CIMClient::isLenient() const { return impl_->lenient; }

void CIMClient::setQualifiedEmbedding(Boolean isOn) { impl_->setQualifiedEmbedding(isOn); }

void CIMClient::setDoubledProperties(Boolean areRead) { impl_->setDoubledProperties(areRead); }

LenientFindings CIMClient::takeFindings() { return impl_->findings.take(); }

void CIMClient::setRequestAcceptLanguages(const AcceptLanguageList& languages) { impl_->languages = languages; }

const AcceptLanguageList& CIMClient::getRequestAcceptLanguages() const { return impl_->languages; }

void CIMClient::registerClientOpPerformanceDataHandler(ClientOpPerformanceDataHandler& handler) {
    impl_->performanceHandler = &handler;
}

void CIMClient::deregisterClientOpPerformanceDataHandler() { impl_->performanceHandler = nullptr; }

void CIMClient::setExchangeObserver(std::shared_ptr<ExchangeObserver> observer) {
    impl_->setObserver(std::move(observer));
}

void CIMClient::connect(const String& host, Uint32 port, const String& user, const String& password) {
    impl_->connect(host, port, std::nullopt, user, password);
}

void CIMClient::connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                        const String& password) {
    impl_->connect(host, port, sslContext, user, password);
}

void CIMClient::disconnect() { impl_->disconnect(); }

// The operations. The names of their parameters are those of DSP0200, intrinsic methods.

CIMClass CIMClient::getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly,
                             Boolean includeQualifiers, Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList) {
    return impl_->call<Classes<Single>>("GetClass", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("LocalOnly", localOnly);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMClass> CIMClient::enumerateClasses(const CIMNamespaceName& nameSpace, const CIMName& className,
                                            Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                            Boolean includeClassOrigin) {
    return impl_->call<Classes<Many>>("EnumerateClasses", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
        request.addBoolean("LocalOnly", localOnly);
        addExtent(request, includeQualifiers, includeClassOrigin);
    });
}

Array<CIMName> CIMClient::enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className,
                                              Boolean deepInheritance) {
    return impl_->call<ClassNames>("EnumerateClassNames", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
    });
}

CIMInstance CIMClient::getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                                   Boolean localOnly, Boolean includeQualifiers, Boolean includeClassOrigin,
                                   const CIMPropertyList& propertyList) {
    return impl_->withinMemory([&] {
        CIMInstance instance = impl_->call<Instances<Single>>("GetInstance", nameSpace, [&](RequestEncoder& request) {
            request.addInstanceName("InstanceName", instanceName);
            request.addBoolean("LocalOnly", localOnly);
            addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
        });
        detail::Unchecked::setPath(instance, instanceName); // which may name a superclass
        return instance;
    });
}

Array<CIMInstance> CIMClient::enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                                 Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return impl_->call<NamedInstances>("EnumerateInstances", nameSpace, [&](RequestEncoder& request) {
        addInstancesOf(request, className, deepInheritance, localOnly, includeQualifiers, includeClassOrigin,
                       propertyList);
    });
}

Array<CIMObjectPath> CIMClient::enumerateInstanceNames(const CIMNamespaceName& nameSpace, const CIMName& className) {
    return impl_->call<InstanceNames>("EnumerateInstanceNames", nameSpace,
                                      [&](RequestEncoder& request) { request.addClassName("ClassName", className); });
}

Array<CIMObject> CIMClient::associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                        const CIMName& assocClass, const CIMName& resultClass, const String& role,
                                        const String& resultRole, Boolean includeQualifiers, Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) {
    return impl_->call<Objects>("Associators", nameSpace, [&](RequestEncoder& request) {
        addAssociators(request, objectName, assocClass, resultClass, role, resultRole);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMObjectPath> CIMClient::associatorNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                                const CIMName& assocClass, const CIMName& resultClass,
                                                const String& role, const String& resultRole) {
    return impl_->call<ObjectPaths>("AssociatorNames", nameSpace, [&](RequestEncoder& request) {
        addAssociators(request, objectName, assocClass, resultClass, role, resultRole);
    });
}

Array<CIMObject> CIMClient::references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                       const CIMName& resultClass, const String& role, Boolean includeQualifiers,
                                       Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return impl_->call<Objects>("References", nameSpace, [&](RequestEncoder& request) {
        addReferences(request, objectName, resultClass, role);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMObjectPath> CIMClient::referenceNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                               const CIMName& resultClass, const String& role) {
    return impl_->call<ObjectPaths>("ReferenceNames", nameSpace, [&](RequestEncoder& request) {
        addReferences(request, objectName, resultClass, role);
    });
}

CIMValue CIMClient::getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                                const CIMName& propertyName) {
    return impl_->call<Value>("GetProperty", nameSpace, [&](RequestEncoder& request) {
        request.addInstanceName("InstanceName", instanceName);
        request.addString("PropertyName", propertyName.getString().view());
    });
}

Array<CIMObject> CIMClient::execQuery(const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                      const String& query) {
    return impl_->call<Objects>("ExecQuery", nameSpace, [&](RequestEncoder& request) {
        request.addString("QueryLanguage", queryLanguage.view());
        request.addString("Query", query.view());
    });
}

CIMQualifierDecl CIMClient::getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName) {
    return impl_->call<QualifierDecls<Single>>("GetQualifier", nameSpace, [&](RequestEncoder& request) {
        request.addString("QualifierName", qualifierName.getString().view());
    });
}

Array<CIMQualifierDecl> CIMClient::enumerateQualifiers(const CIMNamespaceName& nameSpace) {
    return impl_->call<QualifierDecls<Many>>("EnumerateQualifiers", nameSpace, [](RequestEncoder& /*request*/) {});
}

// Pulled enumerations.

Array<CIMInstance> CIMClient::openEnumerateInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                     const CIMNamespaceName& nameSpace, const CIMName& className,
                                                     Boolean deepInheritance, Boolean includeClassOrigin,
                                                     const CIMPropertyList& propertyList,
                                                     const String& filterQueryLanguage, const String& filterQuery,
                                                     const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                     Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenEnumerateInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openEnumerateInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                           const CIMNamespaceName& nameSpace, const CIMName& className,
                                                           const String& filterQueryLanguage, const String& filterQuery,
                                                           const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                           Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenEnumerateInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openReferenceInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                     const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                                     const CIMName& resultClass, const String& role,
                                                     Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                                                     const String& filterQueryLanguage, const String& filterQuery,
                                                     const Uint32Arg& operationTimeout, Boolean continueOnError,
                                                     Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, CIMName(), resultClass, role, String::EMPTY);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenReferenceInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openReferenceInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                           const CIMNamespaceName& nameSpace,
                                                           const CIMObjectPath& objectName, const CIMName& resultClass,
                                                           const String& role, const String& filterQueryLanguage,
                                                           const String& filterQuery, const Uint32Arg& operationTimeout,
                                                           Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, CIMName(), resultClass, role, String::EMPTY);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenReferenceInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openAssociatorInstances(
    CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
    const CIMObjectPath& objectName, const CIMName& assocClass, const CIMName& resultClass, const String& role,
    const String& resultRole, Boolean includeClassOrigin, const CIMPropertyList& propertyList,
    const String& filterQueryLanguage, const String& filterQuery, const Uint32Arg& operationTimeout,
    Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, assocClass, resultClass, role, resultRole);
        request.addBoolean("IncludeClassOrigin", includeClassOrigin);
        request.addPropertyList("PropertyList", propertyList);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<NamedInstances>("OpenAssociatorInstances", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMObjectPath> CIMClient::openAssociatorInstancePaths(
    CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
    const CIMObjectPath& objectName, const CIMName& assocClass, const CIMName& resultClass, const String& role,
    const String& resultRole, const String& filterQueryLanguage, const String& filterQuery,
    const Uint32Arg& operationTimeout, Boolean continueOnError, Uint32 maxObjectCount) {
    const auto addParameters = [&](RequestEncoder& request) {
        addSource(request, objectName, assocClass, resultClass, role, resultRole);
        addFilter(request, filterQueryLanguage, filterQuery);
        addOpening(request, operationTimeout, continueOnError, maxObjectCount);
    };
    return impl_->open<InstancePaths>("OpenAssociatorInstancePaths", context, endOfSequence, nameSpace, addParameters)
        .objects;
}

Array<CIMInstance> CIMClient::openQueryInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                 const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                                 const String& query, CIMClass& queryResultClass,
                                                 Boolean returnQueryResultClass, const Uint32Arg& operationTimeout,
                                                 Boolean continueOnError, Uint32 maxObjectCount) {
    auto portion = impl_->open<Instances<Many>>(
        "OpenQueryInstances", context, endOfSequence, nameSpace, [&](RequestEncoder& request) {
            addFilter(request, queryLanguage, query);
            request.addBoolean("ReturnQueryResultClass", returnQueryResultClass);
            addOpening(request, operationTimeout, continueOnError, maxObjectCount);
        });
    if (returnQueryResultClass && portion.queryResultClass) {
        queryResultClass = *portion.queryResultClass;
    }
    return portion.objects;
}

Array<CIMInstance> CIMClient::pullInstancesWithPath(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                    Uint32 maxObjectCount) {
    return impl_->pull<NamedInstances>("PullInstancesWithPath", context, endOfSequence, maxObjectCount);
}

Array<CIMObjectPath> CIMClient::pullInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                  Uint32 maxObjectCount) {
    return impl_->pull<InstancePaths>("PullInstancePaths", context, endOfSequence, maxObjectCount);
}

Array<CIMInstance> CIMClient::pullInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                            Uint32 maxObjectCount) {
    return impl_->pull<Instances<Many>>("PullInstances", context, endOfSequence, maxObjectCount);
}

void CIMClient::closeEnumeration(CIMEnumerationContext& context) {
    impl_->ask<Nothing>("CloseEnumeration", context, [](RequestEncoder& /*request*/) {});
    context.clear();
}

Uint64Arg CIMClient::enumerationCount(CIMEnumerationContext& context) {
    return impl_->ask<Number>("EnumerationCount", context, [](RequestEncoder& /*request*/) {});
}

Boolean CIMClient::hasPulledEnumerations(const CIMNamespaceName& nameSpace) {
    try {
        impl_->call<InstanceNames>("OpenEnumerateInstancePaths", nameSpace, [](RequestEncoder& request) {
            request.addClassName("ClassName", CIMName("CIMHTTP_NoSuchClass"));
        });
    } catch (const CIMException& error) {
        switch (error.getCode()) {
        case CIM_ERR_INVALID_CLASS:
        case CIM_ERR_NOT_FOUND:
            return true;
        case CIM_ERR_NOT_SUPPORTED:
        case CIM_ERR_FAILED: // with which older servers refuse what they do not know
            return false;
        default:
            throw;
        }
    } catch (const CIMClientHTTPErrorException& error) {
        if (error.getCode() != kNotImplemented) {
            throw;
        }
        return false;
    }
    return true;
}

Boolean InstanceStream::enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                           const Taker& take, Boolean deepInheritance, Boolean localOnly,
                                           Boolean includeQualifiers, Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList) {
    const auto addParameters = [&](RequestEncoder& request) {
        addInstancesOf(request, className, deepInheritance, localOnly, includeQualifiers, includeClassOrigin,
                       propertyList);
    };
    return client_.impl_->handOver("EnumerateInstances", nameSpace, addParameters, take);
}

} // namespace Pegasus
