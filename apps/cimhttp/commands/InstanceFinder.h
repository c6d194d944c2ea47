#pragma once

#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/TCIMReference.h"
#include "output/InstanceProperties.h"
#include "selection/GivenKeys.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

struct CommandContext;

/// Finds the one instance of a class that a user means by its keys, or by none.
///
/// Where all keys are given, the server is asked for that instance; otherwise for the paths of all instances, of which
/// the one that fits is taken. Names of keys are matched without regard to case, values as they are in the path, as the
/// same number or time, or as people read them. Where several fit, a user at a terminal is asked.
class InstanceFinder {
  public:
    /// The session and the context must outlive the finder.
    InstanceFinder(Session& session, const CommandContext& context, const std::string& className, GivenKeys keys);

    /// Nothing when the user chooses none. Throws Failure(kNotFound) where none fits, and Failure(kUsage) where several
    /// do and nobody can be asked, or where a key is none of the class's; fails like ServerSchema::Class, too.
    std::optional<FoundInstance> Find();

  private:
    using Paths = std::vector<NQORVYX20::TCIMReference>;

    /// The path with all keys; nothing where some are missing, or can be written in several ways.
    std::optional<std::string> WholePath() const;
    std::optional<FoundInstance> InstanceAt(const std::string& path);

    /// Those that fit, in the order of their texts.
    Paths Candidates();
    bool Fits(const NQORVYX20::TCIMReference& path) const;
    bool IsMeant(const std::string& name, const std::string& text, const NQORVYX20::TCIMValue& value) const;

    const NQORVYX20::TCIMReference* Chosen(const Paths& candidates) const;
    const NQORVYX20::TCIMReference* AskedFor(const Paths& candidates) const;
    Failure TooMany(const Paths& candidates) const;

    /// Which keys tell candidates apart: one, if one does.
    std::vector<std::string> TellingKeys(const Paths& candidates) const;

    Session& session_;
    const CommandContext& context_;
    GivenKeys keys_;
    std::string className_;
    Properties declared_; // the keys, as far as the class declares them
};

} // namespace cimhttp
