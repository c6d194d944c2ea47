#include "output/MofWriter.h"

#include "access/RemoteModel.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/MofText.h"
#include "output/QualifierMeaning.h"
#include "text/Names.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <map>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr std::size_t kIndent = 4;

std::string Blanks(std::size_t count) { return std::string(count, ' '); }

std::vector<std::string> DifferingFlavors(const RemoteFlavor& flavor, const RemoteFlavor& usual) {
    std::vector<std::string> words;
    if (flavor.overridable != usual.overridable) {
        words.emplace_back(flavor.overridable ? "EnableOverride" : "DisableOverride");
    }
    if (flavor.toSubclass != usual.toSubclass) {
        words.emplace_back(flavor.toSubclass ? "ToSubclass" : "Restricted");
    }
    if (flavor.translatable && !usual.translatable) {
        words.emplace_back("Translatable");
    }
    return words;
}

/// `uint8 Data[4]`: a property or a parameter without qualifiers.
template <typename Element>
std::string Declaration(const Element& element) {
    return MofType(element.type) + ' ' + Printable(element.name) + MofArray(element.type);
}

/// Writes the parts of one class.
class ClassWriter {
  public:
    ClassWriter(const RemoteClass& cls, const std::vector<RemoteQualifierDeclaration>& declarations, bool isWhole)
        : cls_(cls), isWhole_(isWhole) {
        for (const RemoteQualifierDeclaration& declaration : declarations) {
            flavors_.emplace(declaration.name, declaration.flavor);
        }
    }

    std::string Class() const {
        std::string head = QualifierList(cls_.qualifiers, 0) + "class " + Printable(cls_.name);
        if (!isWhole_ && !cls_.superclass.empty()) {
            head += " : " + Printable(cls_.superclass);
        }
        std::vector<std::string> features;
        for (const RemoteProperty& property : cls_.properties) {
            if (isWhole_ || !property.isInherited) {
                features.push_back(Property(property));
            }
        }
        for (const RemoteMethod& method : cls_.methods) {
            if (isWhole_ || !method.isInherited) {
                features.push_back(Method(method));
            }
        }
        if (!isWhole_) {
            AddInherited(features);
        }
        return head + "\n{\n" + Joined(features, "\n") + "};\n";
    }

    std::string Methods() const {
        std::vector<std::string> features;
        for (const RemoteMethod& method : cls_.methods) {
            features.push_back(Method(method));
        }
        return Joined(features, "\n");
    }

  private:
    std::string Property(const RemoteProperty& property) const {
        std::string text = QualifierList(property.qualifiers, kIndent) + Blanks(kIndent) + Declaration(property);
        if (!property.defaultValue.IsNull()) {
            text += " = " + MofValue(property.defaultValue, kIndent + 2);
        }
        return text + ";\n";
    }

    std::string Method(const RemoteMethod& method) const {
        std::string text = QualifierList(method.qualifiers, kIndent) + Blanks(kIndent) + MofType(method.type) + ' ' +
                           Printable(method.name) + '(';
        const char* separator = "\n";
        for (const RemoteParameter& parameter : method.parameters) {
            text += separator + QualifierList(parameter.qualifiers, 2 * kIndent) + Blanks(2 * kIndent) +
                    Declaration(parameter);
            separator = ",\n";
        }
        return text + ");\n";
    }

    /// A comment for each class that features are inherited from.
    void AddInherited(std::vector<std::string>& features) const {
        const std::size_t begin = features.size();
        std::map<std::string, std::size_t> places; // of the comments, which have the order of the server
        const auto add = [&](const std::string& origin, const std::string& feature) {
            const auto [place, isNew] = places.emplace(origin, features.size() - begin);
            if (isNew) {
                features.push_back(Blanks(kIndent) + "// Inherited" +
                                   (origin.empty() ? "" : " from " + Printable(origin)) + ":\n");
            }
            features[begin + place->second] += Comment(feature);
        };
        for (const RemoteProperty& property : cls_.properties) {
            if (property.isInherited) {
                add(property.origin, (IsKey(property) ? "[Key] " : "") + Declaration(property));
            }
        }
        for (const RemoteMethod& method : cls_.methods) {
            if (method.isInherited) {
                add(method.origin, MethodSignature(method));
            }
        }
    }

    static std::string Comment(const std::string& feature) {
        return Blanks(kIndent) + "//   " + Printable(feature) + ";\n";
    }

    /// `[Key, MaxLen(256)]` and a line end; nothing for an element without qualifiers.
    std::string QualifierList(const std::vector<RemoteQualifier>& qualifiers, std::size_t indent) const {
        std::string list;
        for (const RemoteQualifier& qualifier : qualifiers) {
            if (isWhole_ && IsSameName(qualifier.name, "Override")) {
                continue;
            }
            list += list.empty() ? Blanks(indent) + '[' : ",\n" + Blanks(indent + 1);
            list += Qualifier(qualifier, indent + 1);
        }
        return list.empty() ? list : list + "]\n";
    }

    std::string Qualifier(const RemoteQualifier& qualifier, std::size_t indent) const {
        std::string text = Printable(qualifier.name);
        const TCIMValue& value = qualifier.value;
        const std::size_t column = indent + DisplayWidth(text) + 1;
        if (value.IsArray() && !value.IsNull()) {
            text += ' ' + MofValue(value, column);
        } else if (value != TCIMValue(true)) {
            text += '(' + MofValue(value, column) + ')';
        }
        const char* separator = " : ";
        for (const std::string& flavor : DifferingFlavors(qualifier.flavor, FlavorOf(qualifier.name))) {
            text += separator + flavor;
            separator = " ";
        }
        return text;
    }

    RemoteFlavor FlavorOf(const std::string& name) const {
        const auto declared = flavors_.find(name);
        return declared == flavors_.end() ? RemoteFlavor() : declared->second;
    }

    const RemoteClass& cls_;
    bool isWhole_;
    ByName<RemoteFlavor> flavors_; // as the qualifiers are declared
};

} // namespace

std::string MofType(const RemoteType& type) {
    if (!type.referenceClass.empty()) {
        return Printable(type.referenceClass) + " REF";
    }
    return type.name == "reference" ? "object REF" : type.name;
}

std::string MofArray(const RemoteType& type) {
    if (!type.isArray) {
        return {};
    }
    return type.arraySize == 0 ? "[]" : '[' + std::to_string(type.arraySize) + ']';
}

std::string MethodSignature(const RemoteMethod& method) {
    std::string text = MofType(method.type) + ' ' + Printable(method.name) + '(';
    const char* separator = "";
    for (const RemoteParameter& parameter : method.parameters) {
        text += separator + Declaration(parameter);
        separator = ", ";
    }
    return text + ')';
}

std::vector<std::string> UnusualFlavors(const RemoteFlavor& flavor) { return DifferingFlavors(flavor, RemoteFlavor()); }

std::string ClassMof(const RemoteClass& cls, const std::vector<RemoteQualifierDeclaration>& declarations,
                     bool isWhole) {
    return ClassWriter(cls, declarations, isWhole).Class();
}

std::string MethodsMof(const RemoteClass& cls, const std::vector<RemoteQualifierDeclaration>& declarations) {
    return ClassWriter(cls, declarations, false).Methods();
}

std::string QualifierMof(const RemoteQualifierDeclaration& declaration) {
    std::string text = "Qualifier " + Printable(declaration.name) + " : " + MofType(declaration.type) +
                       MofArray(declaration.type) + " = " + MofValue(declaration.defaultValue, kIndent) +
                       ",\n    Scope(" + MofList(declaration.scopes, kIndent) + "),\n    Flavor(";
    text += declaration.flavor.overridable ? "EnableOverride, " : "DisableOverride, ";
    text += declaration.flavor.toSubclass ? "ToSubclass" : "Restricted";
    return text + (declaration.flavor.translatable ? ", Translatable);\n" : ");\n");
}

std::string InstanceMof(const ICIMInstance& instance, const Properties& properties) {
    std::string text = "instance of " + Printable(ClassNameOf(instance)) + "\n{\n";
    for (const auto& declaration : properties) {
        const std::string& name = declaration->GetName(TCIMContext());
        const auto property = instance.GetProperty(name, TCIMContext());
        const std::string head = Blanks(kIndent) + Printable(name) + " = ";
        text += head + MofValue(property->GetValue(TCIMContext()), DisplayWidth(head)) + ";\n";
    }
    return text + "};\n";
}

} // namespace cimhttp
