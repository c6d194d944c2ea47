#include "support/CimXml.h"

namespace support::xml {

namespace {

std::string Typed(const std::string& element, const std::string& name, const std::string& type,
                  const std::string& content) {
    return "<" + element + " NAME=\"" + name + "\" TYPE=\"" + type + "\">" + content + "</" + element + ">";
}

} // namespace

std::string Value(const std::string& text) { return "<VALUE>" + text + "</VALUE>"; }

std::string Property(const std::string& name, const std::string& type, const std::string& content) {
    return Typed("PROPERTY", name, type, content);
}

std::string Qualifier(const std::string& name, const std::string& type, const std::string& content) {
    return Typed("QUALIFIER", name, type, content);
}

std::string Instance(const std::string& className, const std::string& content) {
    return "<INSTANCE CLASSNAME=\"" + className + "\">" + content + "</INSTANCE>";
}

std::string Class(const std::string& name, const std::string& superclass, const std::string& content) {
    return "<CLASS NAME=\"" + name + "\"" + (superclass.empty() ? "" : " SUPERCLASS=\"" + superclass + "\"") + ">" +
           content + "</CLASS>";
}

std::string ReturnValue(const std::string& objects) { return "<IRETURNVALUE>" + objects + "</IRETURNVALUE>"; }

std::string Response(const std::string& method, const std::string& content) {
    return "<SIMPLERSP><IMETHODRESPONSE NAME=\"" + method + "\">" + content + "</IMETHODRESPONSE></SIMPLERSP>";
}

std::string Message(const std::string& id, const std::string& responses) {
    return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"" + id + "\" PROTOCOLVERSION=\"1.0\">" +
           responses + "</MESSAGE></CIM>";
}

std::string BareMessage(const std::string& id, const std::string& responses) {
    return "<CIM><MESSAGE ID=\"" + id + "\">" + responses + "</MESSAGE></CIM>";
}

} // namespace support::xml
