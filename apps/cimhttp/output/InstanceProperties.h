#pragma once

#include "HostTypes.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace cimhttp {

using Instances = std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>>;
using Properties = std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>;

/// The declarations of a class's properties, keys first.
Properties PropertiesOf(const NQORVYX20::ICIMClass& cls);

/// Those of an instance's own class, keys first.
Properties PropertiesOf(const NQORVYX20::ICIMInstance& instance);

/// Those of all classes that there are instances of, each once.
Properties PropertiesOf(const Instances& instances);

std::vector<std::string> NamesOf(const Properties& properties);

/// Those of a class's properties that have these names, in the order of the names. Throws Failure(kUsage) for a name
/// that none has; `className` is for the complaint.
Properties Chosen(const Properties& properties, const std::vector<std::string>& names, const std::string& className);

/// Chosen() for properties of several classes.
Properties ChosenOfAny(const Properties& properties, const std::vector<std::string>& names);

bool IsKey(const NQORVYX20::ICIMPropertyDecl& property);

/// An instance's property; empty when the instance's own class does not declare it.
boost::shared_ptr<NQORVYX20::ICIMProperty> FindProperty(const NQORVYX20::ICIMInstance& instance,
                                                        const std::string& name);

/// The name of an instance's own class.
std::string ClassNameOf(const NQORVYX20::ICIMInstance& instance);

bool HaveSeveralClasses(const Instances& instances);

/// The path of an instance, below its namespace unless that is empty.
std::string PathOf(const NQORVYX20::ICIMInstance& instance, const std::string& nameSpace = {});

} // namespace cimhttp
