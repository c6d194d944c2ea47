#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "output/ClassTree.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "output/TreeLines.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

constexpr std::size_t kDeepest = 100; // far more than any schema has

void CheckDepth(const std::string& name, std::size_t depth) {
    if (depth > kDeepest) {
        throw Failure(Failure::kOther,
                      "the server has more than " + std::to_string(kDeepest) + " classes above " + Printable(name));
    }
}

/// Draws the classes below one, each after the lines that lead down to it.
void DrawBelow(const ClassTree& tree, const std::string& name, const std::string& before, std::size_t depth,
               const TreeLines& lines, std::ostream& output) {
    CheckDepth(name, depth);
    const auto subclasses = tree.SubclassesOf(name);
    for (const std::string& subclass : subclasses) {
        const bool isLast = &subclass == &subclasses.back();
        output << before << (isLast ? lines.last : lines.branch) << Printable(subclass) << '\n';
        DrawBelow(tree, subclass, before + (isLast ? TreeLines::kNothing : lines.passing), depth + 1, lines, output);
    }
}

void Draw(const ClassTree& tree, const std::vector<std::string>& roots, const TreeLines& lines, std::ostream& output) {
    for (const std::string& root : roots) {
        output << Printable(root) << '\n';
        DrawBelow(tree, root, "", 1, lines, output);
    }
}

std::string ClassJson(const ClassTree& tree, const std::string& name, std::size_t depth) {
    CheckDepth(name, depth);
    const auto below = [&](const std::string& subclass) { return ClassJson(tree, subclass, depth + 1); };
    return JsonObject().Add("name", JsonText(name)).Add("subclasses", JsonArray(tree.SubclassesOf(name), below)).Text();
}

void AddRows(const ClassTree& tree, const std::string& name, const Cell& superclass, std::size_t depth,
             Listing& listing) {
    CheckDepth(name, depth);
    listing.AddRow({name, superclass});
    for (const std::string& subclass : tree.SubclassesOf(name)) {
        AddRows(tree, subclass, name, depth + 1, listing);
    }
}

void WriteCsv(const ClassTree& tree, const std::vector<std::string>& roots, const CommandContext& context) {
    Listing listing({{"Name"}, {"Superclass"}});
    for (const std::string& root : roots) {
        AddRows(tree, root, Cell::Null(), 1, listing);
    }
    WriteListing(listing, OutputFormat::kCsv, context);
}

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

/// `tree [CLASS]`: the hierarchy of all classes, or of a class and those below it.
class TreeCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"tree",
                "Draw the hierarchy of the server's classes",
                {{"CLASS", "Only this class and those below it", false, &root_}},
                {},
                {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                "cimhttp --host server.example tree CIM_LogicalElement"};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        const auto classes = ServerSchema(session).Hierarchy();
        const ClassTree tree(classes);
        const auto roots = RootsOf(tree, root_, session.Place(), classes);
        switch (context.Format(*this)) {
        case OutputFormat::kJson:
            context.output << JsonArray(roots, [&](const std::string& root) { return ClassJson(tree, root, 1); })
                           << '\n';
            break;
        case OutputFormat::kCsv:
            WriteCsv(tree, roots, context);
            break;
        default:
            Draw(tree, roots, TreeLines::For(context.options.isUtf8), context.output);
        }
        return ReportIncidents(session.TakeIncidents(), context);
    }

  private:
    std::string root_;
};

} // namespace

std::unique_ptr<Command> MakeTreeCommand() { return std::make_unique<TreeCommand>(); }

} // namespace cimhttp
