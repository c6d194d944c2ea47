#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "commands/FleetReading.h"
#include "commands/InstanceFinder.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "output/InstanceListing.h"
#include "selection/GivenKeys.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::ICIMInstance;

/// Names below the list of the properties with a value.
void WriteNamesWithoutValue(const std::vector<std::string>& names, const CommandContext& context) {
    const std::string text = "Without a value: " + Printable(Joined(names));
    context.output << '\n';
    const std::size_t width = context.options.width == 0 ? text.size() : context.options.width;
    for (const std::string& line : Wrapped(text, width)) {
        context.output << line << '\n';
    }
}

/// A list of the properties that have a value, or a text for null, and the names of the others.
void WriteList(const boost::shared_ptr<ICIMInstance>& instance, InstanceSelection selection, const PluginAccess& access,
               const CommandContext& context) {
    const InstanceListing listing(ValueTexts(access, context.options.textForm), selection.isRaw);
    const auto firstWithout =
        std::stable_partition(selection.properties.begin(), selection.properties.end(),
                              [&](const auto& property) { return !listing.LacksValue(*instance, *property); });
    const std::vector<std::string> without = NamesOf(Properties(firstWithout, selection.properties.end()));
    selection.properties.erase(firstWithout, selection.properties.end());
    WriteInstances({instance}, selection, OutputFormat::kPlain, access, context);
    if (!without.empty()) {
        WriteNamesWithoutValue(without, context);
    }
}

/// Whether there is nothing in the text of what makes it a path.
bool IsClassName(const std::string& text) { return !text.empty() && text.find_first_of("=:./\"") == std::string::npos; }

/// `instance PATH`: one instance by its object path, or by its class and keys, see InstanceFinder.
class InstanceCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "instance",
            "Show one instance",
            {{"PATH",
              R"(Its object path, such as 'CIM_Disk.Name="a",Number=3'; a namespace may precede it, 'root/interop:'. )"
              "Or its class alone: then --key names it",
              true, &path_}},
            {{"--key", "NAME=VALUE",
              "A key of the instance, its value as it is or as it is shown; may be given several times. Keys that do "
              "not matter may be left out; where several instances fit, you are asked",
              &keys_},
             {"--wide", "", "Write CSV with a property a column", &wide_},
             {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
            {OutputFormat::kPlain, OutputFormat::kTable, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
            "cimhttp --host server.example instance 'CIM_Disk.Name=\"a\",Number=3'\n"
            "cimhttp --host server.example instance CIM_Disk --key Name=a"};
    }

    int Run(const CommandContext& context) override {
        const GivenKeys keys(keys_); // is checked before the server is asked
        if (!keys_.empty() && !IsClassName(path_)) {
            throw Failure(Failure::kUsage, "--key goes with the name of a class, which '" + path_ + "' is not");
        }
        const OutputFormat format = context.Format(*this, wide_);
        Session session = context.Connect();
        const PluginAccess& access = session.Access();
        const auto found = Find(session, keys, context);
        if (!found) {
            return 0;
        }
        const auto& [instance, nameSpace] = *found;
        InstanceSelection selection;
        selection.properties = PropertiesOf(*instance);
        selection.isRaw = raw_;
        selection.nameSpace = nameSpace;
        selection.isWide = wide_;
        switch (format) {
        case OutputFormat::kTable:
            WriteListing(InstanceListing(ValueTexts(access, context.options.textForm), raw_)
                             .Values(*instance, selection.properties),
                         format, context);
            break;
        case OutputFormat::kPlain:
            WriteList(instance, selection, access, context);
            break;
        default:
            WriteInstances({instance}, selection, format, access, context);
        }
        return ReportIncidents(session.TakeIncidents(), context);
    }

    int RunForFleet(const FleetContext& context) override {
        const CommandContext whole{context.options, context.output, context.errors};
        return ReadFleet(*this, context, whole.Format(*this, wide_));
    }

  private:
    /// Nothing when the user chooses none.
    std::optional<FoundInstance> Find(Session& session, const GivenKeys& keys, const CommandContext& context) const {
        return IsClassName(path_) ? InstanceFinder(session, context, path_, keys).Find()
                                  : std::optional<FoundInstance>(ServerInstances(session).At(path_));
    }

    std::string path_;              ///< or the name of a class
    std::vector<std::string> keys_; ///< see GivenKeys
    bool wide_ = false;             ///< see WideRecords()
    bool raw_ = false;              ///< values as they are, not as people read them
};

} // namespace

std::unique_ptr<Command> MakeInstanceCommand() { return std::make_unique<InstanceCommand>(); }

} // namespace cimhttp
