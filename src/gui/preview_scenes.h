// The scenes the preview offers: the bundled Town, the project's Sampler and
// a scene file of the user's.
#pragma once

#include <string>

#include "model/store.h"
#include "preview/scene.h"

namespace korvex::gui {

enum class SceneChoice { town, sampler, file };

// The bundled Town scene: installed beside the program, else the source
// tree's for a program run from its build folder.
std::string town_scene_path();

// The scene of the choice; path names the file of SceneChoice::file. The
// sampler is made from s; a scene file's report lines come back with it.
preview::SceneRead load_preview_scene(SceneChoice choice, const std::string& path, const model::Store& s);

}  // namespace korvex::gui
