#include "commands/Collection.h"

#include "commands/CollectedClass.h"
#include "output/Json.h"

#include <ostream>

namespace cimhttp {

void WriteJson(const Collection& collection, std::ostream& output) {
    output << (collection.isOneOfSeveral ? "{\"url\":" : "{\"server\":") << JsonText(collection.server)
           << ",\n\"classes\":";
    JsonLines lines(output);
    for (const auto& cls : collection.classes) {
        cls->WriteTo(lines.Next());
    }
    lines.End("]");
    output << ",\n\"complete\":" << JsonValue(collection.complete) << "}\n";
}

} // namespace cimhttp
