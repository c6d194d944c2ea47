#pragma once

#include "report/EmbeddedJson.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

/// What a page says beside the collection.
struct ReportFacts {
    /// An instance that tells of a fault.
    struct Fault {
        std::string state; ///< `warning` or `critical`
        std::string className;
        std::string path; ///< as the collection has it
        std::string name; ///< for people
        std::string text; ///< what it tells
    };

    std::string collected;   ///< when
    std::string program;     ///< which one wrote it, with its version
    std::size_t telling = 0; ///< how many instances tell their health
    std::vector<Fault> faults;
    std::vector<std::string> losses; ///< what could not be read
};

/// A page for a browser that has a collection in it, and needs no server: the parts are the files of this folder. Its
/// policy (Content-Security-Policy) lets nothing but its own script and style take effect.
class ReportPage {
  public:
    /// Writes the beginning.
    explicit ReportPage(std::ostream& output);

    /// Writes a piece of the collection's JSON, as WriteJson() makes it.
    void Append(std::string_view json);

    /// Writes the rest; the last call.
    void End(const ReportFacts& facts);

  private:
    std::ostream& output_;
    std::string nonce_;
    EmbeddedJson document_;
};

} // namespace cimhttp
