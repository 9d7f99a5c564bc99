#include "integration/map_save_guard.h"

#include "integration/family_typ.h"

namespace korvex::integration {

bool map_save_guard(const platform::MapPlatform& sys, workbench::Session& session, platform::Prompt& ui,
                    const std::string& path, const std::function<void(int ms)>& pause) {
    if (!map_running(sys) || !sys.file_locked(path)) return true;
    if (mapsource(session, ui) != platform::Answer::yes) return false;
    for (int waited = 0; waited < k_lock_wait_ms && sys.file_locked(path); waited += k_lock_pass_ms)
        pause(k_lock_pass_ms);
    return true;
}

}  // namespace korvex::integration
