#include "SentInstances.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

using nlohmann::json;
using pugi::xml_node;

namespace {

[[noreturn]] void Fail(const std::string& what) { throw UnreadableAnswer(what); }

std::vector<xml_node> ElementsOf(const xml_node& parent) {
    std::vector<xml_node> elements;
    std::copy_if(parent.begin(), parent.end(), std::back_inserter(elements),
                 [](const xml_node& child) { return child.type() == pugi::node_element; });
    return elements;
}

xml_node OnlyElement(const xml_node& parent) {
    const auto elements = ElementsOf(parent);
    if (elements.size() != 1) {
        Fail(std::string(parent.name()) + " holds not one element");
    }
    return elements.front();
}

std::string Attribute(const xml_node& node, const char* name) {
    if (!node.attribute(name)) {
        Fail(std::string(node.name()) + " has no " + name);
    }
    return node.attribute(name).value();
}

/// All characters of an element that holds nothing else, CDATA or not.
std::string TextOf(const xml_node& node) {
    std::string text;
    for (const xml_node& child : node.children()) {
        if (child.type() != pugi::node_pcdata && child.type() != pugi::node_cdata) {
            Fail(std::string("there is more than text in ") + node.name());
        }
        text += child.value();
    }
    return text;
}

std::string Trimmed(const std::string& text) {
    constexpr const char* kSpace = " \t\r\n";
    const auto begin = text.find_first_not_of(kSpace);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kSpace) + 1 - begin);
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// --- Paths -------------------------------------------------------------------------------------------------------

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
    }
    return quoted + '"';
}

/// How a client writes paths.
struct PathStyle {
    bool sortsKeys;
    bool quotesReferences;
    bool lowersBooleans;
};

constexpr PathStyle kProgram{true, true, true};
constexpr PathStyle kWbemcli{false, false, false};

std::string PathText(const xml_node& path, const PathStyle& style);

std::string KeyText(const xml_node& key, const PathStyle& style) {
    if (std::string_view(key.name()) == "VALUE.REFERENCE") {
        const std::string path = PathText(OnlyElement(key), style);
        return style.quotesReferences ? Quoted(path) : path;
    }
    if (std::string_view(key.name()) != "KEYVALUE") {
        Fail(std::string(key.name()) + " is no key");
    }
    const std::string type = key.attribute("VALUETYPE").as_string("string");
    if (type == "string") {
        return Quoted(TextOf(key));
    }
    const std::string text = Trimmed(TextOf(key));
    return type == "boolean" && style.lowersBooleans ? Lower(text) : text;
}

std::string InstanceNameText(const xml_node& name, const PathStyle& style) {
    std::vector<std::pair<std::string, std::string>> keys;
    for (const xml_node& binding : ElementsOf(name)) {
        if (std::string_view(binding.name()) != "KEYBINDING") {
            return Attribute(name, "CLASSNAME") + '=' + KeyText(OnlyElement(name), style);
        }
        keys.emplace_back(Attribute(binding, "NAME"), KeyText(OnlyElement(binding), style));
    }
    if (style.sortsKeys) {
        std::sort(keys.begin(), keys.end(),
                  [](const auto& one, const auto& other) { return Lower(one.first) < Lower(other.first); });
    }
    std::string text = Attribute(name, "CLASSNAME");
    char separator = '.';
    for (const auto& [key, value] : keys) {
        text += separator + key + '=' + value;
        separator = ',';
    }
    return text;
}

std::string NamespaceText(const xml_node& path) {
    std::string text;
    for (const xml_node& part : ElementsOf(path)) {
        text += (text.empty() ? "" : "/") + Attribute(part, "NAME");
    }
    return text;
}

std::string PathText(const xml_node& path, const PathStyle& style) {
    const std::string_view kind = path.name();
    if (kind == "INSTANCENAME") {
        return InstanceNameText(path, style);
    }
    const auto parts = ElementsOf(path);
    if ((kind != "INSTANCEPATH" && kind != "LOCALINSTANCEPATH") || parts.size() != 2) {
        Fail(std::string(kind) + " is no path of an instance");
    }
    const std::string name = InstanceNameText(parts[1], style);
    if (kind == "LOCALINSTANCEPATH") {
        return NamespaceText(parts[0]) + ':' + name;
    }
    return "//" + Trimmed(TextOf(parts[0].child("HOST"))) + '/' + NamespaceText(parts[0].child("LOCALNAMESPACEPATH")) +
           ':' + name;
}

// --- Values ------------------------------------------------------------------------------------------------------

template <typename Integer>
json IntegerOf(const std::string& text) {
    std::string_view digits = text;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    digits.remove_prefix(isNegative || (!digits.empty() && digits.front() == '+') ? 1 : 0);
    const bool isHexadecimal = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    digits.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const auto result =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, isHexadecimal ? 16 : 10);
    const auto greatest = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
    const std::uint64_t limit = !isNegative ? greatest : std::numeric_limits<Integer>::min() == 0 ? 0 : greatest + 1;
    if (result.ec != std::errc() || result.ptr != digits.data() + digits.size() || magnitude > limit) {
        Fail("no integer of its type: " + text);
    }
    if (isNegative && magnitude != 0) {
        return -static_cast<std::int64_t>(magnitude - 1) - 1;
    }
    return magnitude;
}

template <typename Real>
json RealOf(const std::string& text) {
    const char* const begin = text.c_str() + (!text.empty() && text.front() == '+' ? 1 : 0);
    const char* const end = text.c_str() + text.size();
    Real real{};
    const auto result = std::from_chars(begin, end, real);
    if (result.ec != std::errc() || result.ptr != end) {
        Fail("no real: " + text);
    }
    return static_cast<double>(real);
}

json BooleanOf(const std::string& text) {
    if (Lower(text) != "true" && Lower(text) != "false") {
        Fail("no boolean: " + text);
    }
    return Lower(text) == "true";
}

/// One character of the Basic Multilingual Plane.
json CharacterOf(const std::string& text) {
    const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    if (std::count_if(text.begin(), text.end(), begins) != 1 || text.size() > 3) {
        Fail("no char16: " + text);
    }
    return text;
}

json DateTimeOf(const std::string& text) {
    constexpr std::size_t kLength = 25;
    if (text.size() != kLength || text[14] != '.') {
        Fail("no date-time: " + text);
    }
    return text;
}

json ScalarOf(const std::string& type, const std::string& text) {
    using Reader = std::function<json(const std::string&)>;
    static const std::map<std::string, Reader> kReaders{
        {"boolean", BooleanOf},
        {"uint8", IntegerOf<std::uint8_t>},
        {"sint8", IntegerOf<std::int8_t>},
        {"uint16", IntegerOf<std::uint16_t>},
        {"sint16", IntegerOf<std::int16_t>},
        {"uint32", IntegerOf<std::uint32_t>},
        {"sint32", IntegerOf<std::int32_t>},
        {"uint64", IntegerOf<std::uint64_t>},
        {"sint64", IntegerOf<std::int64_t>},
        {"real32", RealOf<float>},
        {"real64", RealOf<double>},
        {"datetime", DateTimeOf},
    };
    if (type == "string") {
        return text;
    }
    if (type == "char16") {
        return CharacterOf(text);
    }
    if ((type == "boolean" || type == "datetime") && Trimmed(text).empty()) {
        return nullptr;
    }
    const auto reader = kReaders.find(type);
    if (reader == kReaders.end()) {
        Fail("no type: " + type);
    }
    return reader->second(Trimmed(text));
}

std::map<std::string, SentProperty> PropertiesIn(const xml_node& object);

pugi::xml_parse_result Parse(pugi::xml_document& document, const std::string& text) {
    return document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata,
                                pugi::encoding_utf8);
}

json EmbeddedIn(const std::string& text) {
    if (Trimmed(text).empty()) {
        return nullptr;
    }
    pugi::xml_document document;
    if (!Parse(document, text)) {
        Fail("an embedded object is not well-formed");
    }
    const xml_node object = OnlyElement(document);
    const bool isClass = std::string_view(object.name()) == "CLASS";
    json properties = json::object();
    for (const auto& [name, property] : PropertiesIn(object)) {
        properties[name] = {{"type", property.type}, {"value", property.value}};
    }
    return {{"class", Attribute(object, isClass ? "NAME" : "CLASSNAME")}, {"properties", properties}};
}

/// What VALUE or VALUE.REFERENCE, or VALUE.NULL, holds.
json ItemOf(const SentProperty& property, const xml_node& value) {
    const std::string_view kind = value.name();
    if (kind == "VALUE.NULL") {
        return nullptr;
    }
    if (kind != (property.type == "reference" ? "VALUE.REFERENCE" : "VALUE")) {
        Fail(std::string(kind) + " does not belong there");
    }
    if (property.type == "reference") {
        return PathText(OnlyElement(value), kProgram);
    }
    return property.isEmbedded ? EmbeddedIn(TextOf(value)) : ScalarOf(property.type, TextOf(value));
}

SentProperty PropertyOf(const xml_node& element) {
    const std::string_view kind = element.name();
    if (kind != "PROPERTY" && kind != "PROPERTY.ARRAY" && kind != "PROPERTY.REFERENCE") {
        Fail(std::string(kind) + " is no property");
    }
    SentProperty property;
    property.type = kind == "PROPERTY.REFERENCE" ? "reference" : Attribute(element, "TYPE");
    property.isEmbedded = property.type == "string" && element.attribute("EmbeddedObject");
    const auto values = ElementsOf(element);
    if (values.empty()) {
        return property;
    }
    const xml_node value = OnlyElement(element);
    if (kind != "PROPERTY.ARRAY" || std::string_view(value.name()) == "VALUE.NULL") {
        property.value = ItemOf(property, value);
        return property;
    }
    if (std::string_view(value.name()) != "VALUE.ARRAY") {
        Fail(std::string(value.name()) + " is no array");
    }
    property.value = json::array();
    for (const xml_node& item : ElementsOf(value)) {
        property.value.push_back(ItemOf(property, item));
    }
    return property;
}

std::map<std::string, SentProperty> PropertiesIn(const xml_node& object) {
    std::map<std::string, SentProperty> properties;
    for (const xml_node& element : ElementsOf(object)) {
        properties.emplace(Attribute(element, "NAME"), PropertyOf(element));
    }
    return properties;
}

std::string DoubledPropertyIn(const xml_node& object) {
    std::set<std::string> names;
    for (const xml_node& element : ElementsOf(object)) {
        if (!names.insert(Attribute(element, "NAME")).second) {
            return Attribute(element, "NAME");
        }
    }
    return "";
}

SentInstance InstanceOf(const xml_node& element) {
    const auto parts = ElementsOf(element);
    if (std::string_view(element.name()) != "VALUE.NAMEDINSTANCE" || parts.size() != 2 ||
        std::string_view(parts[1].name()) != "INSTANCE") {
        Fail(std::string(element.name()) + " is no instance with its name");
    }
    return {PathText(parts[0], kProgram), Attribute(parts[1], "CLASSNAME"), PropertiesIn(parts[1]),
            DoubledPropertyIn(parts[1])};
}

/// Hands each element of the return value to an action.
template <typename Action>
void ForEachReturned(const std::string& body, const Action& action) {
    pugi::xml_document document;
    if (const auto result = Parse(document, body); !result) {
        Fail(std::string("not well-formed: ") + result.description());
    }
    const xml_node response = document.child("CIM").child("MESSAGE").child("SIMPLERSP").child("IMETHODRESPONSE");
    if (!response || response.child("ERROR")) {
        Fail("no answer, or an error");
    }
    for (const xml_node& element : ElementsOf(response.child("IRETURNVALUE"))) {
        action(element);
    }
}

std::vector<std::string> ReadPaths(const std::string& body, const PathStyle& style) {
    std::vector<std::string> paths;
    ForEachReturned(body, [&](const xml_node& element) { paths.push_back(PathText(element, style)); });
    return paths;
}

// --- Comparing ---------------------------------------------------------------------------------------------------

std::string DifferenceOfObject(const json& sent, const json& shown);

bool ShowsScalar(const std::string& type, const json& sent, const json& shown) {
    if (type == "real32") {
        return shown.is_number() && static_cast<float>(shown.get<double>()) == static_cast<float>(sent.get<double>());
    }
    return type == "real64" ? shown.is_number() && shown.get<double>() == sent.get<double>() : shown == sent;
}

/// Also true for the MOF of an embedded object, whose structure stands beside it.
bool ShowsValue(const std::string& type, const json& sent, const json& shown) {
    if (sent.is_null()) {
        return shown.is_null();
    }
    if (sent.is_array()) {
        const auto shows = [&](const json& one, const json& other) { return ShowsValue(type, one, other); };
        return shown.is_array() && std::equal(sent.begin(), sent.end(), shown.begin(), shown.end(), shows);
    }
    if (sent.is_object()) {
        return shown.is_string() &&
               shown.get<std::string>().find(sent.at("class").get<std::string>()) != std::string::npos;
    }
    return ShowsScalar(type, sent, shown);
}

/// In what the objects beside the MOF of a property differ.
std::string DifferenceOfEmbedded(const json& sent, const json& shown) {
    if (sent.is_null()) {
        return shown.is_null() ? "" : "an object that was not sent: " + shown.dump();
    }
    if (!sent.is_array()) {
        return DifferenceOfObject(sent, shown);
    }
    const bool hasObjects = std::any_of(sent.begin(), sent.end(), [](const json& one) { return !one.is_null(); });
    if (shown.is_null() && !hasObjects) {
        return "";
    }
    if (!shown.is_array() || shown.size() != sent.size()) {
        return "other embedded objects: " + shown.dump();
    }
    std::string difference;
    for (std::size_t i = 0; i < sent.size() && difference.empty(); ++i) {
        difference = DifferenceOfEmbedded(sent[i], shown[i]);
    }
    return difference;
}

std::string DifferenceOfProperty(const SentProperty& sent, const json& shown) {
    if (!ShowsValue(sent.type, sent.value, shown.at("value"))) {
        return "sent " + sent.value.dump() + ", shown " + shown.at("value").dump();
    }
    if (sent.value.is_null()) {
        return "";
    }
    if (shown.at("type") != sent.type) {
        return "sent as " + sent.type + ", shown as " + shown.at("type").dump();
    }
    return sent.isEmbedded ? DifferenceOfEmbedded(sent.value, shown.value("object", json())) : "";
}

std::string DifferenceOfProperties(const std::map<std::string, SentProperty>& sent, const json& shown) {
    for (const auto& [name, property] : sent) {
        if (!shown.contains(name)) {
            if (!property.value.is_null()) {
                return name + ": not shown";
            }
            continue;
        }
        if (const std::string difference = DifferenceOfProperty(property, shown.at(name)); !difference.empty()) {
            return name + ": " + difference;
        }
    }
    for (const auto& [name, property] : shown.items()) {
        if (sent.count(name) == 0 && !property.at("value").is_null()) {
            return name + ": not sent, shown as " + property.dump();
        }
    }
    return "";
}

/// The objects as EmbeddedIn() gives it and as the program shows it: there, properties are their values.
std::string DifferenceOfObject(const json& sent, const json& shown) {
    const std::string difference = "sent " + sent.dump() + ", shown " + shown.dump();
    if (!shown.is_object() || shown.value("class", json()) != sent.at("class")) {
        return difference;
    }
    const json& properties = sent.at("properties");
    for (const auto& [name, property] : properties.items()) {
        const json value = shown.at("properties").value(name, json());
        if (!ShowsValue(property.at("type"), property.at("value"), value)) {
            return difference;
        }
    }
    for (const auto& [name, value] : shown.at("properties").items()) {
        if (!properties.contains(name) && !value.is_null()) {
            return difference;
        }
    }
    return "";
}

} // namespace

std::vector<SentInstance> ReadSentInstances(const std::string& body) {
    std::vector<SentInstance> instances;
    ForEachReturned(body, [&](const xml_node& element) { instances.push_back(InstanceOf(element)); });
    return instances;
}

std::vector<std::string> ReadSentPaths(const std::string& body) { return ReadPaths(body, kProgram); }

std::vector<std::string> ReadSentPathsAsWbemcliShowsThem(const std::string& body) { return ReadPaths(body, kWbemcli); }

void KeepProperties(const std::set<std::string>& names, std::vector<SentInstance>& instances) {
    for (SentInstance& instance : instances) {
        for (auto property = instance.properties.begin(); property != instance.properties.end();) {
            property = names.count(property->first) == 0 ? instance.properties.erase(property) : std::next(property);
        }
    }
}

std::string DifferenceFromSent(const std::vector<SentInstance>& sent, const json& shown) {
    std::map<std::string, const json*> records;
    for (const json& record : shown) {
        if (!records.emplace(record.at("path").get<std::string>(), &record).second) {
            return "shown twice: " + record.at("path").dump();
        }
    }
    if (records.size() != sent.size()) {
        return std::to_string(sent.size()) + " instances were sent, " + std::to_string(records.size()) + " are shown";
    }
    for (const SentInstance& instance : sent) {
        const auto found = records.find(instance.path);
        if (found == records.end()) {
            return "not shown, or sent twice: " + instance.path;
        }
        const json record = *found->second;
        records.erase(found);
        if (record.at("class") != instance.className) {
            return instance.path + ": sent as one of " + instance.className + ", shown as " + record.at("class").dump();
        }
        if (!instance.doubledProperty.empty()) {
            return instance.path + ", sent twice: " + instance.doubledProperty;
        }
        const std::string difference = DifferenceOfProperties(instance.properties, record.at("properties"));
        if (!difference.empty()) {
            return instance.path + ", " + difference;
        }
    }
    return "";
}
