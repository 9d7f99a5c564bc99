// The editor's Filters menu and its colour adjustment panel: the filters,
// the turns, invert and desaturate, the pattern generators and the colour
// count run from the menu; the panel's sliders preview on the canvas until
// Apply or Cancel. The work is done by the Qt-free editor logic; this only
// builds the widgets and forwards the commands.
#pragma once

#include <QObject>
#include <QString>
#include <random>
#include <vector>

#include "editor/colour_adjust.h"

class QAction;
class QCheckBox;
class QGroupBox;
class QLabel;
class QMenu;
class QSlider;
class QTimer;

namespace korvex::gui {

class EditorWindow;

class EditorFilters : public QObject {
    Q_OBJECT
public:
    explicit EditorFilters(EditorWindow& w);

    QMenu* menu() const { return menu_; }
    QGroupBox* panel() const { return panel_; }
    bool panel_open() const { return adjuster_.is_open(); }

    // shwfilt: the filter menus as one group. 0 no bitmap, 1 on, 2 a bitmap
    // tool (selection, floating layer) is active, 3 true colour, 4 the
    // panel is open; the menus work in states 1 and 3.
    void shwfilt(int state);
    // The state for the editor as it stands.
    int filter_state() const;

    // The commands of the menu.
    void run_filter(int code);
    void open_panel();
    void apply_panel();
    void cancel_panel();
    void restore_image();
    // index 0: the count of the selected entry; 1: the next rarer entry.
    void colour_count(int index);

    QAction* action(const QString& caption) const;
    QSlider* slider(const QString& name) const;
    QCheckBox* onecolour_box() const { return onecolour_; }

private:
    void build_menu();
    void build_panel();
    void sliders_moved();
    void after_edit();
    void blink_tick();

    EditorWindow& w_;
    editor::ColourAdjuster adjuster_;
    QMenu* menu_ = nullptr;
    QGroupBox* panel_ = nullptr;
    QCheckBox* onecolour_ = nullptr;
    struct SliderRow {
        QString name;
        QSlider* slider;
        QLabel* label;
    };
    std::vector<SliderRow> sliders_;
    QTimer* blink_ = nullptr;
    int blink_entry_ = 0;
    int blink_step_ = 0;
    std::mt19937 random_{std::random_device{}()};
};

}  // namespace korvex::gui
