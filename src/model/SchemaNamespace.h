#pragma once

#include "convert/NormalName.h"
#include "host/ICIMNamespace.h"
#include "model/NamedEntries.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class Reading;
class TCimHTTPClass;
class TCimHTTPQualifierDecl;

/// The classes and qualifier declarations of a namespace, which live as long as it does. Classes and declarations know
/// the namespace that they belong to as this.
class SchemaNamespace : public ICIMNamespace {
  public:
    /// The name of the class above all classes of the server.
    static constexpr const char* kRootClassName = "<root>";

    /// With `redefine`, a class or qualifier declaration replaces one of the same name; without, a taken name is
    /// refused.
    explicit SchemaNamespace(bool redefine);
    ~SchemaNamespace() override;
    SchemaNamespace(const SchemaNamespace&) = delete;
    SchemaNamespace& operator=(const SchemaNamespace&) = delete;

    /// Enters a class into the cache. A taken name is refused with TVYXException eAlreadyExists; when the namespace
    /// redefines, the new class replaces the old one and takes over its subclasses.
    void AddClass(boost::shared_ptr<TCimHTTPClass> cls);

    /// Does nothing: classes live as long as the namespace.
    void RemoveClass(boost::shared_ptr<TCimHTTPClass> cls);

    /// A class that the namespace holds, by the normal form of its name, or an empty pointer.
    boost::shared_ptr<TCimHTTPClass> FindClass(const std::string& key) const;

    /// The class above all others, which has no features. Empty at first.
    boost::shared_ptr<TCimHTTPClass> GetRootClass() const { return rootClass_; }

    /// Registers a qualifier declaration. A taken name is refused with TVYXException eAlreadyExists, or replaced when
    /// the namespace redefines.
    void AddQualifierDecl(boost::shared_ptr<TCimHTTPQualifierDecl> declaration);

    /// Never asks the server.
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name, TCIMContext context) const override;
    void EnumerateQualifierDecls(const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback,
                                 TCIMContext context) const override;

    /// How the objects of the namespace get what they hold. Empty at first.
    const boost::shared_ptr<Reading>& GetReading() const { return reading_; }

    /// What a name is to this namespace.
    NameRule Names() const { return names_; }

  protected:
    /// Before anything else: the reading says what a name is.
    void SetReading(boost::shared_ptr<Reading> reading);
    void SetRootClass(boost::shared_ptr<TCimHTTPClass> cls);

  private:
    boost::shared_ptr<Reading> reading_;
    NameRule names_ = NameRule::kHost;
    bool redefine_;
    NamedEntries<TCimHTTPQualifierDecl> qualifierDecls_;
    NamedEntries<TCimHTTPClass> classes_;
    boost::shared_ptr<TCimHTTPClass> rootClass_;
};

} // namespace NQORVYX20
