#include "SecondSchema.h"

#include "schema/SchemaReader.h"
#include "support/ProgramRun.h"

demo::SchemaSource SecondSchema() { return {"second-schema.xml", support::ReadFile(CIMHTTP_SECOND_SCHEMA)}; }

const demo::Schema& WholeSchema() {
    static const demo::Schema schema = demo::ReadSchema(demo::SchemaDocuments(demo::BuiltInSources({SecondSchema()})));
    return schema;
}

std::set<std::string> PropertyNames(const std::string& className) {
    std::set<std::string> names;
    for (const auto& property : WholeSchema().FindClass(className)->properties) {
        names.insert(property.name);
    }
    return names;
}
