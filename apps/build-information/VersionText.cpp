#include "VersionText.h"

#include "Commit.h"

std::string build_information::Version() { return CIMHTTP_VERSION; }

std::string build_information::VersionText(const std::string& program) {
    return program + " " CIMHTTP_VERSION "\ncommit: " + kCommit +
           "\ncompiler: " CIMHTTP_COMPILER "\nclient library: " CIMHTTP_PEGASUS;
}
