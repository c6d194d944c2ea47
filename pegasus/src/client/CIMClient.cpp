#include <Pegasus/Client/CIMClient.h>

#include "cimxml/RequestEncoder.h"
#include "cimxml/ResponseDecoder.h"
#include "http/CimHeaders.h"
#include "http/HttpConnection.h"

#include <chrono>
#include <optional>
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

/// Keeps the one object that an operation returns.
template <typename Object>
class Single : public ReturnValueSink {
  public:
    Object take(const char* method) && {
        if (!found_) {
            throw CIMClientResponseException(String(method) + String(": the answer holds no object"));
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

class SingleClass : public Single<CIMClass> {
    void onClass(const CIMClass& cimClass) override { keep(cimClass); }
};

class SingleQualifierDecl : public Single<CIMQualifierDecl> {
    void onQualifierDecl(const CIMQualifierDecl& declaration) override { keep(declaration); }
};

struct ClassNames : ReturnValueSink {
    void onClassName(const CIMName& name) override { names.append(name); }
    Array<CIMName> names;
};

struct Instances : ReturnValueSink {
    void onInstance(const CIMInstance& instance) override { instances.append(instance); }
    Array<CIMInstance> instances;
};

} // namespace

class CIMClient::Impl {
  public:
    Uint32 timeout = kDefaultTimeout;

    void connect(const String& host, Uint32 port, std::optional<SSLContext> tls, const String& user,
                 const String& password) {
        if (connection_) {
            throw AlreadyConnectedException();
        }
        connection_.emplace(http::Endpoint(toText(host), port), std::move(tls),
                            http::Credentials{toText(user), toText(password)});
        try {
            connection_->open(deadline());
        } catch (...) {
            connection_.reset();
            throw;
        }
    }

    void disconnect() { connection_.reset(); }

    /// One operation: `addParameters` completes the request, the sink gets the objects of the return value.
    template <typename AddParameters>
    void call(const char* method, const CIMNamespaceName& nameSpace, AddParameters addParameters,
              ReturnValueSink& sink) {
        if (!connection_) {
            throw NotConnectedException();
        }
        const std::string messageId = std::to_string(++lastMessageId_);
        RequestEncoder request(messageId, method, nameSpace);
        addParameters(request);
        ResponseDecoder decoder(messageId, method, sink);
        try {
            exchange(http::makeCimRequest(method, nameSpace.getString().view(), request.finish()), decoder);
        } catch (const CIMException&) {
            throw; // a good answer, though not the one hoped for
        } catch (...) {
            connection_->close();
            throw;
        }
    }

  private:
    http::Deadline deadline() const { return http::Deadline(std::chrono::milliseconds(timeout)); }

    void exchange(const http::HttpRequest& request, ResponseDecoder& decoder) {
        const http::Deadline end = deadline();
        http::checkCimAnswer(connection_->post(request, end), connection_->endpoint());
        const http::HttpFields& trailers =
            connection_->readBody([&](std::string_view part) { decoder.feed(part); }, end);
        http::checkCimTrailers(trailers, connection_->endpoint());
        decoder.finish();
    }

    std::optional<http::HttpConnection> connection_;
    Uint64 lastMessageId_ = 0;
};

CIMClient::CIMClient() : impl_(std::make_unique<Impl>()) {}

CIMClient::~CIMClient() = default;

void CIMClient::setTimeout(Uint32 timeoutMilliseconds) { impl_->timeout = timeoutMilliseconds; }

Uint32 CIMClient::getTimeout() const { return impl_->timeout; }

void CIMClient::connect(const String& host, Uint32 port, const String& user, const String& password) {
    impl_->connect(host, port, std::nullopt, user, password);
}

void CIMClient::connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                        const String& password) {
    impl_->connect(host, port, sslContext, user, password);
}

void CIMClient::disconnect() { impl_->disconnect(); }

CIMClass CIMClient::getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly,
                             Boolean includeQualifiers, Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList) {
    SingleClass result;
    impl_->call(
        "GetClass", nameSpace,
        [&](RequestEncoder& request) {
            request.addClassName("ClassName", className);
            request.addBoolean("LocalOnly", localOnly);
            request.addBoolean("IncludeQualifiers", includeQualifiers);
            request.addBoolean("IncludeClassOrigin", includeClassOrigin);
            request.addPropertyList("PropertyList", propertyList);
        },
        result);
    return std::move(result).take("GetClass");
}

CIMQualifierDecl CIMClient::getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName) {
    SingleQualifierDecl result;
    impl_->call(
        "GetQualifier", nameSpace,
        [&](RequestEncoder& request) { request.addString("QualifierName", qualifierName.getString().view()); }, result);
    return std::move(result).take("GetQualifier");
}

Array<CIMName> CIMClient::enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className,
                                              Boolean deepInheritance) {
    ClassNames result;
    impl_->call(
        "EnumerateClassNames", nameSpace,
        [&](RequestEncoder& request) {
            request.addClassName("ClassName", className);
            request.addBoolean("DeepInheritance", deepInheritance);
        },
        result);
    return result.names;
}

Array<CIMInstance> CIMClient::enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                                 Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    Instances result;
    impl_->call(
        "EnumerateInstances", nameSpace,
        [&](RequestEncoder& request) {
            request.addClassName("ClassName", className);
            request.addBoolean("LocalOnly", localOnly);
            request.addBoolean("DeepInheritance", deepInheritance);
            request.addBoolean("IncludeQualifiers", includeQualifiers);
            request.addBoolean("IncludeClassOrigin", includeClassOrigin);
            request.addPropertyList("PropertyList", propertyList);
        },
        result);
    return result.instances;
}

} // namespace Pegasus
