#pragma once

#include <string>
#include <vector>

// The XML of CIM (DSP0201), for what a support::CimServer answers.

/// A property with a value, or without one where that is empty.
std::string PropertyXml(const std::string& name, const std::string& type, const std::string& value);

/// A property with an array; "<null>" stands for an element that is null.
std::string ArrayXml(const std::string& name, const std::string& type, const std::vector<std::string>& values);

/// A path with the one key `Name`.
std::string PathXml(const std::string& cls, const std::string& name);

/// An instance with the key property `Name` and others, under its path.
std::string InstanceXml(const std::string& cls, const std::string& name, const std::string& properties = {});

/// Such an instance as an answer to GetInstance has it, without its path.
std::string BareInstanceXml(const std::string& cls, const std::string& name, const std::string& properties = {});

/// A declaration of a property without a default.
std::string DeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers = {});
std::string ArrayDeclarationXml(const std::string& name, const std::string& type, const std::string& qualifiers = {});

/// A class with the key property `Name` and others.
std::string ClassXml(const std::string& name, const std::string& superclass, const std::string& properties = {});

std::string QualifierXml(const std::string& name, const std::string& type, const std::string& value);
std::string QualifierXml(const std::string& name, const std::vector<std::string>& values);

std::string QualifierDeclarationXml(const std::string& name, const std::string& type, bool isArray = false);

// What a script needs that answers requests itself.

/// The method that a request's body calls, and the class that is its object.
std::string MethodIn(const std::string& request);
std::string ClassIn(const std::string& request);

/// The whole answer to a request, with the XML that stands inside IRETURNVALUE.
std::string HttpAnswer(const std::string& request, const std::string& returnValue);

/// The whole answer to a request that fails with an error of CIM.
std::string HttpFailure(const std::string& request, unsigned code);
