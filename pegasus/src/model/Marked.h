#pragma once

#include <Pegasus/Client/FailureMarks.h>

namespace Pegasus::detail {

/// An exception of the API that bears a mark.
template <class Exception, class Mark>
class Marked final : public Exception, public Mark {
  public:
    using Exception::Exception;
};

} // namespace Pegasus::detail
