#pragma once

#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Common/String.h>

#include <utility>

namespace Pegasus::errors {

/// An exception of the API that bears a mark.
template <class Exception, class Mark>
class Marked final : public Exception, public Mark {
  public:
    using Exception::Exception;
    /// For a mark that says more than that it is there.
    Marked(const String& message, Mark mark) : Exception(message), Mark(std::move(mark)) {}
};

} // namespace Pegasus::errors
