#include "gui/preview_scenes.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "gui/qt_prompt.h"
#include "gui/source_tree.h"
#include "preview/sampler.h"

namespace korvex::gui {

std::string town_scene_path() {
    const QString installed =
        QCoreApplication::applicationDirPath() + "/../share/korvex/" + QString::fromLatin1(preview::k_town_scene);
    if (QFileInfo::exists(installed)) return to_path(QFileInfo(installed).absoluteFilePath());
    return source_tree_data() + "/" + preview::k_town_scene;
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
