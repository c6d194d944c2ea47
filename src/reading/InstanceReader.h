#pragma once

#include "reading/InstanceShape.h"

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ReadingReport;
class TCimHTTPClass;
class TFaithfulInstance;
class TCIMReference;

/// Turns the instances of one answer into those of a faithful namespace. A value that the class does not allow is an
/// incident, and the other values are there.
class InstanceReader {
  public:
    explicit InstanceReader(ReadingReport& report) : report_(report) {}

    /// An instance of its class under its path.
    boost::shared_ptr<TFaithfulInstance> Read(Pegasus::CIMInstance& remote, const boost::shared_ptr<TCimHTTPClass>& cls,
                                              TCIMReference path);

  private:
    ReadingReport& report_;
    InstanceShape shape_;
};

} // namespace NQORVYX20
