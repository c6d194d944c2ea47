#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pugi {
class xml_document;
class xml_node;
} // namespace pugi

namespace demo {

/// A schema that cannot be used. The text has a line for each problem: the file and the line in it, the declaration,
/// and what is wrong with it.
class SchemaError : public std::runtime_error {
  public:
    /// There is at least one problem.
    explicit SchemaError(std::vector<std::string> problems);

    const std::vector<std::string>& Problems() const { return problems_; }

  private:
    std::vector<std::string> problems_;
};

/// A CIM-XML declaration document, and the name of its file for messages.
struct SchemaSource {
    std::string name;
    std::string text;
};

/// The documents that make up a schema together (DSP0201: CIM/DECLARATION), and where in them an element stands.
class SchemaDocuments {
  public:
    /// Throws SchemaError when a document is not well-formed or no declaration.
    explicit SchemaDocuments(std::vector<SchemaSource> sources);
    ~SchemaDocuments();
    SchemaDocuments(SchemaDocuments&&) noexcept;
    SchemaDocuments& operator=(SchemaDocuments&&) noexcept;

    /// The declared objects of all documents: QUALIFIER.DECLARATION, CLASS, INSTANCE and whatever else stands in their
    /// place. They live as long as this object.
    std::vector<pugi::xml_node> Objects() const;

    /// File and line of an element, as in "disks.xml:12".
    std::string Where(const pugi::xml_node& element) const;

  private:
    struct Document;

    std::vector<Document> documents_;
};

/// The elements in an element, without the white space between them.
std::vector<pugi::xml_node> Elements(const pugi::xml_node& parent);

// The schemas that the program carries with it.

/// What every namespace has: the qualifiers, and classes to build on.
SchemaSource BaseSource();

/// What the Interop namespace has beside it.
SchemaSource InteropSource();

/// What root/cimv2 has, and what is added to that.
std::vector<SchemaSource> BuiltInSources(std::vector<SchemaSource> added = {});

} // namespace demo
