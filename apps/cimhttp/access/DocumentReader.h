#pragma once

#include "provider/TCimHTTPRequestedClassParser.h"

#include <map>
#include <string>
#include <vector>

namespace cimhttp {

/// Reads a requested-class document for the program: as the plug-in's parser does, with more settings. A `network`
/// element with several attributes is an error, since the parser would take one of them only.
class DocumentReader : public TCimHTTPRequestedClassParser {
  public:
    void StartElement(const char* name, std::map<std::string, std::string>& attributes) override;
    void EndElement(const char* name) override;

    /// Remembers the first error, since later ones often only follow from it.
    void FatalError(const char* message) override;

    const std::string& Error() const { return error_; }

    /// The settings of the parser, and "ca", "namespace" and "port". The first one of a name counts.
    std::map<std::string, std::string> Settings();

  private:
    std::vector<bool> openElements_; // whether each is one of the program's own settings
    std::map<std::string, std::string> ownSettings_;
    std::string error_;
};

} // namespace cimhttp
