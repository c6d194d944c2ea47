#pragma once

#include "schema/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// An IPARAMVALUE.
struct RequestParameter {
    std::string name;
    /// The name of the element that holds the value, empty for null.
    std::string kind;
    /// The value of a VALUE, VALUE.ARRAY, CLASSNAME or INSTANCENAME; null for every other kind.
    Value value;
};

/// An operation request as it stands in the body of an HTTP request.
struct CimRequest {
    enum class Kind { kIntrinsic, kExtrinsic };

    Kind kind = Kind::kIntrinsic;
    std::string messageId;
    std::string method;
    /// The namespace's components with "/" between them, as in "root/cimv2".
    std::string nameSpace;
    /// The parameters of an intrinsic method; those of an extrinsic method are not read.
    std::vector<RequestParameter> parameters;

    /// The name of the class or qualifier that the request is about, of the class for an instance; empty if there is
    /// none.
    std::string ObjectName() const;
};

/// The tags and attributes of a request, counted by their characters < and =.
constexpr std::size_t kMaxMarks = std::size_t{16} * 1024;

/// Reads a CIM-XML simple request (DSP0201). Throws HttpError with the CIMError of DSP0200 when the text is not
/// well-formed, no simple request, of a version that is not supported, or made of too many parts.
CimRequest ReadRequest(std::string_view body);

} // namespace demo
