#include "Failure.h"
#include "Options.h"
#include "browse/BrowserLibrary.h"
#include "commands/Command.h"
#include "commands/Commands.h"
#include "connection/OwnLibrary.h"

namespace cimhttp {

namespace {

/// `browse`: pages for a browser that show servers, classes, instances and values over time.
class BrowseCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"browse",
                "Show servers, classes, instances and charts in a web browser",
                {},
                {{"--listen", "ADDRESS:PORT",
                  "Where to listen, on this machine only; 127.0.0.1 and a free port unless given", &request_.listen},
                 {"--no-open", "", "Only write the address, open no browser", &staysClosed_}},
                {OutputFormat::kPlain},
                "cimhttp browse\n"
                "cimhttp --host server.example --user reader browse",
                "The address that is written lets one browser in, once; a cookie lets it in from then on. Where there "
                "is a desktop, its browser is opened. The pages show the server of the command line and all named "
                "connections. Nothing can be changed at a server. Ctrl-C ends it. docs/browse.md has more."};
    }

    int Run(const CommandContext& context) override {
        if (context.options.trace || context.options.recording) {
            throw Failure(Failure::kUsage, "browse keeps no trace: leave out --trace and record");
        }
        request_.opens = !staysClosed_;
        Library().Serve(context.options, request_, context.output, context.errors);
        return 0;
    }

    int RunForFleet(const FleetContext& /*context*/) override {
        throw Failure(Failure::kUsage, "browse shows all named connections; leave out --connection, or name one");
    }

  private:
    static const BrowserLibrary& Library() {
        return *reinterpret_cast<BrowserFunction*>(OwnLibraryFunction(kBrowserLibrary, kBrowserFunction))();
    }

    BrowserRequest request_;
    bool staysClosed_ = false;
};

} // namespace

std::unique_ptr<Command> MakeBrowseCommand() { return std::make_unique<BrowseCommand>(); }

} // namespace cimhttp
