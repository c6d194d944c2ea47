#include "output/KeyListing.h"

#include "output/DisplayText.h"
#include "output/Json.h"
#include "text/Names.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

std::vector<Listing::Column> ColumnsOf(const std::vector<std::string>& keys, bool hasClass) {
    std::vector<Listing::Column> columns;
    if (hasClass) {
        columns.push_back({"Class", Listing::Align::kLeft, Listing::Importance::kAsked});
    }
    for (const std::string& key : keys) {
        columns.push_back({key, Listing::Align::kLeft, Listing::Importance::kAsked});
    }
    return columns;
}

std::string KeysJson(const TCIMReference& path) {
    JsonObject keys;
    path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        keys.Add(name, JsonValue(value));
        return true;
    });
    return JsonObject().Add("class", JsonText(path.GetClassName())).Add("keys", keys.Text()).Text();
}

} // namespace

std::vector<std::string> KeyNames(const std::vector<TCIMReference>& paths) {
    std::vector<std::string> names;
    for (const TCIMReference& path : paths) {
        path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& /*value*/) {
            names.push_back(name);
            return true;
        });
    }
    return DistinctNames(names);
}

std::vector<std::string> PathTexts(const std::vector<TCIMReference>& paths) {
    std::vector<std::string> texts;
    texts.reserve(paths.size());
    for (const TCIMReference& path : paths) {
        texts.push_back(path.GetPath());
    }
    return texts;
}

Listing KeyListing(const std::vector<TCIMReference>& paths, bool hasClass) {
    const std::vector<std::string> names = KeyNames(paths);
    Listing listing(ColumnsOf(names, hasClass));
    listing.SetVaryingColumns();
    for (const TCIMReference& path : paths) {
        std::vector<Cell> row;
        if (hasClass) {
            row.emplace_back(path.GetClassName());
        }
        for (const std::string& name : names) {
            const TCIMValue value = path.GetKeyValue(name);
            row.emplace_back(value, PlainText(value));
        }
        listing.AddRow(std::move(row));
    }
    return listing;
}

void WriteKeysJson(const std::vector<TCIMReference>& paths, std::ostream& output) {
    WriteJsonLines(paths, KeysJson, output);
    output << '\n';
}

bool HaveSeveralClasses(const std::vector<TCIMReference>& paths) {
    return std::any_of(paths.begin(), paths.end(), [&](const TCIMReference& path) {
        return !IsSameName(path.GetClassName(), paths.front().GetClassName());
    });
}

} // namespace cimhttp
