#include "commands/InstanceFinder.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/KeyListing.h"
#include "output/ListingText.h"
#include "output/ValueTexts.h"
#include "selection/KeyValue.h"
#include "selection/ValuePlace.h"
#include "text/Names.h"
#include "text/ParsedText.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr std::size_t kMostChoices = 100;  // that anybody reads
constexpr std::size_t kMostListed = 5;     // in one line
constexpr std::size_t kWidestListed = 200; // of each of them

Properties KeysOf(const ICIMClass& cls) {
    Properties keys = PropertiesOf(cls);
    keys.erase(std::remove_if(keys.begin(), keys.end(), [](const auto& property) { return !IsKey(*property); }),
               keys.end());
    return keys;
}

bool IsText(ECIMType type) {
    return type == ECIMType::eCIMString || type == ECIMType::eCIMChar16 || type == ECIMType::eCIMReference;
}

/// Whether a value is a number, a boolean or a date-time that a text stands for.
bool IsSame(const std::string& text, const TCIMValue& value) {
    if (IsText(value.GetType())) {
        return false;
    }
    const ValuePlace place(value);
    const auto other = ValuePlace::Of(text, value.GetType());
    return other && place.IsAtMost(*other).value_or(false) && other->IsAtMost(place).value_or(false);
}

std::string PathText(const TCIMReference& path) {
    const std::string text = Printable(path.GetPath());
    const std::string front = Cut(text, kWidestListed);
    return front.size() == text.size() ? text : front + "…";
}

std::string ListedPaths(const std::vector<TCIMReference>& paths) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < std::min(paths.size(), kMostListed); ++i) {
        texts.push_back(PathText(paths[i]));
    }
    if (paths.size() > kMostListed) {
        texts.push_back(std::to_string(paths.size() - kMostListed) + " more");
    }
    return ListedTogether(texts);
}

/// The candidates with numbers to choose by.
Listing Choices(const std::vector<TCIMReference>& paths) {
    const Listing keys = KeyListing(paths, HaveSeveralClasses(paths));
    std::vector<Listing::Column> columns{{"#", Listing::Align::kRight, Listing::Importance::kAsked}};
    columns.insert(columns.end(), keys.Columns().begin(), keys.Columns().end());
    Listing choices(std::move(columns));
    for (const auto& keysOfOne : keys.Rows()) {
        std::vector<Cell> row{std::to_string(choices.Rows().size() + 1)};
        row.insert(row.end(), keysOfOne.begin(), keysOfOne.end());
        choices.AddRow(std::move(row));
    }
    return choices;
}

} // namespace

InstanceFinder::InstanceFinder(Session& session, const CommandContext& context, const std::string& className,
                               GivenKeys keys)
    : session_(session), context_(context), keys_(std::move(keys)) {
    const auto cls = ServerSchema(session_).Class(className);
    className_ = cls->GetName(TCIMContext());
    declared_ = KeysOf(*cls);
    if (!declared_.empty()) {
        keys_.Check(NamesOf(declared_), className_);
    }
}

std::optional<FoundInstance> InstanceFinder::Find() {
    if (const auto path = WholePath()) {
        if (auto found = InstanceAt(*path)) {
            return found;
        }
    }
    const Paths candidates = Candidates();
    const TCIMReference* const chosen = Chosen(candidates);
    return chosen == nullptr ? std::nullopt
                             : std::optional<FoundInstance>(ServerInstances(session_).At(chosen->GetPath()));
}

std::optional<std::string> InstanceFinder::WholePath() const {
    if (declared_.empty() || keys_.Values().size() != declared_.size()) {
        return std::nullopt;
    }
    TCIMReference path{boost::shared_ptr<ICIMNamespace>(), TCIMContext()};
    path.SetClassName(className_);
    for (const auto& key : declared_) {
        const std::string name = key->GetName(TCIMContext());
        const TCIMValue value = WrittenKey(keys_.Values().at(name), key->GetType(TCIMContext()));
        if (value.IsNull()) {
            return std::nullopt;
        }
        path.AddKeyValue(name, value);
    }
    return path.GetPath();
}

/// An instance of a subclass is not there under the name of the class.
std::optional<FoundInstance> InstanceFinder::InstanceAt(const std::string& path) {
    try {
        return ServerInstances(session_).At(path);
    } catch (const Failure& failure) {
        if (failure.Status() != Failure::kNotFound) {
            throw;
        }
        return std::nullopt;
    }
}

InstanceFinder::Paths InstanceFinder::Candidates() {
    Paths all = ServerInstances(session_).PathsOf(className_);
    const std::vector<std::string> names = KeyNames(all);
    if (declared_.empty() && !all.empty()) { // subclasses declare them
        keys_.Check(names, className_);
    }
    Paths candidates;
    std::copy_if(all.begin(), all.end(), std::back_inserter(candidates), [&](const auto& path) { return Fits(path); });
    if (candidates.empty()) {
        throw Failure(
            Failure::kNotFound,
            "there is no instance of " + className_ + keys_.Text() + " on " + session_.Server() +
                (all.empty() ? "" : "; its keys are " + ListedTogether(names) + ", as in " + PathText(all[0])));
    }
    std::sort(candidates.begin(), candidates.end());
    return candidates;
}

bool InstanceFinder::Fits(const TCIMReference& path) const {
    return std::all_of(keys_.Values().begin(), keys_.Values().end(), [&](const auto& key) {
        const TCIMValue value = path.GetKeyValue(key.first);
        return !value.IsNull() && IsMeant(key.first, key.second, value);
    });
}

bool InstanceFinder::IsMeant(const std::string& name, const std::string& text, const TCIMValue& value) const {
    if (PlainText(value) == text) {
        return true;
    }
    const auto declared = std::find_if(declared_.begin(), declared_.end(), [&](const auto& property) {
        return IsSameName(property->GetName(TCIMContext()), name);
    });
    if (declared == declared_.end()) {
        return IsSame(text, value);
    }
    const TCIMValue typed = TypedKey(value, (*declared)->GetType(TCIMContext()));
    const ValueTexts texts(session_.Access(), context_.options.textForm);
    return IsSame(text, typed) || texts.Of(nullptr, *declared, typed).Joined() == text;
}

const TCIMReference* InstanceFinder::Chosen(const Paths& candidates) const {
    if (candidates.size() == 1) {
        return &candidates.front();
    }
    const bool hasUser = context_.options.isInputTerminal && context_.options.isErrorStreamTerminal;
    if (!hasUser || candidates.size() > kMostChoices) {
        throw TooMany(candidates);
    }
    return AskedFor(candidates);
}

const TCIMReference* InstanceFinder::AskedFor(const Paths& candidates) const {
    WriteTable(Choices(candidates), {context_.options.errorStreamWidth, false}, context_.errors);
    const std::string question = "Which one (1-" + std::to_string(candidates.size()) + ", or nothing)? ";
    std::string answer;
    while (context_.errors << question << std::flush && std::getline(std::cin, answer) && !answer.empty()) {
        const std::size_t number = NumberIn<std::size_t>(answer).value_or(0);
        if (number >= 1 && number <= candidates.size()) {
            return &candidates[number - 1];
        }
    }
    return nullptr;
}

Failure InstanceFinder::TooMany(const Paths& candidates) const {
    const std::vector<std::string> telling = TellingKeys(candidates);
    std::vector<std::string> options;
    std::transform(telling.begin(), telling.end(), std::back_inserter(options),
                   [](const std::string& name) { return "--key " + name + "=..."; });
    const std::string advice =
        options.empty() ? "the path names one"
                        : ListedTogether(options) + (options.size() == 1 ? " tells them apart" : " tell them apart");
    return {Failure::kUsage, "there are " + std::to_string(candidates.size()) + " instances of " + className_ +
                                 keys_.Text() + ": " + ListedPaths(candidates) + "; " + advice};
}

std::vector<std::string> InstanceFinder::TellingKeys(const Paths& candidates) const {
    std::vector<std::string> telling;
    for (const std::string& name : KeyNames(candidates)) {
        std::set<std::string> values;
        for (const TCIMReference& path : candidates) {
            values.insert(PlainText(path.GetKeyValue(name)));
        }
        if (values.size() == candidates.size()) {
            return {name};
        }
        if (values.size() > 1) {
            telling.push_back(name);
        }
    }
    return telling;
}

} // namespace cimhttp
