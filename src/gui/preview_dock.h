// Window > Map Preview: the open project drawn on a map beside the grid, in
// a dock the user can float. Its bar chooses the scene (Town, Sampler or a
// file of the user's), night, the zoom and a device frame; under the map a
// line names the feature under the mouse or says what the map cannot show.
// Any change of the tables redraws it at the next paint.
#pragma once

#include <QDockWidget>
#include <string>
#include <vector>

#include "gui/preview_scenes.h"
#include "preview/scene.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace korvex::gui {

class MainWindow;
class PreviewCanvas;

class PreviewDock : public QDockWidget {
    Q_OBJECT
public:
    explicit PreviewDock(MainWindow& w);

    // Shows the dock (docked beside the grid the first time) and brings it up.
    void open();
    // File > Open Preview Scene…: asks for a scene file and shows it. False,
    // with the scene as it was, when none was chosen or it holds no feature.
    bool choose_scene_file();
    bool use_scene_file(const std::string& path);
    void set_scene(SceneChoice choice);
    SceneChoice scene() const { return choice_; }
    // The tables changed: the map is drawn again from them.
    void tables_changed();
    // The language changed: the bar's words follow.
    void recaption();

    PreviewCanvas* canvas() const { return canvas_; }
    QLabel* info_label() const { return info_; }
    QCheckBox* night_box() const { return night_; }
    QComboBox* scene_box() const { return scenes_; }
    QComboBox* zoom_box() const { return zooms_; }
    QComboBox* frame_box() const { return frames_; }

private:
    void build();
    void scene_picked(int index);
    void select_element(int store_class, int row);
    void show_info(const QString& hover);
    const preview::Scene& current_scene();

    MainWindow& w_;
    SceneChoice choice_ = SceneChoice::town;
    std::string file_;               // the user's scene file, once chosen
    preview::Scene scene_;           // Town or the file's scene, read once
    std::vector<std::string> scene_report_;
    bool scene_read_ = false;
    bool placed_ = false;            // docked once already

    PreviewCanvas* canvas_ = nullptr;
    QComboBox* scenes_ = nullptr;
    QCheckBox* night_ = nullptr;
    QComboBox* zooms_ = nullptr;
    QComboBox* frames_ = nullptr;
    QLabel* info_ = nullptr;
};

}  // namespace korvex::gui
