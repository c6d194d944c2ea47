#include "AnswerMutation.h"

#include <pugixml.hpp>

#include <algorithm>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

using pugi::xml_node;

namespace {

using Expectation = MutatedAnswer::Expectation;
using Texts = std::vector<std::string>;

/// Values of each type, as a server may write them.
const std::map<std::string, Texts> kValues{
    {"boolean", {"TRUE", "FALSE", "true", "false", " True\n"}},
    {"uint8", {"0", "1", "255", "0x1F", " 7 ", "+7"}},
    {"sint8", {"0", "-128", "127", "-1", "0x7f"}},
    {"uint16", {"0", "65535", "0xFFFF", "12"}},
    {"sint16", {"-32768", "32767", "0"}},
    {"uint32", {"4294967295", "0", "2147483648"}},
    {"sint32", {"-2147483648", "2147483647", "-1"}},
    {"uint64", {"18446744073709551615", "9007199254740993", "0"}},
    {"sint64", {"-9223372036854775808", "9223372036854775807", "-9007199254740993"}},
    {"real32", {"0", "-0.1", "3.40282347e+38", "1E-3", "+16777217"}},
    {"real64", {"0.1", "-1.7976931348623157e+308", "4.9e-300", "123456789.123456789", "+0.5"}},
    {"char16", {"x", " ", "\"", "\xC3\x9F", "\xE2\x82\xAC", "\xEF\xBF\xBD"}},
    {"string",
     {"", " ", "  two  ", "NULL", "null", "a\tb\nc", "\"quoted\" \\ and <more> & more", "\xF0\x9F\x98\x80 \xC3\xA4",
      "0", "{1, 2}", "<INSTANCE CLASSNAME=\"A\"/>"}},
    {"datetime", {"19991231235959.999999-720", "20260228120000.000000+000", "00000001000000.000000:000"}},
};

/// Texts that are no value of a type.
const std::map<std::string, Texts> kGarbage{
    {"boolean", {"maybe", "0", "1", "TRUE FALSE"}},
    {"char16", {"", "ab", "\xF0\x9F\x98\x80"}},
    {"datetime", {"yesterday", "20261340000000.000000+000", "2026", "20260228120000.000000 000"}},
};
const Texts kNoInteger{"abc", "", "1.5", "--1", "0x", "1 2", "99999999999999999999999", "-99999999999999999999999"};
const Texts kNoReal{"abc", "", "1.5x", "--1", ".", "1e", "1 2"};

const Texts kOtherTypes{"boolean", "uint8",  "sint8",  "uint16", "sint16", "uint32", "sint32",
                        "uint64",  "sint64", "real32", "real64", "char16", "string", "datetime"};
const Texts kClasses{"WH_Thing", "WH_Item",   "WH_Box",    "WH_Crate",      "WH_Pallet",
                     "WH_Shelf", "WH_Ticket", "WH_Sample", "WH_DatedSample"};
const Texts kUnknownClasses{"WH_Bogus", "wh", "CIM_Bogus"};

bool IsNamed(const xml_node& node, std::string_view name) { return node.name() == name; }

std::vector<xml_node> ElementsOf(const xml_node& parent) {
    std::vector<xml_node> elements;
    std::copy_if(parent.begin(), parent.end(), std::back_inserter(elements),
                 [](const xml_node& child) { return child.type() == pugi::node_element; });
    return elements;
}

bool IsArray(const xml_node& property) { return IsNamed(property, "PROPERTY.ARRAY"); }
bool IsReference(const xml_node& property) { return IsNamed(property, "PROPERTY.REFERENCE"); }
bool IsEmbedded(const xml_node& property) { return property.attribute("EmbeddedObject"); }
bool IsNull(const xml_node& property) { return ElementsOf(property).empty(); }

void SetText(xml_node value, const std::string& text) {
    value.remove_children();
    if (!text.empty()) {
        value.append_child(pugi::node_pcdata).set_value(text.c_str());
    }
}

/// An answer that is being changed.
class Mutator {
  public:
    Mutator(const std::string& body, std::mt19937& random) : random_(random) {
        if (!document_.load_buffer(body.data(), body.size(), pugi::parse_default | pugi::parse_ws_pcdata)) {
            throw std::logic_error("the answer to be changed is not well-formed");
        }
        returned_ = document_.select_node("/CIM/MESSAGE/SIMPLERSP/IMETHODRESPONSE/IRETURNVALUE").node();
    }

    Expectation Apply(Mutation mutation) {
        switch (mutation) {
        case Mutation::kOtherValue:
            return OtherValue();
        case Mutation::kNoValue:
            return NoValue();
        case Mutation::kNoProperty:
            return NoProperty();
        case Mutation::kOtherName:
            return OtherName();
        case Mutation::kOtherType:
            return OtherType();
        case Mutation::kOtherArrayness:
            return OtherArrayness();
        case Mutation::kDoubledInstance:
            return DoubledInstance();
        case Mutation::kOtherKey:
            return OtherKey();
        case Mutation::kNoKey:
            return NoKey();
        case Mutation::kOtherClass:
            return OtherClass(kClasses, Expectation::kEither);
        case Mutation::kUnknownClass:
            return OtherClass(kUnknownClasses, Expectation::kRefused);
        case Mutation::kGarbage:
            return Garbage();
        case Mutation::kCut:
            break;
        }
        return Expectation::kRefused;
    }

    std::string Body() const {
        std::ostringstream text;
        document_.save(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        return text.str();
    }

    const std::string& What() const { return what_; }

    std::size_t Below(std::size_t limit) { return random_() % limit; }

  private:
    bool Toss() { return Below(2) == 0; }

    template <typename List>
    const auto& One(const List& list) {
        if (list.empty()) {
            throw std::logic_error("there is nothing to be changed");
        }
        return list[Below(list.size())];
    }

    /// The nodes of the answer that XPath finds and that a condition holds for.
    template <typename Condition>
    std::vector<xml_node> Nodes(const char* path, const Condition& condition) const {
        std::vector<xml_node> nodes;
        for (const auto& found : returned_.select_nodes(path)) {
            if (condition(found.node())) {
                nodes.push_back(found.node());
            }
        }
        return nodes;
    }

    template <typename Condition>
    xml_node OneProperty(const Condition& condition) {
        const xml_node property =
            One(Nodes("VALUE.NAMEDINSTANCE/INSTANCE/*", [&](const xml_node& node) { return condition(node); }));
        Tell(property.attribute("NAME").value());
        return property;
    }

    /// A property with a value that is not empty.
    xml_node OneFilledProperty() {
        return OneProperty([](const xml_node& property) {
            return !IsNull(property) && !(IsArray(property) && ElementsOf(property.child("VALUE.ARRAY")).empty());
        });
    }

    /// The element that holds the value, or one of those of an array.
    xml_node OneValue(const xml_node& property) {
        return One(ElementsOf(IsArray(property) ? property.child("VALUE.ARRAY") : property));
    }

    void Tell(const std::string& what) { what_ += (what_.empty() ? "" : ", ") + what; }

    Expectation OtherValue() {
        const xml_node property =
            OneProperty([](const xml_node& node) { return !IsNull(node) && !IsEmbedded(node) && !IsReference(node); });
        const std::string& text = One(kValues.at(property.attribute("TYPE").value()));
        Tell('"' + text + '"');
        if (!IsArray(property)) {
            SetText(property.child("VALUE"), text);
            return Expectation::kShown;
        }
        xml_node array = property.child("VALUE.ARRAY");
        const auto items = ElementsOf(array);
        if (!items.empty() && Toss()) {
            array.remove_child(One(items));
        }
        SetText(array.append_child("VALUE"), text);
        return Expectation::kShown;
    }

    Expectation NoValue() {
        xml_node property = OneFilledProperty();
        if (!IsArray(property) || Below(3) == 0) {
            property.remove_children();
            return Expectation::kShown;
        }
        const xml_node item = OneValue(property);
        if (Toss()) {
            property.child("VALUE.ARRAY").insert_child_before("VALUE.NULL", item);
        }
        property.child("VALUE.ARRAY").remove_child(item);
        return Expectation::kShown;
    }

    Expectation NoProperty() {
        const xml_node property = OneProperty([](const xml_node&) { return true; });
        property.parent().remove_child(property);
        return Expectation::kShown;
    }

    Expectation OtherName() {
        const xml_node property = OneProperty([](const xml_node& node) { return !IsNull(node); });
        const auto siblings = ElementsOf(property.parent());
        const std::string other = siblings.size() > 1 && Toss() ? One(siblings).attribute("NAME").value() : "Bogus";
        const bool isOther = other != property.attribute("NAME").value();
        Tell("as " + other);
        property.attribute("NAME").set_value(other.c_str());
        return isOther ? Expectation::kRefused : Expectation::kShown;
    }

    Expectation OtherType() {
        const xml_node property = OneProperty([](const xml_node& node) { return !IsReference(node); });
        const std::string& type = One(kOtherTypes);
        const bool isOther = type != property.attribute("TYPE").value();
        Tell("as " + type);
        property.attribute("TYPE").set_value(type.c_str());
        return !isOther ? Expectation::kShown : IsNull(property) ? Expectation::kEither : Expectation::kRefused;
    }

    Expectation OtherArrayness() {
        xml_node property = OneProperty([](const xml_node& node) { return !IsReference(node); });
        return IsArray(property) ? ArrayToScalar(property) : ScalarToArray(property);
    }

    static Expectation ScalarToArray(xml_node property) {
        property.set_name("PROPERTY.ARRAY");
        if (IsNull(property)) {
            return Expectation::kEither;
        }
        const xml_node value = property.child("VALUE");
        property.append_child("VALUE.ARRAY").append_move(value);
        return Expectation::kRefused;
    }

    static Expectation ArrayToScalar(xml_node property) {
        property.set_name("PROPERTY");
        if (IsNull(property)) {
            return Expectation::kEither;
        }
        const xml_node array = property.child("VALUE.ARRAY");
        const auto items = ElementsOf(array);
        const std::string text = items.empty() ? "" : items.front().text().get();
        SetText(property.append_child("VALUE"), text);
        property.remove_child(array);
        const std::string_view type = property.attribute("TYPE").value();
        const bool canBeNull = IsEmbedded(property) || type == "boolean" || type == "datetime";
        return canBeNull && text.empty() ? Expectation::kEither : Expectation::kRefused;
    }

    xml_node OneInstance() {
        return One(Nodes("*", [](const xml_node& node) { return node.type() == pugi::node_element; }));
    }

    Expectation DoubledInstance() {
        const xml_node instance = OneInstance();
        if (Toss()) {
            returned_.append_copy(instance);
        } else {
            returned_.insert_copy_after(instance, instance);
        }
        return Expectation::kRefused;
    }

    /// A key of the path, or of the path that is a key.
    Expectation OtherKey() {
        const xml_node key = One(Nodes("(.|*)/INSTANCENAME//KEYVALUE", [](const xml_node&) { return true; }));
        const std::string type = key.attribute("VALUETYPE").value();
        const std::string& text =
            type == "numeric" ? One(kValues.at("sint32")) : One(kValues.at(type == "boolean" ? "boolean" : "string"));
        Tell("key \"" + text + '"');
        SetText(key, text);
        // The keys of a shelf are a date-time and a character: any text need not be one.
        const std::string_view className = key.parent().parent().attribute("CLASSNAME").value();
        return className != "WH_Shelf" ? Expectation::kShown : Expectation::kEither;
    }

    Expectation NoKey() {
        const xml_node key = One(Nodes("(.|*)/INSTANCENAME/KEYBINDING", [](const xml_node&) { return true; }));
        Tell(key.attribute("NAME").value());
        key.parent().remove_child(key);
        return Expectation::kEither;
    }

    Expectation OtherClass(const Texts& classes, Expectation expectation) {
        const xml_node instance = OneInstance();
        const std::string& name = One(classes);
        const std::size_t which = Below(3);
        if (which != 0) {
            const xml_node path = IsNamed(instance, "INSTANCENAME") ? instance : instance.child("INSTANCENAME");
            path.attribute("CLASSNAME").set_value(name.c_str());
        }
        if (which != 1) {
            instance.child("INSTANCE").attribute("CLASSNAME").set_value(name.c_str());
        }
        Tell((which == 0 ? "INSTANCE " : which == 1 ? "INSTANCENAME " : "both ") + name);
        return which == 1 ? Expectation::kEither : expectation;
    }

    Expectation Garbage() {
        const xml_node property = OneFilledProperty();
        xml_node value = OneValue(property);
        if (IsReference(property)) {
            ElementsOf(value).front().set_name("BOGUS");
            return Expectation::kRefused;
        }
        const std::string type = property.attribute("TYPE").value();
        const auto known = kGarbage.find(type);
        const bool isReal = type == "real32" || type == "real64";
        const std::string text = IsEmbedded(property)      ? "<INSTANCE CLASSNAME=\"WH_Point\">"
                                 : type == "string"        ? "any <text>"
                                 : known != kGarbage.end() ? One(known->second)
                                 : isReal                  ? One(kNoReal)
                                                           : One(kNoInteger);
        Tell('"' + text + '"');
        value.set_name("VALUE");
        SetText(value, text);
        return type == "string" && !IsEmbedded(property) ? Expectation::kShown : Expectation::kRefused;
    }

    std::mt19937& random_;
    pugi::xml_document document_;
    xml_node returned_;
    std::string what_;
};

/// A begin of the body, sent as the whole or as what came before the connection broke.
MutatedAnswer Cut(const std::string& body, std::mt19937& random) {
    constexpr std::string_view kEnd = "</CIM>";
    MutatedAnswer mutated;
    mutated.sent.body = body.substr(0, random() % (body.rfind(kEnd) + kEnd.size()));
    mutated.sent.toldLength = random() % 2 == 0 ? body.size() : mutated.sent.body.size();
    mutated.expectation = Expectation::kRefused;
    mutated.what = "cut after " + std::to_string(mutated.sent.body.size()) + " bytes";
    return mutated;
}

} // namespace

MutatedAnswer Mutate(const std::string& body, Mutation mutation, std::mt19937& random) {
    if (mutation == Mutation::kCut) {
        return Cut(body, random);
    }
    Mutator mutator(body, random);
    const Expectation expectation = mutator.Apply(mutation);
    const std::string mutated = mutator.Body();
    return {{mutated, mutated.size()}, expectation, mutator.What()};
}
