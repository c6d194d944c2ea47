#pragma once

#include "Failure.h"
#include "access/RemoteModel.h"
#include "output/ObjectGraph.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cimhttp {

/// Follows the associations of an object, and of what they lead to, the nearest first. Each object is asked once, so
/// that cycles come to an end.
class GraphWalk {
  public:
    /// More associations than that are not followed.
    static constexpr std::size_t kMostEdges = 10000;

    /// The associations of the object with this path; throws Failure.
    using Links = std::function<std::vector<RemoteLink>(const std::string& path)>;

    explicit GraphWalk(Links links) : links_(std::move(links)) {}

    /// Follows as many associations in a row as `depth` says. Throws what asking for the first object throws, and what
    /// would fail for every other, too.
    void Run(const NQORVYX20::TCIMReference& start, std::size_t depth);

    const ObjectGraph& Graph() const { return graph_; }

    /// What was left out: one line, empty for nothing.
    std::string Remark() const;

  private:
    bool MayAsk(const ObjectGraph::Object& object, std::size_t depth) const;
    void Ask(std::size_t number);
    void Follow(std::size_t number, const RemoteLink& link);
    void Connect(std::size_t number, const RemoteLink& link, const std::string& role, const RemoteLink::End& end);
    std::size_t AddObject(const NQORVYX20::TCIMReference& path, std::size_t depth);

    Links links_;
    ObjectGraph graph_;
    std::map<std::string, std::size_t> numbers_; // of the objects, by identity
    std::set<std::string> linksSeen_;            // by identity
    bool isCut_ = false;
    std::size_t failureCount_ = 0;
    std::string firstFailure_;
};

} // namespace cimhttp
