#include "interop/NamespaceSearch.h"

#include "Failure.h"
#include "connection/PathReader.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"

#include <algorithm>
#include <vector>

namespace cimhttp {

namespace {

constexpr const char* kNamespaceClass = "CIM_Namespace";
constexpr const char* kOldNamespaceClass = "__Namespace";
constexpr unsigned char kDecimal = 10;

/// Among namespaces that only `__Namespace` tells of, those below this one are looked for first.
constexpr const char* kRoot = "root";

} // namespace

void NamespaceSearch::Run() {
    const auto& interop = InteropNames();
    if (std::any_of(interop.begin(), interop.end(), [this](const auto& name) { return FindInInterop(name); })) {
        return;
    }
    if (!FindBelow(kRoot) && !FindBelow(session_.NamespaceName())) {
        throw Failure(Failure::kNotFound,
                      "the server at " + session_.Server() + " does not tell its namespaces: " + attempts_.Text());
    }
}

bool NamespaceSearch::FindInInterop(const std::string& interop) {
    try {
        names_ = NamesIn(interop, kNamespaceClass);
        return Found(kNamespaceClass, interop);
    } catch (const RemoteError& error) {
        attempts_.Add(kNamespaceClass, interop, error.what());
        return false;
    }
}

/// A namespace that tells what is below it is one itself.
bool NamespaceSearch::FindBelow(const std::string& top) {
    try {
        names_ = NamesBelow(top);
        if (!Found(kOldNamespaceClass, top)) {
            return false;
        }
    } catch (const RemoteError& error) {
        attempts_.Add(kOldNamespaceClass, top, error.what());
        return false;
    }
    std::vector<std::string> unasked(names_.begin(), names_.end());
    names_.insert(top);
    while (!unasked.empty()) {
        const std::string name = unasked.back();
        unasked.pop_back();
        const NameSet before = names_;
        AskBelow(name);
        std::set_difference(names_.begin(), names_.end(), before.begin(), before.end(), std::back_inserter(unasked),
                            NameBefore());
    }
    return true;
}

void NamespaceSearch::AskBelow(const std::string& nameSpace) {
    try {
        const NameSet below = NamesBelow(nameSpace);
        names_.insert(below.begin(), below.end());
    } catch (const RemoteError& error) {
        if (!SaysThatThereIsNone(error.Failure()) && remark_.empty()) {
            remark_ = "not every namespace tells what is below it; the first: " + nameSpace + ": " + error.what();
        }
    }
}

NameSet NamespaceSearch::NamesIn(const std::string& nameSpace, const std::string& className) {
    NameSet names;
    for (const auto& path : ServerInstances(session_).PathsIn(nameSpace, className)) {
        const auto name = path.GetKeyValue("Name");
        if (!name.IsNull()) {
            names.insert(WithoutLeadingSlash(name.ToString(kDecimal)));
        }
    }
    return names;
}

NameSet NamespaceSearch::NamesBelow(const std::string& nameSpace) {
    NameSet wholeNames;
    for (const std::string& name : NamesIn(nameSpace, kOldNamespaceClass)) {
        wholeNames.insert(nameSpace + '/' + name);
    }
    return wholeNames;
}

/// Whether there are any names; notes where they come from.
bool NamespaceSearch::Found(const std::string& className, const std::string& nameSpace) {
    if (names_.empty()) {
        attempts_.Add(className, nameSpace, "it has none");
        return false;
    }
    sourceClass_ = className;
    sourceNamespace_ = nameSpace;
    return true;
}

} // namespace cimhttp
