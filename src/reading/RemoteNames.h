#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class TCimHTTPClass;

/// The property names of many instances of a class, which mostly have the same properties in the same order: the name
/// at a place is normalised, and its declaration looked up, only when it differs in more than case from the one before.
/// The class gets no declarations meanwhile.
class RemoteNames {
  public:
    struct TName {
        Pegasus::CIMName given;
        std::string normalized;
        boost::shared_ptr<const ICIMPropertyDecl> declaration; ///< empty where the class has none
    };

    explicit RemoteNames(const TCimHTTPClass& cls) : class_(cls) {}

    /// The name at this place of an instance. The reference is good until the next call. Throws TVYXException
    /// eInvalidName for an invalid name.
    const TName& At(Pegasus::Uint32 place, const Pegasus::CIMName& name);

  private:
    const TCimHTTPClass& class_;
    std::vector<TName> names_;
};

} // namespace NQORVYX20
