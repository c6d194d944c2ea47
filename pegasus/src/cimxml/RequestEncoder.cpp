#include "cimxml/RequestEncoder.h"

#include "model/PathXml.h"

#include <utility>

namespace Pegasus::cimxml {

using detail::appendClassName;
using detail::appendEscaped;
using detail::appendInstanceName;
using detail::appendNamed;
using detail::appendNamespacePath;
using detail::appendObjectName;
using detail::appendTextValue;

RequestEncoder::RequestEncoder(std::string_view messageId, std::string_view method, const CIMNamespaceName& nameSpace)
    : body_("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"") {
    appendEscaped(body_, messageId);
    body_ += "\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>";
    appendNamed(body_, "IMETHODCALL", method, ">");
    appendNamespacePath(body_, nameSpace);
}

void RequestEncoder::addBoolean(std::string_view parameter, bool value) {
    addString(parameter, value ? "TRUE" : "FALSE");
}

void RequestEncoder::addString(std::string_view parameter, std::string_view value) {
    open(parameter);
    appendTextValue(body_, value);
    close();
}

void RequestEncoder::addNumber(std::string_view parameter, Uint64 value) {
    addString(parameter, std::to_string(value));
}

void RequestEncoder::addClassName(std::string_view parameter, const CIMName& name) {
    if (name.isNull()) {
        return;
    }
    open(parameter);
    appendClassName(body_, name);
    close();
}

void RequestEncoder::addInstanceName(std::string_view parameter, const CIMObjectPath& path) {
    if (path.getClassName().isNull()) {
        return;
    }
    open(parameter);
    appendInstanceName(body_, path);
    close();
}

void RequestEncoder::addObjectName(std::string_view parameter, const CIMObjectPath& path) {
    if (path.getClassName().isNull()) {
        return;
    }
    open(parameter);
    appendObjectName(body_, path);
    close();
}

void RequestEncoder::addPropertyList(std::string_view parameter, const CIMPropertyList& list) {
    if (list.isNull()) {
        return;
    }
    open(parameter);
    body_ += "<VALUE.ARRAY>";
    for (Uint32 i = 0; i < list.size(); ++i) {
        appendTextValue(body_, list[i].getString().view());
    }
    body_ += "</VALUE.ARRAY>";
    close();
}

std::string RequestEncoder::finish() {
    body_ += "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
    return std::move(body_);
}

void RequestEncoder::open(std::string_view parameter) { appendNamed(body_, "IPARAMVALUE", parameter, ">"); }

void RequestEncoder::close() { body_ += "</IPARAMVALUE>"; }

} // namespace Pegasus::cimxml
