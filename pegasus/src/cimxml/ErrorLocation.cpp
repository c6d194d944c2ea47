#include "cimxml/ErrorLocation.h"

#include "xml/DecodingError.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Pegasus::cimxml {

using xml::DecodingError;
using xml::EndOfText;
using xml::XmlReader;

namespace {

struct Label {
    std::string_view element; // or how it begins
    std::string_view word;
};

/// The elements that have a name of their own within an object.
constexpr std::array<Label, 7> kLabels = {{{"PROPERTY", ""},
                                           {"QUALIFIER.DECLARATION", "qualifier declaration "},
                                           {"QUALIFIER", "qualifier "},
                                           {"METHOD", "method "},
                                           {"PARAMETER", "parameter "},
                                           {"PARAMVALUE", "output parameter "},
                                           {"KEYBINDING", "key "}}};

const Label* labelOf(std::string_view element) noexcept {
    const auto* const found = std::find_if(kLabels.begin(), kLabels.end(), [&](const Label& label) {
        return element.substr(0, label.element.size()) == label.element;
    });
    return found == kLabels.end() ? nullptr : found;
}

/// Whether an element holds characters and no others.
bool isText(std::string_view element) noexcept {
    return element == "VALUE" || element == "KEYVALUE" || element == "HOST";
}

bool isPath(std::string_view element) noexcept {
    constexpr std::array<std::string_view, 6> kPaths = {"INSTANCENAME", "INSTANCEPATH", "LOCALINSTANCEPATH",
                                                        "CLASSNAME",    "CLASSPATH",    "LOCALCLASSPATH"};
    return std::find(kPaths.begin(), kPaths.end(), element) != kPaths.end();
}

} // namespace

ErrorLocation::ErrorLocation(std::string_view text, std::string_view parent) : text_(text), reader_(tags_) {
    reader_.start(text, parent);
}

void ErrorLocation::goTo(std::size_t position) {
    try {
        while (!ended_ && reader_.position() <= position) {
            step();
        }
    } catch (const EndOfText&) {
        ended_ = true;
    } catch (const DecodingError&) {
        ended_ = true;
    }
}

void ErrorLocation::step() {
    if (std::exchange(left_, false) && !open_.empty()) {
        open_.pop_back();
    }
    if (!open_.empty() && isText(open_.back().element)) {
        reader_.text();
        left_ = true;
    } else if (reader_.depth() == 0 && reader_.ahead() != XmlReader::Ahead::Element) {
        ended_ = true;
    } else if (reader_.nextElement()) {
        enter();
    } else {
        left_ = true;
    }
}

void ErrorLocation::enter() {
    Step& next = open_.emplace_back();
    next.element = reader_.name();
    if (const Label* const label = labelOf(next.element)) {
        next.label = std::string(label->word).append(reader_.attributes().find("NAME").value_or("?"));
        next.isProperty = label->word.empty();
    }
    noteObject();
    if (open_.size() <= 2 && path_.empty() && isPath(next.element)) {
        notePath();
    }
}

void ErrorLocation::noteObject() {
    const bool isClass = reader_.name() == "CLASS";
    if (isClass || reader_.name() == "INSTANCE" || (className_.empty() && reader_.name() == "INSTANCENAME")) {
        isClass_ = isClass;
        className_ = reader_.attributes().find(isClass ? "NAME" : "CLASSNAME").value_or("");
    }
}

/// The path is read separately: where it is not valid, its elements are looked at all the same.
void ErrorLocation::notePath() {
    try {
        XmlReader apart(tags_, nullptr, text_.substr(reader_.tagPosition()));
        apart.nextElement();
        path_ = std::string(paths_.decodePath(apart).toString().view());
    } catch (const EndOfText&) {
    } catch (const DecodingError&) {
        // stays unknown
    }
}

std::string ErrorLocation::element(std::string_view wordForProperty) const {
    std::string names;
    for (auto step = open_.rbegin(); step != open_.rend(); ++step) {
        if (!step->label.empty()) {
            names.append(names.empty() ? "" : " of ").append(step->isProperty ? wordForProperty : "");
            names.append(step->label);
        }
    }
    return names;
}

std::string ErrorLocation::text() const {
    const std::string names = element("property ");
    std::string object = path_;
    if (object.empty() && !className_.empty()) {
        object = (isClass_ ? "the class " : "an instance of ") + className_;
    }
    std::string where = names.empty() && object.empty() ? "" : ", in ";
    where.append(names).append(names.empty() || object.empty() ? "" : " of ").append(object);
    return where;
}

} // namespace Pegasus::cimxml
