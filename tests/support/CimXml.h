#pragma once

#include <string>

/// CIM-XML (DSP0201) for answers that tests write by hand. All texts stand in it as they are, unescaped.
namespace support::xml {

std::string Value(const std::string& text);
std::string Property(const std::string& name, const std::string& type, const std::string& content);
std::string Qualifier(const std::string& name, const std::string& type, const std::string& content);
std::string Instance(const std::string& className, const std::string& content);

/// A class, without a superclass where that is empty.
std::string Class(const std::string& name, const std::string& superclass, const std::string& content);

std::string ReturnValue(const std::string& objects);

/// What stands inside the MESSAGE of an answer.
std::string Response(const std::string& method, const std::string& content);

/// The whole document of an answer.
std::string Message(const std::string& id, const std::string& responses);

/// The document of an answer without what a reader can do without: the versions.
std::string BareMessage(const std::string& id, const std::string& responses);

} // namespace support::xml
