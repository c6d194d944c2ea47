#pragma once

#include <iosfwd>
#include <string>

namespace cimhttp {

struct Options;

/// What the command line says about the pages.
struct BrowserRequest {
    std::string listen; ///< empty: any free port of 127.0.0.1
    bool opens = true;  ///< whether a browser is opened where there is a desktop
};

/// The pages for people who look, in a library of its own: what it needs for that, other commands do not load.
class BrowserLibrary {
  public:
    virtual ~BrowserLibrary() = default;

    /// Serves until there is an interrupt, which ends the program. Throws Failure.
    virtual void Serve(const Options& options, const BrowserRequest& request, std::ostream& output,
                       std::ostream& errors) const = 0;
};

/// The one function that the library exports. The object lives as long as the process.
using BrowserFunction = const BrowserLibrary*();
constexpr const char* kBrowserFunction = "CimhttpBrowser";
constexpr const char* kBrowserLibrary = "libcimhttp-browser.so";

} // namespace cimhttp
