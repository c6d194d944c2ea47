#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class TCimHTTPClass;

/// The names of an instance's properties and their declarations, looked at once for many instances, which mostly are of
/// one class and have the same properties in the same order.
class InstanceShape {
  public:
    struct TName {
        Pegasus::CIMName given;
        std::string normalized;                                ///< empty for a name that the host cannot keep
        bool comesAgain = false;                               ///< a later property has the same name
        boost::shared_ptr<const ICIMPropertyDecl> declaration; ///< empty where the class has none
    };

    /// Takes over the names of an instance of the class.
    void Fit(Pegasus::CIMInstance& instance, const boost::shared_ptr<const TCimHTTPClass>& cls);

    /// The properties of the instance that was fitted last, until Clear().
    const std::vector<Pegasus::CIMProperty>& Properties() const { return properties_; }
    void Clear() { properties_.clear(); }

    /// The name of the property at this place.
    const TName& NameAt(std::size_t place) const { return names_[place]; }

  private:
    void TakeProperties(Pegasus::CIMInstance& instance);
    bool FitNames();
    void MarkDoubled();
    void FindDeclarations();

    std::vector<Pegasus::CIMProperty> properties_; // a handle of one is made once: that counts references
    std::vector<TName> names_;
    boost::shared_ptr<const TCimHTTPClass> class_;
    std::uint64_t revision_ = 0; // of the class's properties
};

} // namespace NQORVYX20
