#include "commands/Collection.h"

#include "output/ClassJson.h"
#include "output/InstanceJson.h"
#include "output/Json.h"
#include "text/TextBuffer.h"

#include <ostream>

namespace cimhttp {

namespace {

// Only one instance at a time is built in memory.
void WriteClass(const Collection::Class& cls, const ValueTexts& texts, std::ostream& output) {
    std::string definition = ClassJson(cls.definition);
    definition.back() = ','; // for its brace: the instances are its last member
    output << definition << "\n\"instances\":";
    InstanceJson instanceJson(PropertySelector(PropertySelector::Order::kByName), texts);
    TextBuffer json;
    JsonLines lines(output);
    for (const auto& instance : cls.instances) {
        json.Clear();
        instanceJson.Append(*instance, json);
        lines.Next() << json.Text();
    }
    lines.End("]");
    output << '}';
}

} // namespace

void WriteJson(const Collection& collection, const ValueTexts& texts, std::ostream& output) {
    output << (collection.isOneOfSeveral ? "{\"url\":" : "{\"server\":") << JsonText(collection.server)
           << ",\n\"classes\":";
    JsonLines lines(output);
    for (const Collection::Class& cls : collection.classes) {
        WriteClass(cls, texts, lines.Next());
    }
    lines.End("]");
    output << ",\n\"complete\":" << JsonValue(collection.complete) << "}\n";
}

} // namespace cimhttp
