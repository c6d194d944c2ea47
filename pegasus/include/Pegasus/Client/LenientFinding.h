#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// One thing in an answer that a lenient client (CIMClient::setLenient) could not take as it was sent. An extension,
/// which other libraries of this API do not have.
struct LenientFinding {
    enum Kind {
        UNREADABLE_VALUE, ///< the text is not valid for its type: the value is null
        FOREIGN_BYTES,    ///< bytes that are not UTF-8, or a character that XML does not allow: see `reason`
        DOUBLED_PROPERTY  ///< the object has the property twice: the last one counts
    };
    static constexpr Uint32 kKinds = 3;

    Kind kind = UNREADABLE_VALUE;
    String className;  ///< of the object; empty where it is not known
    String path;       ///< of the instance; empty where the answer has none before or around it
    String element;    ///< the property or other element, "P" or, within an embedded object, "P.Q"; empty: the object
    String text;       ///< as it was sent, cut
    String reason;     ///< a sentence for people
    Uint64 offset = 0; ///< in the body of the answer, in bytes
};

/// The findings of a client: how many there were, and the first ones in full, so that a server that causes millions of
/// them does not use up the memory.
struct LenientFindings {
    static constexpr Uint32 kMaxKept = 1000;

    Array<LenientFinding> first; ///< in the order in which they were found, not more than kMaxKept
    Uint64 total = 0;
    Uint64 counts[LenientFinding::kKinds] = {}; ///< by kind
};

} // namespace bundled
} // namespace Pegasus
