#pragma once

#include "schema/Declarations.h"
#include "schema/Names.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// The qualifier types and classes of a namespace. Filled once by the schema reader and not changed afterwards; then
/// safe to read from any thread. A declaration stays where it is when the schema is moved.
class Schema {
  public:
    Schema() = default;
    Schema(Schema&&) = default;
    Schema& operator=(Schema&&) = default;

    /// The declaration of that name, null if there is none. It lives as long as the schema.
    const QualifierDeclaration* FindQualifier(std::string_view name) const;
    const Class* FindClass(std::string_view name) const;

    /// Whether a class is another one or below it; both names are those of classes of the schema.
    bool IsA(std::string_view name, std::string_view ancestor) const;

    /// All qualifier types, in the order of their names.
    std::vector<const QualifierDeclaration*> Qualifiers() const;

    /// The subclasses of a class, or the classes without a superclass if the name is empty, in the order of their
    /// declaration: the direct ones, or when deep all of them, each class ahead of its own subclasses.
    std::vector<const Class*> Subclasses(std::string_view name, bool deep) const;

    /// Adds a declaration, whose name is not in the schema yet.
    const QualifierDeclaration& Add(QualifierDeclaration declaration);

    /// Adds a complete class, whose name is not in the schema yet and whose superclass is.
    const Class& Add(Class declaration);

  private:
    std::map<std::string, QualifierDeclaration, NameLess> qualifiers_;
    std::map<std::string, Class, NameLess> classes_;
    std::map<std::string, std::vector<const Class*>, NameLess> subclasses_;
};

} // namespace demo
