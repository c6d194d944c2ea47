#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/Remarks.h"
#include "connection/PathReader.h"
#include "connection/ServerAssociations.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "output/GraphWriter.h"
#include "output/TreeLines.h"
#include "survey/GraphWalk.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

constexpr std::size_t kUsualDepth = 2;
constexpr std::size_t kGreatestDepth = 100;

void Write(const ObjectGraph& graph, OutputFormat format, const TreeLines& lines, std::ostream& output) {
    switch (format) {
    case OutputFormat::kJson:
        WriteGraphJson(graph, output);
        break;
    case OutputFormat::kDot:
        WriteDot(graph, output);
        break;
    default:
        WriteTree(graph, lines, output);
    }
}

/// `related PATH`: what is associated with an instance, over one association or several.
class RelatedCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "related",
            "Draw what is associated with an instance, over several associations",
            {{"PATH",
              R"(Its object path, such as 'CIM_Disk.Name="a",Number=3'; a namespace may precede it, 'root/interop:')",
              true, &path_}},
            {{"--depth", "N", "How many associations to follow in a row, 2 unless given", &depth_}},
            {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kDot},
            "cimhttp --host server.example related 'CIM_Disk.Name=\"a\",Number=3' -o dot | dot -Tsvg >related.svg",
            "After each object comes the class of the association that leads to it. An object to which several "
            "associations lead is shown where it is nearest; the other places say that it is shown elsewhere. At most "
            "10000 associations are followed."};
    }

    int Run(const CommandContext& context) override {
        const std::size_t depth = depth_.value_or(kUsualDepth);
        if (depth > kGreatestDepth) {
            throw Failure(Failure::kUsage, "the depth is " + std::to_string(kGreatestDepth) + " at most");
        }
        Session session = context.Connect();
        GraphWalk walk([&](const std::string& path) { return ServerAssociations(session).Links(path); });
        walk.Run(PathReader(session).ReferenceTo(path_), depth);
        if (walk.Graph().edges.empty()) {
            ServerInstances(session).CheckExists(path_);
        }
        Write(walk.Graph(), context.Format(*this), TreeLines::For(context.options.isUtf8), context.output);
        const int status = ReportRemark(walk.Remark(), context);
        return std::max(status, ReportIncidents(session.TakeIncidents(), context));
    }

  private:
    std::string path_;
    std::optional<std::size_t> depth_; ///< how many associations in a row; kUsualDepth if empty
};

} // namespace

std::unique_ptr<Command> MakeRelatedCommand() { return std::make_unique<RelatedCommand>(); }

} // namespace cimhttp
