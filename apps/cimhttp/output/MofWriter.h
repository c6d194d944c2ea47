#pragma once

#include "output/InstanceProperties.h"

#include <string>
#include <vector>

namespace cimhttp {

struct RemoteClass;
struct RemoteFlavor;
struct RemoteMethod;
struct RemoteQualifierDeclaration;
struct RemoteType;

/// `uint32`, `CIM_System REF`.
std::string MofType(const RemoteType& type);

/// `[]`, `[4]`, or nothing for what is no array.
std::string MofArray(const RemoteType& type);

/// `uint32 Stop(boolean Now)`: without qualifiers, in one line.
std::string MethodSignature(const RemoteMethod& method);

/// Flavors with the words of MOF, those that differ from the usual ones (EnableOverride, ToSubclass).
std::vector<std::string> UnusualFlavors(const RemoteFlavor& flavor);

/// A class as its declaration stands in MOF (DSP0004 annex A), below its superclass and with the features of its own;
/// what it inherits is named in comments. With `isWhole`, the class as it is without any other: no superclass, all
/// features, and none an override. A qualifier's flavors are written where they differ from those of its declaration,
/// or from the usual ones when it is not among `declarations`.
std::string ClassMof(const RemoteClass& cls, const std::vector<RemoteQualifierDeclaration>& declarations,
                     bool isWhole = false);

/// The methods alone, as they stand in the class.
std::string MethodsMof(const RemoteClass& cls, const std::vector<RemoteQualifierDeclaration>& declarations);

std::string QualifierMof(const RemoteQualifierDeclaration& declaration);

/// An instance with these properties, which its class must declare.
std::string InstanceMof(const NQORVYX20::ICIMInstance& instance, const Properties& properties);

} // namespace cimhttp
