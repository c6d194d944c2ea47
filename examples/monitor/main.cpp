// Keeps many namespaces fresh: reads the instances of a class from each of them, again and again, on a few threads.
//     monitor CLASS ROUNDS SECONDS NAMESPACES HOST[:PORT]...
// reads ROUNDS times (0: until it is stopped), with SECONDS in between, NAMESPACES namespaces, which are dealt to the
// hosts in turn. It writes a line for each round, and one for the namespaces of a host that fail, for another reason
// than before, or that can be read again. The user and the password are in the variables CIMHTTP_USER and
// CIMHTTP_PASSWORD. The exit status is 0 when all namespaces were read in the last round, as a whole.

#include "cimhttp/Connect.h"
#include "cimhttp/ContextKeys.h"
#include "cimhttp/ReadingIncidents.h"
#include "cimhttp/RemoteFailure.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/TLogger.h"
#include "host/TRootObject.h"
#include "host/TVYXException.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <future>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace NQORVYX20;

namespace {

constexpr unsigned kThreads = 8;
constexpr unsigned kTimeoutMs = 30000; // a server that does not answer holds up a thread for so long
constexpr unsigned kHeld = 1000;       // no namespace holds more instances than these

std::string Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// A server's text for a terminal: whatever is not a printable character of ASCII is a question mark.
std::string Harmless(std::string text) {
    for (char& c : text) {
        c = c < ' ' || c > '~' ? '?' : c;
    }
    return text;
}

/// One namespace with what its newest reading gave. One thread at a time uses it.
class Watched {
  public:
    /// `server` is HOST or HOST:PORT.
    explicit Watched(const std::string& server)
        : server_(server),
          host_(server.substr(0, server.rfind(':'))),
          port_(server.rfind(':') == std::string::npos ? 5988 : std::atoi(server.c_str() + server.rfind(':') + 1)),
          nameSpace_(AllocateRemoteNamespace({{kReadingKey, TCIMValue(kFaithfulReading)},
                                              {kTimeoutKey, TCIMValue(kTimeoutMs)},
                                              {kConnectTimeoutKey, TCIMValue(kTimeoutMs)}})) {}

    /// Connects where that is not done yet, and reads. Throws nothing that a server can cause.
    void Read(const std::string& className) {
        instances_ = 0;
        failureBefore_ = failure_;
        failure_.clear();
        try {
            if (!IsConnected(*nameSpace_)) {
                ConnectNamespace(*nameSpace_, host_, Environment("CIMHTTP_USER"), Environment("CIMHTTP_PASSWORD"),
                                 port_);
            }
            const auto count = [&](const boost::shared_ptr<ICIMInstance>& /*instance*/) {
                ++instances_;
                return true;
            };
            nameSpace_->GetClass(className, TCIMContext())
                ->EnumerateInstances(count, true, {{kHeldKey, TCIMValue(kHeld)}});
        } catch (const TVYXException& exception) {
            const auto failure = LastFailure(*nameSpace_);
            failure_ = failure ? failure->text : exception.what();
        }
        incidents_ = TakeIncidents(*nameSpace_).Total(); // also so that they do not pile up
    }

    std::size_t Instances() const { return instances_; }
    std::size_t Incidents() const { return incidents_; }
    bool HasFailed() const { return !failure_.empty(); }

    /// What is new since the reading before; empty when nothing is.
    std::string News() const {
        if (failure_ == failureBefore_) {
            return {};
        }
        return server_ + ": " + (HasFailed() ? Harmless(failure_) : "can be read again");
    }

  private:
    const std::string server_;
    const std::string host_;
    const int port_;
    const boost::shared_ptr<ICIMNamespace> nameSpace_;
    std::size_t instances_ = 0;
    std::size_t incidents_ = 0;
    std::string failure_;
    std::string failureBefore_;
};

using Namespaces = std::vector<std::unique_ptr<Watched>>;

/// Each thread takes the next namespace that none has taken. Throws what a reading threw, which is no server's doing.
void ReadAll(const Namespaces& namespaces, const std::string& className) {
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < namespaces.size(); i = next++) {
            namespaces[i]->Read(className);
        }
    };
    std::vector<std::future<void>> readers;
    for (unsigned i = 0; i < kThreads; ++i) {
        readers.push_back(std::async(std::launch::async, work));
    }
    for (std::future<void>& reader : readers) {
        reader.get();
    }
}

/// Whether all namespaces were read, and nothing was left out.
bool Report(unsigned long round, const Namespaces& namespaces) {
    std::size_t instances = 0;
    std::size_t incidents = 0;
    std::size_t failed = 0;
    std::map<std::string, std::size_t> news; // how many namespaces have it, by its text
    for (const auto& watched : namespaces) {
        instances += watched->Instances();
        incidents += watched->Incidents();
        failed += watched->HasFailed() ? 1U : 0U;
        if (const std::string text = watched->News(); !text.empty()) {
            ++news[text];
        }
    }
    for (const auto& [text, count] : news) {
        std::cerr << "monitor: " << count << " namespaces of " << text << '\n';
    }
    std::cout << "round " << round << ": " << namespaces.size() - failed << " of " << namespaces.size()
              << " namespaces read, " << instances << " instances, " << incidents << " incidents" << std::endl;
    return failed == 0 && incidents == 0;
}

} // namespace

int main(int argc, char** argv) try {
    const auto number = [&](int index) { return std::strtoul(argv[index], nullptr, 10); };
    if (argc < 6 || number(4) == 0) {
        std::cerr << "usage: monitor CLASS ROUNDS SECONDS NAMESPACES HOST[:PORT]...\n";
        return 2;
    }
    // A failure is told once, in this program's own words.
    static std::ostream silence(nullptr);
    TRootObject::SetCoreLogger(boost::make_shared<TLogger>(silence, ILogger::eLogError));

    Namespaces namespaces;
    for (unsigned long i = 0; i < number(4); ++i) {
        namespaces.push_back(std::make_unique<Watched>(argv[5 + i % static_cast<unsigned>(argc - 5)]));
    }
    bool isComplete = false;
    for (unsigned long round = 1; std::cout && (number(2) == 0 || round <= number(2)); ++round) {
        if (round > 1) {
            std::this_thread::sleep_for(std::chrono::seconds(number(3)));
        }
        ReadAll(namespaces, argv[1]);
        isComplete = Report(round, namespaces);
    }
    return isComplete ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << "monitor: " << error.what() << '\n';
    return 1;
}
