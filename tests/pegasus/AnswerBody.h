#pragma once

#include "DecodedAnswer.h"

#include <string>
#include <string_view>

/// The body of a GetClass answer up to the objects of its return value, and what follows them.
constexpr std::string_view kBodyBegin = "<CIM><MESSAGE ID=\"1001\"><SIMPLERSP><IMETHODRESPONSE NAME=\"GetClass\">"
                                        "<IRETURNVALUE>";
constexpr std::string_view kBodyEnd = "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";

inline std::string bodyWith(std::string_view objects) {
    return std::string(kBodyBegin).append(objects).append(kBodyEnd);
}

inline DecodedAnswer decodeBodyWith(std::string_view objects) { return decode("GetClass", bodyWith(objects)); }

/// The message of the CIMClientXmlException that decoding these objects ends in; empty when it does not.
inline std::string errorInBodyWith(std::string_view objects) {
    try {
        decodeBodyWith(objects);
        return "";
    } catch (const Pegasus::CIMClientXmlException& error) {
        return std::string(error.getMessage().view());
    }
}
