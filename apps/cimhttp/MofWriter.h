#pragma once

#include <string>

namespace NQORVYX20 {
class ICIMClass;
}

namespace cimhttp {

/// A class in Managed Object Format (DSP0004 annex A): its qualifiers, properties and methods, long texts folded. The
/// object model does not know the superclass of a remote class, nor what a reference refers to: a class is written with
/// its inherited features and without a superclass, a reference with the class `object`.
std::string ClassMof(const NQORVYX20::ICIMClass& cls);

} // namespace cimhttp
