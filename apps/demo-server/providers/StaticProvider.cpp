#include "providers/StaticProvider.h"

#include "schema/CheckedPath.h"
#include "schema/DeclaredValue.h"
#include "schema/PathText.h"
#include "wire/ObjectPathReader.h"

#include <pugixml.hpp>

#include <algorithm>
#include <map>

namespace demo {

namespace {

/// Reads the instances of the documents, as far as they are right, and gathers what is wrong with the others.
class Reader {
  public:
    Reader(const SchemaDocuments& documents, const Schema& schema, const std::string& nameSpace)
        : documents_(documents), schema_(schema), nameSpace_(nameSpace) {}

    std::map<std::string, std::vector<Instance>> Read() {
        for (const auto& object : documents_.Objects()) {
            if (std::string_view(object.name()) == "INSTANCE") {
                Try(object, [&] { AddInstance(object); });
            }
        }
        if (!problems_.empty()) {
            throw SchemaError(std::move(problems_));
        }
        return std::move(instances_);
    }

  private:
    template <typename Action>
    void Try(const pugi::xml_node& element, Action action) {
        try {
            action();
        } catch (const std::exception& error) {
            problems_.push_back(documents_.Where(element) + ": instance of " + className_ + ": " + error.what());
        }
    }

    void AddInstance(const pugi::xml_node& node) {
        className_ = node.attribute("CLASSNAME").value();
        const Class* const declaration = schema_.FindClass(className_);
        if (!declaration) {
            throw DeclarationError("there is no such class");
        }
        if (declaration->Is("Abstract")) {
            throw DeclarationError("the class is abstract");
        }
        const auto problemsBefore = problems_.size();
        Instance instance{declaration->name, {}};
        for (const auto& element : Elements(node)) {
            if (std::string_view(element.name()) != "QUALIFIER") {
                Try(element, [&] { AddProperty(element, *declaration, instance); });
            }
        }
        if (problems_.size() != problemsBefore) {
            return;
        }
        CheckKeys(*declaration, instance);
        instances_[declaration->name].push_back(std::move(instance));
    }

    void AddProperty(const pugi::xml_node& node, const Class& declaration, Instance& instance) const {
        const std::string name = node.attribute("NAME").value();
        const Property* const property = declaration.FindProperty(name);
        if (!property) {
            throw DeclarationError("the class has no property \"" + name + '"');
        }
        const std::string_view kind = node.name();
        const std::string_view wanted = property->type == CimType::kReference ? "PROPERTY.REFERENCE"
                                        : property->isArray                   ? "PROPERTY.ARRAY"
                                                                              : "PROPERTY";
        if (kind != wanted) {
            throw DeclarationError("property " + name + " must be a " + std::string(wanted));
        }
        if (property->type != CimType::kReference && ReadDeclaredType(node) != property->type) {
            throw DeclarationError("property " + name + " is of type " + std::string(TypeName(property->type)));
        }
        Value value = property->type == CimType::kReference
                          ? ReadReference(node)
                          : ReadDeclaredValue(node, property->type, property->isArray);
        if (!instance.values.emplace(property->name, std::move(value)).second) {
            throw DeclarationError("property " + name + " is there twice");
        }
    }

    Value ReadReference(const pugi::xml_node& node) const {
        const auto value = node.child("VALUE.REFERENCE");
        if (!value) {
            return {};
        }
        const ObjectPath path = ReadObjectPath(value.first_child());
        if (!path.host.empty() || !(path.nameSpace.empty() || SameName(path.nameSpace, nameSpace_))) {
            return Value::Reference(path);
        }
        const Class* const declaration = schema_.FindClass(path.className);
        if (!declaration) {
            throw DeclarationError("refers to class " + path.className + ", which is not declared");
        }
        return Value::Reference(CheckedPath(schema_, nameSpace_, *declaration, path));
    }

    void CheckKeys(const Class& declaration, const Instance& instance) {
        const ObjectPath path = PathOf(declaration, instance);
        if (path.keys.empty()) {
            throw DeclarationError("the class has no keys");
        }
        for (const auto& key : path.keys) {
            if (key.value.IsNull()) {
                throw DeclarationError("the key " + key.name + " has no value");
            }
        }
        // Keys are compared in their normal form, in which all providers have them.
        if (PathText(CheckedPath(schema_, nameSpace_, declaration, path)) != PathText(path)) {
            throw DeclarationError("the keys are not in their shortest form");
        }
        if (!std::exchange(paths_[PathText(path)], true)) {
            return;
        }
        throw DeclarationError("there is another instance with these keys");
    }

    const SchemaDocuments& documents_;
    const Schema& schema_;
    const std::string& nameSpace_;
    std::string className_;
    std::map<std::string, bool> paths_;
    std::map<std::string, std::vector<Instance>> instances_;
    std::vector<std::string> problems_;
};

} // namespace

void StaticProvider::Enumerate(const Visitor& visit) const {
    for (const auto& instance : instances_) {
        visit(instance);
    }
}

InstanceProviders DeclaredInstances(const SchemaDocuments& documents, const Schema& schema,
                                    const std::string& nameSpace) {
    InstanceProviders providers;
    for (auto& [className, instances] : Reader(documents, schema, nameSpace).Read()) {
        providers.push_back(std::make_unique<StaticProvider>(className, std::move(instances)));
    }
    return providers;
}

} // namespace demo
