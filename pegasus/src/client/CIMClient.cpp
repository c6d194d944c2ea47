#include <Pegasus/Client/CIMClient.h>

#include "cimxml/Checkpoint.h"
#include "cimxml/Findings.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/RequestEncoder.h"
#include "cimxml/ResponseDecoder.h"
#include "http/CimHeaders.h"
#include "http/HttpConnection.h"
#include "http/TimeOut.h"
#include "model/Marked.h"
#include "model/OperationTypes.h"
#include "model/Unchecked.h"

#include <Pegasus/Client/ExchangeObserver.h>

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

class NamedInstances : public Many<CIMInstance> {
    void onInstance(const CIMInstance& instance) override { keep(instance); }
    void onInstanceAlone(const CIMInstance& instance) override {
        throw CIMClientResponseException(String("the answer holds an instance of ") +
                                         instance.getClassName().getString() + String(" without its path"));
    }
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

    http::AnswerRemarks remarks;
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

/// Adds the parameters that lead from an object over associations to others.
void addAssociators(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole) {
    request.addObjectName("ObjectName", objectName);
    request.addClassName("AssocClass", assocClass);
    request.addClassName("ResultClass", resultClass);
    addOptional(request, "Role", role);
    addOptional(request, "ResultRole", resultRole);
}

/// Adds the parameters that lead from an object to its associations.
void addReferences(RequestEncoder& request, const CIMObjectPath& objectName, const CIMName& resultClass,
                   const String& role) {
    addAssociators(request, objectName, CIMName(), resultClass, role, String::EMPTY);
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
    throw detail::Marked<OutOfMemoryException, ExceedsLimit>(outOfMemory);
}

/// Throws an exception of that type, with the same mark, whose message says which server and operation it is about.
template <typename Failure>
[[noreturn]] void throwAbout(const http::Endpoint& endpoint, const char* method, const Failure& failure) {
    const String message(endpoint.text() + ": " + method + ": " + toText(failure.getMessage()));
    if (dynamic_cast<const ExceedsLimit*>(&failure) != nullptr) {
        throw detail::Marked<Failure, ExceedsLimit>(message);
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

    void disconnect() { connection_.reset(); }

    /// One operation: `addParameters` completes the request, a Result takes the objects of the return value.
    template <typename Result, typename AddParameters>
    auto call(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        if (!connection_) {
            throw NotConnectedException();
        }
        return withinMemory([&] {
            return aboutOperation(connection_->endpoint(), method,
                                  [&] { return answerTo<Result>(method, nameSpace, addParameters); });
        });
    }

  private:
    template <typename Result, typename AddParameters>
    auto answerTo(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters) {
        const std::string messageId = std::to_string(++lastMessageId_);
        RequestEncoder request(messageId, method, nameSpace);
        addParameters(request);
        const http::Deadline end = deadline();
        const EndOfTime endOfTime(connection_->endpoint(), end);
        Result result;
        ResponseDecoder decoder(messageId, method, result, objects_, limits_, &endOfTime,
                                lenient ? &findings : nullptr);
        Measurement measurement(method);
        try {
            exchange(http::makeCimRequest(method, nameSpace.getString().view(), request.finish(), languages), decoder,
                     end, endOfTime, measurement);
        } catch (CIMException& error) { // a good answer, though not the one hoped for
            error.setContentLanguages(measurement.remarks.languages);
            report(measurement);
            throw;
        } catch (...) {
            connection_->close();
            throw;
        }
        report(measurement);
        return std::move(result).take();
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
        http::addRemarks(head.fields, measurement.remarks);
        const http::HttpFields& trailers = connection_->readBody(
            [&](std::string_view part) {
                endOfTime.pass();
                measurement.responseSize += part.size();
                decoder.feed(part);
            },
            end);
        http::addRemarks(trailers, measurement.remarks);
        http::checkCimTrailers(trailers, connection_->endpoint());
        decoder.finish();
    }

    void checkAnswer(const http::HttpHead& head, const http::Deadline& end) {
        try {
            http::checkCimAnswer(head, connection_->endpoint());
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
};

CIMClient::CIMClient() : impl_(std::make_unique<Impl>()) {}

CIMClient::~CIMClient() = default;

void CIMClient::setTimeout(Uint32 timeoutMilliseconds) { impl_->timeout = timeoutMilliseconds; }

Uint32 CIMClient::getTimeout() const { return impl_->timeout; }

void CIMClient::setLimits(const ClientLimits& limits) { impl_->setLimits(limits); }

const ClientLimits& CIMClient::getLimits() const { return impl_->limits(); }

void CIMClient::setLenient(Boolean lenient) { impl_->lenient = lenient; }

Boolean CIMClient::isLenient() const { return impl_->lenient; }

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
        request.addClassName("ClassName", className);
        request.addBoolean("LocalOnly", localOnly);
        request.addBoolean("DeepInheritance", deepInheritance);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
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
            return false;
        default:
            throw;
        }
    }
    return true;
}

} // namespace Pegasus
