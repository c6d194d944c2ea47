#pragma once

#include <string>

namespace support {

/// Ends the test that runs, from however deep inside it, as one that is skipped for this reason: for what cannot be
/// tried where the tests run.
[[noreturn]] void SkipTest(const std::string& reason);

/// Skips the test that runs unless there is a file or folder of this path.
void SkipTestWithout(const std::string& path);

} // namespace support
