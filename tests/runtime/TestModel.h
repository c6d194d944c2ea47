#pragma once

#include "host/ICIMClass.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/INamespaceProvider.h"
#include "host/TInmemInstance.h"
#include "host/TVYXException.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

// A small object model of the host, enough to keep instances in: a namespace, classes with declarations, keys,
// instances and association classes. Whatever the instances of the runtime do not use throws eNotSupported.
namespace NQORVYX20::testingModel {

[[noreturn]] inline void NotSupported() { throw TVYXException(TVYXStatusCode::eNotSupported); }

inline std::string Lower(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return name;
}

/// The qualifiers of an element that has none.
template <typename TBase>
class TUnqualified : public TBase {
  public:
    void AddQualifier(boost::shared_ptr<ICIMQualifier>, TCIMContext) override { NotSupported(); }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const>, const TCIMValue&,
                                                       TCIMContext) const override {
        NotSupported();
    }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const>, const TCIMValue&,
                                                       ICIMQualifierDecl::EFlavor, TCIMContext) const override {
        NotSupported();
    }
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string&, TCIMContext) const override { NotSupported(); }
    void EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>&,
                             TCIMContext) const override {}
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string&, bool& found, TCIMContext) const override {
        found = false;
        return {};
    }
};

class TTestPropertyDecl : public TUnqualified<ICIMPropertyDecl> {
  public:
    TTestPropertyDecl(std::string name, TCIMValue defaultValue)
        : name_(std::move(name)), default_(std::move(defaultValue)) {}

    void Validate(TCIMContext) const override {}
    void AddToClass(TCIMContext) override { NotSupported(); }
    void RemoveFromClass(TCIMContext) override { NotSupported(); }
    const std::string& GetName(TCIMContext) const override { return name_; }
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext) const override { NotSupported(); }
    TCIMValue::TCIMType GetType(TCIMContext) const override { return default_.GetType(); }
    bool IsArray(TCIMContext) const override { return default_.IsArray(); }
    const TCIMValue& GetDefaultValue(TCIMContext) const override { return default_; }
    void SetDefaultValue(const TCIMValue& value, TCIMContext) override { default_ = value; }
    bool operator==(ICIMPropertyDecl& other) const override { return Lower(name_) == Lower(other.GetName({})); }
    bool operator<(ICIMPropertyDecl& other) const override { return Lower(name_) < Lower(other.GetName({})); }
    ICIMPropertyDecl& operator=(const ICIMPropertyDecl&) override { NotSupported(); }

  private:
    std::string name_;
    TCIMValue default_;
};

class TTestInstance : public TInmemInstance {
  public:
    using TInmemInstance::TInmemInstance;
    using TInmemInstance::operator=;

    void AddToNamespace(TCIMContext context) override { GetClass(context)->AddInstance(shared_from_this()); }
};

class TTestClass : public TUnqualified<ICIMClass>, public boost::enable_shared_from_this<TTestClass> {
  public:
    TTestClass(std::string name, boost::shared_ptr<ICIMNamespace> nameSpace, boost::shared_ptr<TTestClass> superClass)
        : name_(std::move(name)), namespace_(nameSpace), superClass_(superClass) {}

    /// Declares a property, also a key.
    void Declare(const std::string& name, const TCIMValue& defaultValue, bool isKey = false) {
        declarations_[Lower(name)] = boost::make_shared<TTestPropertyDecl>(name, defaultValue);
        if (isKey) {
            keys_.push_back(name);
        }
    }
    void Undeclare(const std::string& name) { declarations_.erase(Lower(name)); }

    /// A new instance, filed.
    boost::shared_ptr<TTestInstance> Add(const TCIMContext& values) {
        auto instance = boost::make_shared<TTestInstance>(shared_from_this(), 1);
        for (const auto& [name, value] : values) {
            instance->SetPropertyValue(name, value, {});
        }
        instance->AddToNamespace({});
        return instance;
    }

    const std::vector<boost::shared_ptr<ICIMInstance>>& Instances() const { return instances_; }

    void Validate(TCIMContext) const override {}
    void AddToNamespace(TCIMContext) override { NotSupported(); }
    void RemoveFromNamespace(TCIMContext) override { NotSupported(); }
    void ModifyClass(boost::shared_ptr<ICIMClass>, TCIMContext) override { NotSupported(); }
    const std::string& GetName(TCIMContext) const override { return name_; }
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext) const override { return namespace_.lock(); }
    bool IsAssociation(TCIMContext) const override { return false; }
    bool IsAbstract(TCIMContext) const override { return false; }
    bool IsRootClass(TCIMContext) const override { return false; }
    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext) const override { return superClass_; }
    void EnumerateSubClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>&, bool, TCIMContext) override {
        NotSupported();
    }
    bool IsSubclassOf(boost::shared_ptr<ICIMClass const> other, TCIMContext context) const override {
        return other->GetName(context) == name_ || (superClass_ && superClass_->IsSubclassOf(other, context));
    }
    void EnumerateAssociatedClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>&, const std::string&,
                                    const std::string&, const std::string&, const std::string&, TCIMContext) override {
        NotSupported();
    }
    void EnumerateAssociationClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                     const std::string& resultClass, const std::string& role,
                                     TCIMContext context) override {
        for (const auto& association : associations_) {
            const bool admitted = resultClass.empty() || Lower(resultClass) == Lower(association->GetName(context));
            if (admitted && (role.empty() || association->GetPropertyDecl(role, context)) && !callback(association)) {
                return;
            }
        }
    }
    void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback, TCIMContext) const override {
        for (const std::string& key : keys_) {
            if (!callback(&key)) {
                return;
            }
        }
    }
    boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string&, const TCIMValue&,
                                                             TCIMContext) override {
        NotSupported();
    }
    boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name, TCIMContext) const override {
        const auto found = declarations_.find(Lower(name));
        return found == declarations_.end() ? boost::shared_ptr<ICIMPropertyDecl>() : found->second;
    }
    void EnumeratePropertyDecls(const boost::function<bool(boost::shared_ptr<ICIMPropertyDecl>)>& callback,
                                TCIMContext) const override {
        for (const auto& [name, declaration] : declarations_) {
            if (!callback(declaration)) {
                return;
            }
        }
    }
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string&, TCIMContext) override { NotSupported(); }
    void SetPropertyValue(const std::string&, const TCIMValue&, TCIMContext) override { NotSupported(); }
    void EnumerateStaticProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>&,
                                   TCIMContext) override {}
    boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext) override {
        return boost::make_shared<TTestInstance>(shared_from_this(), 1);
    }
    void EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool,
                            TCIMContext) override {
        for (const auto& instance : instances_) {
            if (!callback(instance)) {
                return;
            }
        }
    }
    boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string&, TCIMValue::TCIMType,
                                                         TCIMContext) override {
        NotSupported();
    }
    boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string&, TCIMContext) const override { return {}; }
    void EnumerateMethodDecls(const boost::function<bool(boost::shared_ptr<ICIMMethodDecl>)>&,
                              TCIMContext) const override {}
    TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext) override {
        parameters["invoked"] = name;
        return 7;
    }
    bool operator==(ICIMClass& other) const override { return name_ == other.GetName({}); }
    bool operator<(ICIMClass& other) const override { return name_ < other.GetName({}); }
    ICIMClass& operator=(const ICIMClass&) override { NotSupported(); }
    void AddChildClass(boost::shared_ptr<ICIMClass>) override { NotSupported(); }
    void RemoveChildClass(boost::shared_ptr<ICIMClass>) override { NotSupported(); }
    void AddInstance(boost::shared_ptr<ICIMInstance> instance) override { instances_.push_back(instance); }
    void RemoveInstance(boost::shared_ptr<ICIMInstance> instance) override {
        instances_.erase(std::remove(instances_.begin(), instances_.end(), instance), instances_.end());
    }
    void AddAssociationClass(boost::shared_ptr<ICIMClass> association) override {
        associations_.push_back(association);
    }
    void RemoveAssociationClass(boost::shared_ptr<ICIMClass>) override { NotSupported(); }
    void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl>) override { NotSupported(); }
    void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl>) override { NotSupported(); }
    void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl>) override { NotSupported(); }
    void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl>) override { NotSupported(); }

  private:
    std::string name_;
    boost::weak_ptr<ICIMNamespace> namespace_;
    boost::shared_ptr<TTestClass> superClass_;
    std::map<std::string, boost::shared_ptr<ICIMPropertyDecl>> declarations_;
    std::vector<std::string> keys_;
    std::vector<boost::shared_ptr<ICIMInstance>> instances_;
    std::vector<boost::shared_ptr<ICIMClass>> associations_;
};

class TTestNamespace : public ICIMNamespace, public boost::enable_shared_from_this<TTestNamespace> {
  public:
    boost::shared_ptr<TTestClass> AddClass(const std::string& name, boost::shared_ptr<TTestClass> superClass = {}) {
        auto cls = boost::make_shared<TTestClass>(name, shared_from_this(), superClass);
        classes_[Lower(name)] = cls;
        return cls;
    }
    void RemoveClass(const std::string& name) { classes_.erase(Lower(name)); }

    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext) const override { return {}; }
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override { NotSupported(); }
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override { NotSupported(); }
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string&, boost::shared_ptr<ICIMClass>, TCIMContext) override {
        NotSupported();
    }
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext) override {
        const auto found = classes_.find(Lower(name));
        return found == classes_.end() ? boost::shared_ptr<TTestClass>() : found->second;
    }
    void EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>&, TCIMContext) override {
        NotSupported();
    }
    void EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>&, TCIMContext) override {
        NotSupported();
    }
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string&, const TCIMValue&,
                                                               ICIMQualifierDecl::EScope, ICIMQualifierDecl::EFlavor,
                                                               TCIMContext) override {
        NotSupported();
    }
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string&, TCIMContext) const override { return {}; }
    void EnumerateQualifierDecls(const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>&,
                                 TCIMContext) const override {}
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter>,
                   const boost::function<bool(boost::shared_ptr<ICIMInstance>)>&, TCIMContext) override {
        NotSupported();
    }
    /// Unlike a class lookup, throws eNotFound when the class of the reference is unknown.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) const override {
        const auto found = classes_.find(Lower(reference.GetClassName()));
        if (found == classes_.end()) {
            throw TVYXException(TVYXStatusCode::eNotFound);
        }
        for (const auto& instance : found->second->Instances()) {
            if (instance->BuildPath(context) == reference) {
                return instance;
            }
        }
        return {};
    }
    void DeleteInstance(const TCIMReference&, TCIMContext) override { NotSupported(); }
    void ModifyInstance(const TCIMReference&, TCIMContext, TCIMContext) override { NotSupported(); }
    void ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>&, std::string&, std::string&,
                      TCIMContext) override {
        NotSupported();
    }
    void ClearInstances() override { NotSupported(); }

  private:
    std::map<std::string, boost::shared_ptr<TTestClass>> classes_;
};

} // namespace NQORVYX20::testingModel
