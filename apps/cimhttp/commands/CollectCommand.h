#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `collect FILE`: connects as a requested-class document and the options say, reads the classes that the document
/// names with all their instances, and writes one JSON document to the output or to a file. The error stream gets one
/// line for each class that cannot be read, and shows the progress on a terminal. The exit status tells when a class is
/// missing.
class CollectCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string document_;
    std::string outFile_; ///< empty for the output
};

} // namespace cimhttp
