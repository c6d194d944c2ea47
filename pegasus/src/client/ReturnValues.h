#pragma once

#include "cimxml/ResponseDecoder.h"
#include "cimxml/ScalarDecoder.h"

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/InstanceStream.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/UintArgs.h>

#include <exception>
#include <optional>
#include <utility>

// What the operations of a client return: objects of one kind, one of them or many.

namespace Pegasus::client {

using cimxml::ReturnValueSink;

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

[[noreturn]] inline void throwWithoutPath(const CIMInstance& instance) {
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

} // namespace Pegasus::client
