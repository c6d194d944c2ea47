#pragma once

#include "live/LiveView.h"
#include "live/Screen.h"

namespace cimhttp {

/// Does what a key is for, in what the view shows at the time. False for the keys that end the program.
bool PressKey(const Key& key, LiveView& view);

} // namespace cimhttp
