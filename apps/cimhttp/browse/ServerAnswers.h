#pragma once

#include "cimhttp/DisplayTexts.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

class BrowsedServer;
class JsonObject;
class Session;

/// Answers what pages ask about one server, in JSON; what could not be read goes to the losses. Everything throws
/// Failure.
class ServerAnswers {
  public:
    /// `form` is how texts for people are wanted. The server must outlive the object.
    ServerAnswers(BrowsedServer& server, const NQORVYX20::DisplayForm& form) : server_(server), form_(form) {}

    /// Whether it can be reached, how, and who verifies it. Does not throw for one that cannot.
    JsonObject State();

    /// All classes; as they were when they were first asked for, or with `isFresh` as they are now.
    JsonObject Classes(bool isFresh);

    /// How many instances there are of a class and of each one below it; of all classes for an empty name.
    JsonObject Counts(const std::string& className);

    JsonObject Class(const std::string& name);
    JsonObject Instance(const std::string& path);
    JsonObject Related(const std::string& path, std::size_t depth);
    JsonObject Health();

    /// What could not be read of the answer.
    const std::vector<std::string>& Losses() const { return losses_; }

  private:
    void NoteIncidents(Session& session);

    BrowsedServer& server_;
    const NQORVYX20::DisplayForm form_;
    std::vector<std::string> losses_;
};

} // namespace cimhttp
