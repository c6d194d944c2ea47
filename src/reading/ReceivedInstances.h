#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <vector>

namespace NQORVYX20 {

class TCimHTTPClass;

/// An instance that has arrived, of which one of the namespace is still to be made.
struct ReceivedInstance {
    Pegasus::CIMInstance remote;
    boost::shared_ptr<TCimHTTPClass> cls;
};

using ReceivedInstances = std::vector<ReceivedInstance>;

} // namespace NQORVYX20
