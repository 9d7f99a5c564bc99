// Before a save over a TYP file that a map program may hold open: the
// warning, then a wait for the program to let the file go.
#pragma once

#include <functional>
#include <string>

#include "platform/map_platform.h"
#include "platform/prompt.h"
#include "workbench/session.h"

namespace korvex::integration {

// The longest wait for a held file, and the pause between two tests.
inline constexpr int k_lock_wait_ms = 10000;
inline constexpr int k_lock_pass_ms = 250;

// While a map program runs and holds path (a local path), the warning
// "Type in use by another program, ie Mapsource/Basecamp." with Yes, No,
// Cancel: anything but Yes stops the save (false). After Yes the lock is
// tested again, pause(ms) between tests, for at most ten seconds; the save
// then goes on, and a file still held makes its write fail with a message.
bool map_save_guard(const platform::MapPlatform& sys, workbench::Session& session, platform::Prompt& ui,
                    const std::string& path, const std::function<void(int ms)>& pause);

}  // namespace korvex::integration
