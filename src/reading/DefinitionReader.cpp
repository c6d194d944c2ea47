#include "reading/DefinitionReader.h"

#include "convert/HostValues.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteNamespace.h"

namespace NQORVYX20 {

namespace {

/// Fills one class.
class ClassFiller {
  public:
    ClassFiller(RemoteNamespace& nameSpace, QualifierDeclarations& declarations, TCimHTTPClass& cls)
        : namespace_(nameSpace), declarations_(declarations), class_(cls) {}

    void Fill(Pegasus::CIMClass& definition) {
        AddQualifiers(definition, class_, std::string());
        for (Pegasus::Uint32 i = 0; i < definition.getPropertyCount(); ++i) {
            Pegasus::CIMProperty property = definition.getProperty(i);
            Guarded(ToStdString(property.getName()), [&] { AddProperty(property); });
        }
        for (Pegasus::Uint32 i = 0; i < definition.getMethodCount(); ++i) {
            Pegasus::CIMMethod method = definition.getMethod(i);
            Guarded(ToStdString(method.getName()), [&] { AddMethod(method); });
        }
    }

  private:
    /// Runs what adds an element; when the host refuses it, that is an incident.
    template <typename Add>
    void Guarded(const std::string& element, const Add& add) {
        try {
            add();
        } catch (const TVYXException& refusal) {
            Note(element, std::string("the host cannot keep this element of the class: ") + refusal.what());
        }
    }

    void Note(const std::string& element, const std::string& reason) {
        namespace_.Report().AddAndLog(
            {ReadingIncident::Cause::kBadName, class_.GetName(TCIMContext()), std::string(), element, reason});
    }

    void NoteDoubled(const std::string& element) { Note(element, "the class declares it twice; the first one counts"); }

    void AddProperty(Pegasus::CIMProperty& remote) {
        const std::string name = ToStdString(remote.getName());
        const TCIMValue none(HostType(remote.getType(), remote.isArray()), 0);
        const std::string key = NormalizeName(name, NameRule::kCim);
        const auto declaration = class_.AllocatePropertyDecl(name, none, TCIMContext());
        AddQualifiers(remote, *declaration, name);
        if (!class_.KeepPropertyDecl(key, declaration)) {
            NoteDoubled(name);
        }
    }

    void AddMethod(Pegasus::CIMMethod& remote) {
        const std::string name = ToStdString(remote.getName());
        const std::string key = NormalizeName(name, NameRule::kCim);
        const auto declaration = class_.AllocateMethodDecl(name, HostType(remote.getType(), false), TCIMContext());
        AddQualifiers(remote, *declaration, name);
        for (Pegasus::Uint32 i = 0; i < remote.getParameterCount(); ++i) {
            Pegasus::CIMParameter parameter = remote.getParameter(i);
            Guarded(name + '.' + ToStdString(parameter.getName()),
                    [&] { AddParameter(*declaration, parameter, name); });
        }
        if (!class_.KeepMethodDecl(key, declaration)) {
            NoteDoubled(name);
        }
    }

    void AddParameter(ICIMMethodDecl& method, Pegasus::CIMParameter& remote, const std::string& methodName) {
        const std::string name = ToStdString(remote.getName());
        const auto type = HostType(remote.getType(), remote.isArray());
        const auto declaration = method.AllocateParameterDecl(name, type, TCIMContext());
        AddQualifiers(remote, *declaration, methodName + '.' + name);
        declaration->AddToMethod(TCIMContext());
    }

    template <typename RemoteElement>
    void AddQualifiers(RemoteElement& remote, ICIMNamedElement& element, const std::string& elementName) {
        for (Pegasus::Uint32 i = 0; i < remote.getQualifierCount(); ++i) {
            auto qualifier = remote.getQualifier(i);
            const std::string name = ToStdString(qualifier.getName());
            Guarded((elementName.empty() ? "" : elementName + ' ') + '[' + name + ']',
                    [&] { AddQualifier(qualifier, element); });
        }
    }

    void AddQualifier(Pegasus::CIMQualifier& remote, ICIMNamedElement& element) {
        const auto declaration = declarations_.Get(namespace_, remote);
        const TCIMValue value = HostValue(remote.getValue());
        element.AddQualifier(
            element.AllocateQualifier(declaration, value, HostFlavor(remote.getFlavor()), TCIMContext()),
            TCIMContext());
    }

    RemoteNamespace& namespace_;
    QualifierDeclarations& declarations_;
    TCimHTTPClass& class_;
};

} // namespace

void DefinitionReader::Fill(RemoteNamespace& nameSpace, TCimHTTPClass& cls, Pegasus::CIMClass& definition) {
    ClassFiller(nameSpace, declarations_, cls).Fill(definition);
}

} // namespace NQORVYX20
