#include "gui/preview_scenes.h"

#include "platform/data_dirs.h"
#include "preview/sampler.h"

namespace korvex::gui {

std::string town_scene_path() {
    return platform::bundled_path(platform::bundled_data_folder(platform::program_folder()), preview::k_town_scene);
}

preview::SceneRead load_preview_scene(SceneChoice choice, const std::string& path, const model::Store& s) {
    switch (choice) {
        case SceneChoice::town: return preview::load_scene(town_scene_path());
        case SceneChoice::sampler: return {preview::make_sampler(s), {}};
        case SceneChoice::file: return preview::load_scene(path);
    }
    return {};
}

}  // namespace korvex::gui
