#include "commands/TreeCommand.h"

#include <ostream>

#include "Failure.h"
#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "output/ClassTree.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

constexpr std::size_t kDeepest = 100; // far more than any schema has

/// Visits classes from a top class downwards.
class TreeWriter {
  public:
    TreeWriter(const ClassTree& tree, std::ostream& output) : tree_(tree), output_(output) {}

    void Draw(const std::string& name) {
        output_ << Printable(name) << '\n';
        DrawBelow(name, "", 1);
    }

    std::string Json(const std::string& name, std::size_t depth = 1) const {
        CheckDepth(name, depth);
        JsonArray subclasses;
        for (const std::string& subclass : tree_.SubclassesOf(name)) {
            subclasses.Add(Json(subclass, depth + 1));
        }
        return JsonObject().Add("name", JsonText(name)).Add("subclasses", subclasses.Text()).Text();
    }

    void AddRows(const std::string& name, const Cell& superclass, Listing& listing, std::size_t depth = 1) const {
        CheckDepth(name, depth);
        listing.AddRow({name, superclass});
        for (const std::string& subclass : tree_.SubclassesOf(name)) {
            AddRows(subclass, name, listing, depth + 1);
        }
    }

  private:
    static void CheckDepth(const std::string& name, std::size_t depth) {
        if (depth > kDeepest) {
            throw Failure(Failure::kOther,
                          "the server has more than " + std::to_string(kDeepest) + " classes above " + Printable(name));
        }
    }

    void DrawBelow(const std::string& name, const std::string& lines, std::size_t depth) {
        CheckDepth(name, depth);
        const auto subclasses = tree_.SubclassesOf(name);
        for (const std::string& subclass : subclasses) {
            const bool is_last = &subclass == &subclasses.back();
            output_ << lines << (is_last ? "└── " : "├── ") << Printable(subclass) << '\n';
            DrawBelow(subclass, lines + (is_last ? "    " : "│   "), depth + 1);
        }
    }

    const ClassTree& tree_;
    std::ostream& output_;
};

std::vector<std::string> NamesOf(const std::vector<RemoteClassName>& classes) {
    std::vector<std::string> names;
    names.reserve(classes.size());
    for (const RemoteClassName& cls : classes) {
        names.push_back(cls.name);
    }
    return names;
}

std::vector<std::string> RootsOf(const ClassTree& tree, const std::string& name, const std::string& server,
                                 const std::vector<RemoteClassName>& classes) {
    if (name.empty()) {
        return tree.TopClasses();
    }
    const std::string found = tree.Find(name);
    if (found.empty()) {
        throw NoSuchClass(name, server, NamesOf(classes));
    }
    return {found};
}

} // namespace

CommandDescription TreeCommand::Describe() {
    return {"tree",
            "Draw the hierarchy of the server's classes",
            {{"CLASS", "Only this class and those below it", false, &root_}},
            {},
            {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example tree CIM_LogicalElement"};
}

int TreeCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const auto classes = session.Hierarchy();
    const ClassTree tree(classes);
    const auto roots = RootsOf(tree, root_, session.Server(), classes);
    TreeWriter writer(tree, context.output);
    JsonArray json;
    Listing listing({{"Name"}, {"Superclass"}});
    for (const std::string& root : roots) {
        switch (context.Format(*this)) {
        case OutputFormat::kJson:
            json.Add(writer.Json(root));
            break;
        case OutputFormat::kCsv:
            writer.AddRows(root, Cell::Null(), listing);
            break;
        default:
            writer.Draw(root);
        }
    }
    if (context.Format(*this) == OutputFormat::kJson) {
        context.output << json.Text() << '\n';
    } else if (context.Format(*this) == OutputFormat::kCsv) {
        WriteListing(listing, OutputFormat::kCsv, context);
    }
    return 0;
}

} // namespace cimhttp
