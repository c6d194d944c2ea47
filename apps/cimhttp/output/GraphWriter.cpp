#include "output/GraphWriter.h"

#include "output/Json.h"
#include "output/ObjectGraph.h"
#include "output/ObjectLabels.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

namespace {

using Edge = ObjectGraph::Edge;
using State = ObjectGraph::State;

/// Draws the objects of a graph, each with what was found from it below itself.
class TreeWriter {
  public:
    TreeWriter(const ObjectGraph& graph, const TreeLines& drawn, std::ostream& output)
        : graph_(graph), drawn_(drawn), output_(output), labels_(LabelsOf(graph)), below_(graph.objects.size()) {
        for (const Edge& edge : graph.edges) {
            below_[edge.from].push_back(&edge);
        }
        for (auto& edges : below_) {
            std::stable_sort(edges.begin(), edges.end(),
                             [this](const Edge* one, const Edge* other) { return IsBefore(*one, *other); });
        }
    }

    void Write() {
        output_ << Printable(labels_.front()) << Remark(0) << '\n';
        WriteBelow(0, "");
    }

  private:
    bool IsBefore(const Edge& one, const Edge& other) const {
        const std::string& name = one.association.GetClassName();
        const std::string& otherName = other.association.GetClassName();
        return name == otherName ? labels_[one.to] < labels_[other.to] : name < otherName;
    }

    /// Not deeper than the graph, whose depth is limited.
    void WriteBelow(std::size_t object, const std::string& lines) {
        for (const Edge* edge : below_[object]) {
            const bool isLast = edge == below_[object].back();
            output_ << lines << (isLast ? drawn_.last : drawn_.branch) << Printable(labels_[edge->to]) << "  "
                    << Printable(edge->association.GetClassName())
                    << (edge->isFirst ? Remark(edge->to) : ", shown elsewhere") << '\n';
            if (edge->isFirst) {
                WriteBelow(edge->to, lines + (isLast ? TreeLines::kNothing : drawn_.passing));
            }
        }
    }

    std::string Remark(std::size_t object) const {
        switch (graph_.objects[object].state) {
        case State::kFailed:
            return ", not read";
        case State::kElsewhere:
            return ", on another server";
        default:
            return {};
        }
    }

    const ObjectGraph& graph_;
    const TreeLines& drawn_;
    std::ostream& output_;
    std::vector<std::string> labels_;
    std::vector<std::vector<const Edge*>> below_; // by the number of an object
};

const char* StateText(State state) {
    switch (state) {
    case State::kAsked:
        return "asked";
    case State::kNotAsked:
        return "not asked";
    case State::kFailed:
        return "failed";
    case State::kElsewhere:
        return "on another server";
    }
    return "";
}

std::string ObjectJson(const ObjectGraph::Object& object, const std::string& label) {
    return JsonObject()
        .Add("path", JsonText(object.path.GetPath()))
        .Add("class", JsonText(object.path.GetClassName()))
        .Add("label", JsonText(label))
        .Add("depth", std::to_string(object.depth))
        .Add("state", JsonText(StateText(object.state)))
        .Text();
}

std::string EdgeJson(const Edge& edge) {
    return JsonObject()
        .Add("class", JsonText(edge.association.GetClassName()))
        .Add("path", JsonText(edge.association.GetPath()))
        .Add("from", std::to_string(edge.from))
        .Add("from_role", JsonText(edge.fromRole))
        .Add("to", std::to_string(edge.to))
        .Add("to_role", JsonText(edge.toRole))
        .Text();
}

/// A string of dot, in which backslashes begin escapes and ampersands names of characters.
std::string DotText(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : Printable(text)) {
        if (character == '"' || character == '\\') {
            quoted += '\\';
        }
        quoted += character == '&' ? std::string("&amp;") : std::string(1, character);
    }
    return quoted + '"';
}

} // namespace

void WriteTree(const ObjectGraph& graph, const TreeLines& lines, std::ostream& output) {
    TreeWriter(graph, lines, output).Write();
}

void WriteGraphJson(const ObjectGraph& graph, std::ostream& output) {
    output << "{\"objects\":";
    const auto labels = LabelsOf(graph);
    JsonLines objects(output);
    for (std::size_t i = 0; i < graph.objects.size(); ++i) {
        objects.Next() << ObjectJson(graph.objects[i], labels[i]);
    }
    objects.End();
    output << ",\n\"associations\":";
    WriteJsonLines(graph.edges, EdgeJson, output);
    output << ",\n\"complete\":" << JsonValue(graph.isComplete) << "}\n";
}

void WriteDot(const ObjectGraph& graph, std::ostream& output) {
    const auto labels = LabelsOf(graph);
    output << "graph related {\n    node [shape=box];\n";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        output << "    o" << i << " [label=" << DotText(labels[i])
               << ", tooltip=" << DotText(graph.objects[i].path.GetPath()) << "];\n";
    }
    for (const Edge& edge : graph.edges) {
        output << "    o" << edge.from << " -- o" << edge.to << " [label=" << DotText(edge.association.GetClassName())
               << "];\n";
    }
    output << "}\n";
}

} // namespace cimhttp
