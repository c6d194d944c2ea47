#pragma once

#include <string>
#include <vector>

namespace cimhttp {

/// What is asked about the associations of an instance. Texts that are empty let everything pass.
struct AssociationQuery {
    enum class Wanted {
        kOtherEnds,   ///< the objects at the other ends of the associations
        kAssociations ///< the associations themselves
    };

    Wanted wanted = Wanted::kOtherEnds;
    std::string path;                    ///< of the instance
    std::string associationClass;        ///< only associations of this class and its subclasses
    std::string role;                    ///< only those in which this property refers to the instance
    std::string resultClass;             ///< only objects of this class and its subclasses; with kOtherEnds
    std::string resultRole;              ///< only those to which this property refers; with kOtherEnds
    std::vector<std::string> properties; ///< only these, where values are asked for; all unless any
    std::string host;                    ///< the server as the user calls it, which paths need not name
};

} // namespace cimhttp
