#pragma once

#include "browse/BrowsedServers.h"
#include "browse/OpenReadings.h"
#include "web/WebRequest.h"

#include <string>
#include <vector>

namespace cimhttp {

/// Answers what the pages' scripts ask, in JSON: objects, which may have the member `losses`, what could not be read,
/// or instead `error` and `kind`. docs/browse.md lists the questions. For several threads.
class BrowserApi {
  public:
    /// All must outlive the object.
    BrowserApi(const Plugin& plugin, const Options& options);

    /// `parts` are those of the path behind `/api`.
    WebAnswer Answer(const std::vector<std::string>& parts, const WebRequest& request);

    /// To be called now and then.
    void EndIdle() { readings_.EndIdle(); }

    const BrowsedServers& Servers() const { return servers_; }

  private:
    std::string Found(const std::vector<std::string>& parts, const WebRequest& request);
    std::string AnswerAbout(const std::string& server, const std::string& question, const WebRequest& request);
    std::string Told(const std::string& server, const std::string& order, const WebRequest& request);
    std::string List() const;
    std::string Add(const WebRequest& request);
    std::string InstancesOf(const std::string& server, const WebRequest& request);

    const Options& options_;
    BrowsedServers servers_;
    OpenReadings readings_;
};

} // namespace cimhttp
