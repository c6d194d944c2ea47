#include "commands/ChangeWriter.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "output/InstanceJson.h"
#include "output/Json.h"
#include "table/TableCell.h"
#include "text/TerminalText.h"
#include "text/TextBuffer.h"
#include "text/TimeText.h"
#include "text/WordList.h"

#include <ostream>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using Kind = InstanceChange::Kind;

constexpr const char* kGreen = "\x1b[32m";
constexpr const char* kRed = "\x1b[31m";
constexpr const char* kYellow = "\x1b[33m";

struct KindTexts {
    const char* name;
    const char* sign;
    const char* color;
};

KindTexts TextsOf(Kind kind) {
    switch (kind) {
    case Kind::kNew:
        return {"new", "+", kGreen};
    case Kind::kGone:
        return {"gone", "-", kRed};
    default:
        return {"changed", "~", kYellow};
    }
}

std::string Shown(const std::string& text, const TCIMValue& value) {
    return !text.empty() ? text : value.IsNull() ? kNullText : "\"\"";
}

DisplayText TextBefore(const InstanceChange& change, const InstanceChange::Difference& difference,
                       const ValueTexts& texts) {
    return texts.Of(change.earlier.get(), difference.declaration, difference.before);
}

DisplayText TextNow(const InstanceChange& change, const InstanceChange::Difference& difference,
                    const ValueTexts& texts) {
    return texts.Of(change.instance.get(), difference.declaration, difference.now);
}

std::string ValueJson(const TCIMValue& value, const DisplayText& display) {
    std::string text;
    display.AppendJson(text);
    return JsonObject().Add("value", JsonValue(value)).Add("text", text).Text();
}

/// What every line has: the time, the round if there is one, and the change.
JsonObject Line(const char* change, std::optional<std::size_t> round = {}) {
    JsonObject line;
    line.Add("time", JsonText(TimeWithZone()));
    if (round) {
        line.Add("round", std::to_string(*round));
    }
    return line.Add("change", JsonText(change));
}

} // namespace

void ChangeWriter::Begin(const Instances& instances) const {
    if (!isJson_) {
        context_.output << TimeOfDay() << "  " << Counted(instances.size(), "instance", "instances") << '\n';
    }
    for (const auto& instance : isJson_ ? instances : Instances()) {
        WriteJson(Line("present", 0).AddMembers(InstanceMembers(*instance, properties_)));
    }
    context_.output.flush();
}

void ChangeWriter::Write(const std::vector<InstanceChange>& changes, std::size_t round) const {
    for (const InstanceChange& change : changes) {
        if (isJson_) {
            WriteJson(change, round);
        } else {
            WriteLines(change);
        }
    }
    context_.output.flush();
}

void ChangeWriter::Lose(const Failure& failure) const {
    if (isJson_) {
        WriteJson(Line("lost").Add("reason", JsonText(failure.what())));
    } else {
        context_.output << TimeOfDay() << "  " << Colored("!", kRed) << ' ' << Printable(failure.what()) << '\n';
    }
    context_.output.flush();
}

void ChangeWriter::Regain() const {
    if (isJson_) {
        WriteJson(Line("back"));
    } else {
        context_.output << TimeOfDay() << "  " << Colored("!", kGreen) << " the server answers again\n";
    }
    context_.output.flush();
}

/// The changed values stand below the instance's path.
void ChangeWriter::WriteLines(const InstanceChange& change) const {
    const KindTexts texts = TextsOf(change.kind);
    context_.output << TimeOfDay() << "  " << Colored(texts.sign, texts.color) << ' ' << Printable(change.path) << '\n';
    for (const auto& difference : change.differences) {
        context_.output << "            " << Printable(difference.name) << ": "
                        << Printable(DifferenceText(change, difference)) << '\n';
    }
}

void ChangeWriter::WriteJson(const InstanceChange& change, std::size_t round) const {
    JsonObject line = Line(TextsOf(change.kind).name, round);
    if (change.kind == Kind::kChanged) {
        AddDifferences(change, line);
    } else {
        line.AddMembers(InstanceMembers(*change.instance, change.kind == Kind::kNew ? properties_ : Names()));
    }
    WriteJson(line);
}

void ChangeWriter::WriteJson(const JsonObject& line) const { context_.output << line.Text() << '\n'; }

std::string ChangeWriter::InstanceMembers(ICIMInstance& instance, const Names& properties) const {
    TextBuffer json;
    InstanceJson(PropertySelector(properties, PropertySelector::Order::kByName), texts_).AppendMembers(instance, json);
    return std::string(json.Text());
}

void ChangeWriter::AddDifferences(const InstanceChange& change, JsonObject& line) const {
    JsonObject properties;
    for (const auto& difference : change.differences) {
        properties.Add(difference.name,
                       JsonObject()
                           .Add("old", ValueJson(difference.before, TextBefore(change, difference, texts_)))
                           .Add("new", ValueJson(difference.now, TextNow(change, difference, texts_)))
                           .Text());
    }
    line.Add("path", JsonText(change.path))
        .Add("class", JsonText(ClassNameOf(*change.instance)))
        .Add("properties", properties.Text());
}

/// `old → new`; the values as they are when people would read the same.
std::string ChangeWriter::DifferenceText(const InstanceChange& change,
                                         const InstanceChange::Difference& difference) const {
    std::string before = TextBefore(change, difference, texts_).Joined();
    std::string now = TextNow(change, difference, texts_).Joined();
    if (before == now) {
        before = RawText(difference.before);
        now = RawText(difference.now);
    }
    return Shown(before, difference.before) + " → " + Shown(now, difference.now);
}

std::string ChangeWriter::Colored(const std::string& text, const char* color) const {
    return context_.options.usesColor ? color + text + "\x1b[0m" : text;
}

} // namespace cimhttp
