#include "providers/AllTypesProvider.h"

#include "wire/CimXmlWriter.h"

#include <array>

namespace demo {

namespace {

/// The name that the properties of a type are made of, and its least and greatest value. What text is, is longer.
struct Extremes {
    const char* type;
    const char* least;
    const char* greatest;
};

constexpr std::array kExtremes{
    Extremes{"Boolean", "FALSE", "TRUE"},
    Extremes{"Uint8", "0", "255"},
    Extremes{"Sint8", "-128", "127"},
    Extremes{"Uint16", "0", "65535"},
    Extremes{"Sint16", "-32768", "32767"},
    Extremes{"Uint32", "0", "4294967295"},
    Extremes{"Sint32", "-2147483648", "2147483647"},
    Extremes{"Uint64", "0", "18446744073709551615"},
    Extremes{"Sint64", "-9223372036854775808", "9223372036854775807"},
    Extremes{"Real32", "-3.40282347e+38", "3.40282347e+38"},
    Extremes{"Real64", "-1.7976931348623157e+308", "1.7976931348623157e+308"},
    Extremes{"Char16", "!", "\xEF\xBF\xBD"},
    Extremes{"String", "",
             "Gr\xC3\xB6\xC3\x9F"
             "e: <5 & >3, \"10 \xE2\x82\xAC\", it's \xF0\x9F\x98\x80\n\tnext line"},
};

constexpr const char* kEarliest = "00010101000000.000000+000";
constexpr const char* kLatest = "99991231235959.999999+720";

std::string Point(const Schema& schema, int x, int y, const std::string& label) {
    Instance point{"DEMO_Point", {}};
    point.values["X"] = Value::Number(x);
    point.values["Y"] = Value::Number(y);
    point.values["Label"] = Value::Text(label);
    return EmbeddedInstanceText(*schema.FindClass(point.className), point);
}

Instance Least(const Schema& schema) {
    Instance instance{"DEMO_AllTypes", {}};
    for (const auto& [type, least, greatest] : kExtremes) {
        instance.values[std::string("A") + type] = Value::Text(least);
        instance.values[std::string(type) + 's'] = Value::Array({});
    }
    instance.values["InstanceID"] = Value::Text("least");
    instance.values["ATimestamp"] = Value::Text(kEarliest);
    instance.values["AnInterval"] = Value::Text("00000000000000.000000:000");
    instance.values["APoint"] = Value::Text(Point(schema, 0, 0, ""));
    instance.values["Datetimes"] = Value::Array({});
    instance.values["Points"] = Value::Array({});
    instance.values["State"] = Value::Number(0);
    instance.values["Flags"] = Value::Number(0);
    instance.values["Signed"] = Value::Number(-1024);
    return instance;
}

Instance Greatest(const Schema& schema) {
    Instance instance{"DEMO_AllTypes", {}};
    for (const auto& [type, least, greatest] : kExtremes) {
        instance.values[std::string("A") + type] = Value::Text(greatest);
        instance.values[std::string(type) + 's'] = Value::Array({least, std::nullopt, greatest});
    }
    instance.values["InstanceID"] = Value::Text("greatest");
    instance.values["ATimestamp"] = Value::Text(kLatest);
    instance.values["AnInterval"] = Value::Text("99999999235959.999999:000");
    instance.values["APoint"] = Value::Text(Point(schema, 3, -4, "<a> & \"b\""));
    instance.values["Datetimes"] = Value::Array({kEarliest, std::nullopt, "00000001010101.000001:000"});
    instance.values["Points"] = Value::Array({Point(schema, 1, 2, "one"), Point(schema, 3, 4, "two")});
    instance.values["State"] = Value::Number(65535);
    instance.values["Flags"] = Value::Number(0b10100101);
    instance.values["Signed"] = Value::Number(2048);
    return instance;
}

/// Nothing but the key.
Instance Nulls() { return {"DEMO_AllTypes", {{"InstanceID", Value::Text("null")}}}; }

} // namespace

AllTypesProvider::AllTypesProvider(const Schema& schema) : instances_{Least(schema), Greatest(schema), Nulls()} {}

void AllTypesProvider::Enumerate(const Visitor& visit) const {
    for (const auto& instance : instances_) {
        visit(instance);
    }
}

} // namespace demo
