#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

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

    /// The name of the property at this place of the instance that was fitted last.
    const TName& NameAt(Pegasus::Uint32 place) const { return names_[place]; }

  private:
    bool FitNames(Pegasus::CIMInstance& instance);
    void MarkDoubled();
    void FindDeclarations();

    std::vector<TName> names_;
    boost::shared_ptr<const TCimHTTPClass> class_;
    std::uint64_t revision_ = 0; // of the class's properties
};

} // namespace NQORVYX20
