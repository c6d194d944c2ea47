#include "schema/SchemaDocuments.h"

#include "schema/EmbeddedSchema.h"
#include "schema/XmlCharacters.h"

#include <pugixml.hpp>

#include <algorithm>
#include <utility>

namespace demo {

namespace {

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        (text += text.empty() ? "" : "\n") += line;
    }
    return text;
}

} // namespace

SchemaError::SchemaError(std::vector<std::string> problems)
    : std::runtime_error(Joined(problems)), problems_(std::move(problems)) {}

struct SchemaDocuments::Document {
    SchemaSource source;
    std::unique_ptr<pugi::xml_document> xml;

    std::string Line(std::ptrdiff_t offset) const {
        const auto begin = source.text.begin();
        const auto length = static_cast<std::ptrdiff_t>(source.text.size());
        const auto end = begin + std::clamp(offset, std::ptrdiff_t{0}, length);
        return source.name + ':' + std::to_string(1 + std::count(begin, end, '\n'));
    }
};

SchemaDocuments::SchemaDocuments(std::vector<SchemaSource> sources) {
    for (auto& source : sources) {
        documents_.push_back({std::move(source), std::make_unique<pugi::xml_document>()});
        const Document& document = documents_.back();
        const std::size_t bad = FirstOutsideXml(document.source.text);
        if (bad != document.source.text.size()) {
            throw SchemaError({document.Line(static_cast<std::ptrdiff_t>(bad)) + ": not UTF-8 that XML can have"});
        }
        // Text of white space alone is a value, too.
        const auto parsed =
            document.xml->load_buffer(document.source.text.data(), document.source.text.size(),
                                      pugi::parse_default | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
        if (!parsed) {
            throw SchemaError({document.Line(parsed.offset) + ": not well-formed: " + parsed.description()});
        }
        if (!document.xml->child("CIM").child("DECLARATION")) {
            throw SchemaError({document.Line(0) + ": not a CIM-XML declaration: it has no element CIM/DECLARATION"});
        }
    }
}

SchemaDocuments::~SchemaDocuments() = default;
SchemaDocuments::SchemaDocuments(SchemaDocuments&&) noexcept = default;
SchemaDocuments& SchemaDocuments::operator=(SchemaDocuments&&) noexcept = default;

std::vector<pugi::xml_node> SchemaDocuments::Objects() const {
    std::vector<pugi::xml_node> objects;
    for (const auto& document : documents_) {
        for (const auto& group : Elements(document.xml->child("CIM").child("DECLARATION"))) {
            for (const auto& object : Elements(group)) {
                // DSP0201 has declarations of qualifiers without a VALUE.OBJECT around them, many schemas have them in
                // one.
                if (std::string_view(object.name()) != "VALUE.OBJECT") {
                    objects.push_back(object);
                    continue;
                }
                const auto inner = Elements(object);
                objects.insert(objects.end(), inner.begin(), inner.end());
            }
        }
    }
    return objects;
}

std::string SchemaDocuments::Where(const pugi::xml_node& element) const {
    for (const auto& document : documents_) {
        if (element.root() == *document.xml) {
            return document.Line(element.offset_debug());
        }
    }
    return "schema";
}

std::vector<pugi::xml_node> Elements(const pugi::xml_node& parent) {
    std::vector<pugi::xml_node> elements;
    for (const auto& child : parent.children()) {
        if (child.type() == pugi::node_element) {
            elements.push_back(child);
        }
    }
    return elements;
}

SchemaSource BaseSource() { return {"cim-schema.xml", std::string(EmbeddedCimSchema())}; }

SchemaSource InteropSource() { return {"interop-schema.xml", std::string(EmbeddedInteropSchema())}; }

std::vector<SchemaSource> BuiltInSources(std::vector<SchemaSource> added) {
    added.insert(added.begin(), {BaseSource(), {"demo-schema.xml", std::string(EmbeddedDemoSchema())}});
    return added;
}

} // namespace demo
