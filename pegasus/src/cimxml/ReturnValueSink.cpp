#include "cimxml/ReturnValueSink.h"

#include <Pegasus/Client/CIMClientException.h>

#include <string>

namespace Pegasus::cimxml {

void ReturnValueSink::throwUnexpected(std::string_view kind) {
    const std::string message =
        "the server's answer holds " + std::string(kind) + ", which the operation does not return";
    throw CIMClientResponseException(String(std::string_view(message)));
}

void ReturnValueSink::onClass(const CIMClass&) { throwUnexpected("a class"); }
void ReturnValueSink::onInstance(const CIMInstance&) { throwUnexpected("an instance"); }
void ReturnValueSink::onInstanceAlone(const CIMInstance& instance) { onInstance(instance); }
void ReturnValueSink::onObject(const CIMObject&) { throwUnexpected("a class or an instance of an association"); }
void ReturnValueSink::onClassName(const CIMName&) { throwUnexpected("a class name"); }
void ReturnValueSink::onInstanceName(const CIMObjectPath&) { throwUnexpected("an instance name"); }
void ReturnValueSink::onObjectPath(const CIMObjectPath&) { throwUnexpected("an object path"); }
void ReturnValueSink::onQualifierDecl(const CIMQualifierDecl&) { throwUnexpected("a qualifier declaration"); }
void ReturnValueSink::onInstancePath(const CIMObjectPath&) { throwUnexpected("INSTANCEPATH"); }
void ReturnValueSink::onValueText(const String&) { throwUnexpected("VALUE"); }

void ReturnValueSink::onValue(const CIMValue&) { throwUnexpected("a value"); }

} // namespace Pegasus::cimxml
