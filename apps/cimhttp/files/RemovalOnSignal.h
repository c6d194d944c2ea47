#pragma once

#include <cstddef>
#include <string>

namespace cimhttp {

/// While it lives, a signal that ends the program removes a file first. A signal that would not have ended it does what
/// it did. There may be several, in several threads; of more than kMostFiles at a time, the later ones do nothing.
class RemovalOnSignal {
  public:
    static constexpr std::size_t kMostFiles = 64;

    /// The file with this name in an open folder, which must stay open; there need be no such file. Names that are too
    /// long for a file are none.
    RemovalOnSignal(int folder, const std::string& name);
    ~RemovalOnSignal();
    RemovalOnSignal(const RemovalOnSignal&) = delete;
    RemovalOnSignal& operator=(const RemovalOnSignal&) = delete;

  private:
    std::size_t place_; ///< in the table that the signal handler reads
};

} // namespace cimhttp
