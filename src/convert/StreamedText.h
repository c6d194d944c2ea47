#pragma once

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
        if (!fStream) {
            fStream.emplace();
        }
        fStream->str(std::string());
        *fStream << text;
        return fStream->str();
    }

  private:
    std::optional<std::ostringstream> fStream;
};

} // namespace NQORVYX20
