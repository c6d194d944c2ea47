#include "survey/GraphWalk.h"

#include "access/ReferenceKeys.h"
#include "output/DisplayText.h"
#include "text/Ascii.h"
#include "text/WordList.h"

namespace cimhttp {

namespace {

using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;
using State = ObjectGraph::State;

constexpr char kSeparator = '\0'; // which no part has

/// A text that is the same for the paths of one object only, however their names are spelled.
std::string IdentityOf(const TCIMReference& path) {
    std::map<std::string, std::string> keys;
    path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        keys[AsciiLower(name)] = PlainText(value);
        return true;
    });
    std::string identity = AsciiLower(path.GetHost()) + kSeparator + AsciiLower(path.GetNamespaceName()) + kSeparator +
                           AsciiLower(path.GetClassName());
    for (const auto& [name, value] : keys) {
        (identity += kSeparator) += name;
        (identity += kSeparator) += value;
    }
    return identity;
}

/// The identity of an association with its ends, since not every association names them by its keys.
std::string IdentityOfLink(const RemoteLink& link) {
    std::string identity = IdentityOf(link.association);
    for (const RemoteLink::End& end : link.ends) {
        identity += kSeparator + end.role + kSeparator + IdentityOf(end.object);
    }
    return identity;
}

/// Whether others can be asked in spite of a failure.
bool ConcernsOneObject(const Failure& failure) {
    return failure.Status() != Failure::kConnection && dynamic_cast<const LoginFailure*>(&failure) == nullptr;
}

} // namespace

void GraphWalk::Run(const TCIMReference& start, std::size_t depth) {
    AddObject(start, 0);
    for (std::size_t i = 0; i < graph_.objects.size() && !isCut_; ++i) {
        if (MayAsk(graph_.objects[i], depth)) {
            Ask(i);
        }
    }
    graph_.isComplete = !isCut_ && failureCount_ == 0;
}

/// A path without keys is that of a class.
bool GraphWalk::MayAsk(const ObjectGraph::Object& object, std::size_t depth) const {
    return object.depth < depth && object.state == State::kNotAsked && HasKeys(object.path);
}

void GraphWalk::Ask(std::size_t number) {
    try {
        const auto links = links_(graph_.objects[number].path.GetPath());
        graph_.objects[number].state = State::kAsked;
        for (const RemoteLink& link : links) {
            if (linksSeen_.insert(IdentityOfLink(link)).second) {
                Follow(number, link);
            }
        }
    } catch (const Failure& failure) {
        if (number == 0 || !ConcernsOneObject(failure)) {
            throw;
        }
        graph_.objects[number].state = State::kFailed;
        firstFailure_ = ++failureCount_ == 1 ? failure.what() : firstFailure_;
    }
}

/// Goes to all ends of an association but for the one that it was asked of.
void GraphWalk::Follow(std::size_t number, const RemoteLink& link) {
    const std::string own = IdentityOf(graph_.objects[number].path);
    const RemoteLink::End* ownEnd = nullptr;
    for (const RemoteLink::End& end : link.ends) {
        ownEnd = ownEnd == nullptr && IdentityOf(end.object) == own ? &end : ownEnd;
    }
    for (const RemoteLink::End& end : link.ends) {
        if (&end != ownEnd) {
            Connect(number, link, ownEnd == nullptr ? std::string() : ownEnd->role, end);
        }
    }
}

void GraphWalk::Connect(std::size_t number, const RemoteLink& link, const std::string& role,
                        const RemoteLink::End& end) {
    if (graph_.edges.size() == kMostEdges) {
        isCut_ = true;
        return;
    }
    const std::size_t count = graph_.objects.size();
    const std::size_t to = AddObject(end.object, graph_.objects[number].depth + 1);
    graph_.edges.push_back({number, to, to == count, link.association, role, end.role});
}

/// The number of the object, which may be there already.
std::size_t GraphWalk::AddObject(const TCIMReference& path, std::size_t depth) {
    const auto [known, isNew] = numbers_.emplace(IdentityOf(path), graph_.objects.size());
    if (isNew) {
        graph_.objects.push_back({path, depth, path.GetHost().empty() ? State::kNotAsked : State::kElsewhere});
    }
    return known->second;
}

std::string GraphWalk::Remark() const {
    std::string remark;
    if (isCut_) {
        remark = "there are more than " + std::to_string(kMostEdges) + " associations; the others are left out";
    }
    if (failureCount_ > 0) {
        remark += (remark.empty() ? "" : "; ") + std::string("the associations of ") +
                  Counted(failureCount_, "object", "objects") + " could not be read; the first: " + firstFailure_;
    }
    return remark;
}

} // namespace cimhttp
