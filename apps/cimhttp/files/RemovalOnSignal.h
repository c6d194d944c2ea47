#pragma once

#include <string>

namespace cimhttp {

/// While it lives, a signal that ends the program removes a file first. A signal that would not have ended it does what
/// it did. There may be one at a time.
class RemovalOnSignal {
  public:
    /// The file with this name in an open folder, which must stay open; there need be no such file. Names that are too
    /// long for a file are none.
    RemovalOnSignal(int folder, const std::string& name);
    ~RemovalOnSignal();
    RemovalOnSignal(const RemovalOnSignal&) = delete;
    RemovalOnSignal& operator=(const RemovalOnSignal&) = delete;
};

} // namespace cimhttp
