#pragma once

#include "commands/InstanceChanges.h"
#include "output/ValueTexts.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

class Failure;
class JsonObject;
struct CommandContext;

/// Writes what a watch sees, each piece with the time, for people or, with `isJson`, as JSON, a line for each thing:
///
///     {"time":"2026-11-21T08:39:00+01:00","round":0,"change":"present","path":"CIM_Fan.Name=\"a\"","class":"CIM_Fan",
///      "properties":{"Speed":{"type":"uint64","value":3,"text":"3"}}}
///     {"time":…,"round":1,"change":"changed","path":…,"class":…,
///      "properties":{"Speed":{"old":{"value":3,"text":"3"},"new":{"value":4,"text":"4"}}}}
///     {"time":…,"change":"lost","reason":"…"}
///     {"time":…,"change":"back"}
///
/// `new` is like `present`; `gone` has no properties.
class ChangeWriter {
  public:
    /// `properties` are the names of those that are watched.
    ChangeWriter(const CommandContext& context, const ValueTexts& texts, std::vector<std::string> properties,
                 bool isJson)
        : context_(context), texts_(texts), properties_(std::move(properties)), isJson_(isJson) {}

    /// The instances of the first reading.
    void Begin(const Instances& instances) const;

    void Write(const std::vector<InstanceChange>& changes, std::size_t round) const;

    /// The server has stopped answering, or answers again.
    void Lose(const Failure& failure) const;
    void Regain() const;

  private:
    using Names = std::vector<std::string>;

    void WriteLines(const InstanceChange& change) const;
    void WriteJson(const InstanceChange& change, std::size_t round) const;
    void WriteJson(const JsonObject& line) const;
    std::string InstanceMembers(NQORVYX20::ICIMInstance& instance, const Names& properties) const;
    void AddDifferences(const InstanceChange& change, JsonObject& line) const;
    std::string DifferenceText(const InstanceChange& change, const InstanceChange::Difference& difference) const;
    std::string Colored(const std::string& text, const char* color) const;

    const CommandContext& context_;
    ValueTexts texts_;
    Names properties_;
    bool isJson_;
};

} // namespace cimhttp
