#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace cimhttp {

/// Takes text about one of several servers piece by piece, and passes it on in whole lines that name the server.
class ServerLines {
  public:
    enum class Form {
        kText,    ///< `rack1: the line`; an empty line stays one
        kRemarks, ///< `cimhttp: the line` becomes `cimhttp: rack1: the line`
        kJson     ///< each line is an object with members, which gets the name as its first one, `server`
    };

    using Sink = std::function<void(std::string_view line)>;

    /// The sink gets each line with its end.
    ServerLines(const std::string& server, Form form, Sink sink);

    void Append(std::string_view text);

    /// Passes on a line that has no end yet.
    void End();

  private:
    void Pass(std::string_view line) const;

    std::string name_; ///< safe to show, or JSON
    Form form_;
    Sink sink_;
    std::string begun_; ///< a line without its end
};

} // namespace cimhttp
