#pragma once

#include "connection/Session.h"
#include "output/ClassTree.h"
#include "text/Names.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Counts the instances of classes, each for its own class, and reads nothing but their names. A request for a class
/// brings those of its subclasses, too, so that a class is asked for once at most, and only when none above it is; or
/// when the answer for that one was an error.
class InstanceCensus {
  public:
    struct Count {
        std::string name;
        std::optional<unsigned long long> instances; ///< nothing where they could not be counted
    };

    /// `isWanted` says of a name whether the class is to be counted. The session must outlive the census.
    InstanceCensus(Session& session, const ClassTree& tree, std::function<bool(const std::string&)> isWanted)
        : session_(session), tree_(tree), isWanted_(std::move(isWanted)) {}

    /// Asks the server. The classes that are wanted, in alphabetical order. Throws LoginFailure, and the failure of a
    /// server that twice running does not answer.
    std::vector<Count> Take();

    /// Why classes could not be counted, a text for each request.
    const std::vector<std::string>& Failures() const { return failures_; }

  private:
    /// What is known of the instances of a class and those below it.
    enum class State {
        kToCount, ///< nothing; or the answer for the class was an error, and those below it have to be asked for
        kCounted,
        kLost ///< there was no answer; those below it are not asked for, since each may take as long
    };

    State Visited(const std::string& name, State above);
    State CountBelow(const std::string& name);
    void Note(const Failure& failure);

    Session& session_;
    const ClassTree& tree_;
    std::function<bool(const std::string&)> isWanted_;
    ByName<Count> counts_;
    std::vector<std::string> failures_;
    bool hasLostServer_ = false; ///< the newest request was not answered
};

} // namespace cimhttp
