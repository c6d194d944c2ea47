#pragma once

#include "convert/RemoteText.h"

#include <Pegasus/Client/CIMClient.h>

#include <optional>
#include <sstream>
#include <string>

namespace NQORVYX20 {

/// The texts that the remote library's stream output gives strings. One stream writes them all, since making a stream
/// costs more than writing a text; it is made for the first.
class StreamedText {
  public:
    std::string operator()(const Pegasus::String& text) {
#if __has_include(<Pegasus/Client/ClientLimits.h>)
        return ToStdString(text); // which the stream output of the project's own library is
#else
        if (!stream_) {
            stream_.emplace();
        }
        stream_->str(std::string());
        *stream_ << text;
        return stream_->str();
#endif
    }

#if !__has_include(<Pegasus/Client/ClientLimits.h>)
  private:
    std::optional<std::ostringstream> stream_;
#endif
};

} // namespace NQORVYX20
