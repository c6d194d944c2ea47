#include "fleet/ServerList.h"

#include "Failure.h"
#include "files/InputFile.h"
#include "text/Names.h"
#include "text/NearestNames.h"

#include <set>
#include <sstream>

namespace cimhttp {

namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr const char* kBlanks = " \t\r";
constexpr const char* kHint = "; 'cimhttp connection list' shows all";

bool IsPattern(const std::string& text) { return text.find_first_of("*?[") != std::string::npos; }

bool IsFile(const std::string& text) { return !text.empty() && text.front() == '@'; }

std::string Trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

class Reader {
  public:
    explicit Reader(const ConnectionStore& store) : connections_(store.Read()) {}

    void Add(const std::string& item) {
        if (IsFile(item)) {
            AddFile(item.substr(1));
        } else if (!item.empty()) {
            AddNamed(item, "");
        }
    }

    std::vector<FleetServer> Servers() const { return servers_; }

  private:
    void AddFile(const std::string& path) {
        std::istringstream lines(InputFile(path).ReadAll(kLargestFile));
        std::size_t number = 0;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            const std::string item = Trimmed(line);
            if (!item.empty() && item.front() != '#') {
                AddNamed(item, path + ", line " + std::to_string(number) + ": ");
            }
        }
    }

    /// `place` is where the name stands, for complaints.
    void AddNamed(const std::string& item, const std::string& place) {
        const auto known = connections_.find(item);
        if (known != connections_.end()) {
            AddServer(*known);
        } else if (IsPattern(item)) {
            AddMatching(item, place);
        } else {
            std::vector<std::string> names;
            for (const auto& [name, connection] : connections_) {
                names.push_back(name);
            }
            throw Failure(Failure::kUsage, place + "there is no connection '" + item + "'" +
                                               DidYouMean(NearestNames(item, names)) + kHint);
        }
    }

    void AddMatching(const std::string& pattern, const std::string& place) {
        bool isMatched = false;
        for (const auto& named : connections_) {
            if (Matches(pattern, named.first)) {
                isMatched = true;
                AddServer(named);
            }
        }
        if (!isMatched) {
            throw Failure(Failure::kUsage, place + "no connection matches '" + pattern + "'" + kHint);
        }
    }

    void AddServer(const ConnectionStore::Connections::value_type& named) {
        if (added_.insert(named.first).second) {
            servers_.push_back({named.first, std::make_shared<const SavedConnection>(named.second)});
        }
    }

    const ConnectionStore::Connections connections_;
    std::vector<FleetServer> servers_;
    std::set<std::string> added_;
};

} // namespace

bool ServerList::IsMeantBy(const std::string& text) {
    return IsFile(text) || IsPattern(text) || text.find(',') != std::string::npos;
}

std::vector<FleetServer> ServerList::Read(const std::string& text, const ConnectionStore& store) {
    Reader reader(store);
    std::istringstream items(text);
    for (std::string item; std::getline(items, item, ',');) {
        reader.Add(Trimmed(item));
    }
    auto servers = reader.Servers();
    if (servers.empty()) {
        throw Failure(Failure::kUsage, "'" + text + "' names no connection" + kHint);
    }
    return servers;
}

} // namespace cimhttp
