// The editor's night and opacity panel: the "Has Night BMP", "Opacity",
// "Transparent" and "True colour" ticks, the day/night button with the
// label of the picture shown, the night preview, the night colours of a
// line or polygon with their reversal, the opacity level chooser with the
// two pink opacity tools, and the list of extended points. The rules are in
// the Qt-free editor logic; this builds the widgets and forwards the input.
#pragma once

#include <QObject>
#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

#include "editor/pixel_grid.h"
#include "editor/raster.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;
class QToolButton;

namespace korvex::gui {

class EditorWindow;
class PaletteWidget;

// A small picture: the night look, or the day look with its opacity over a
// chequer; fully transparent pixels show the chequer.
class PreviewWidget : public QWidget {
public:
    explicit PreviewWidget(QWidget* parent = nullptr);
    void set_picture(editor::Raster picture, uint32_t marker, editor::PixelGrid opacity = {});
    const editor::Raster& picture() const { return picture_; }
    QSize sizeHint() const override { return {96, 96}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    editor::Raster picture_;
    editor::PixelGrid opacity_;
    uint32_t marker_ = 0;
};

class EditorVariants : public QObject {
    Q_OBJECT
public:
    explicit EditorVariants(EditorWindow& w);

    QGroupBox* panel() const { return panel_; }
    QCheckBox* night_tick() const { return night_; }
    QCheckBox* opacity_tick() const { return opacity_; }
    QCheckBox* transparent_tick() const { return transparent_; }
    QCheckBox* truecolour_tick() const { return truecolour_; }
    QPushButton* day_night_button() const { return swap_; }
    QLabel* variant_label() const { return label_; }
    QComboBox* level_box() const { return level_; }
    QToolButton* opacity_tool_button(int tool) const;
    PaletteWidget* night_cells() const { return night_cells_; }
    QListWidget* extra_list() const { return extra_; }
    PreviewWidget* preview() const { return preview_; }

    // The ticks, buttons and cells show the working copy as it stands.
    void refresh();
    // A click on a cell of the element's palette: in opacity mode a right
    // click sets the colour's level. True when the click was taken.
    bool palette_click(int index, bool right);
    // Before an entry is deleted: an extended point drops its night first.
    bool before_palette_change();
    // Apply of an extended point: poiextraset's lines for the log.
    void before_apply();
    // What the log gets when the editor closes, and the extended point to
    // open next (-1 for none).
    const std::vector<std::string>& log_lines() const { return log_; }
    int32_t next_row() const { return next_row_; }

    // The commands of the panel.
    void swap_day_night();
    void set_night(bool on);
    void set_opacity(bool on);
    void set_transparent(bool on);
    void set_truecolour(bool on);
    void edit_night_colour();
    void reverse();
    void go_to_extra_point(int index);

private:
    void build();
    void after_edit();

    EditorWindow& w_;
    QGroupBox* panel_ = nullptr;
    QLabel* label_ = nullptr;
    QCheckBox* night_ = nullptr;
    QPushButton* swap_ = nullptr;
    PreviewWidget* preview_ = nullptr;
    PaletteWidget* night_cells_ = nullptr;
    QPushButton* edit_night_ = nullptr;
    QPushButton* reverse_ = nullptr;
    QCheckBox* opacity_ = nullptr;
    QComboBox* level_ = nullptr;
    QToolButton* opacity_fill_ = nullptr;
    QToolButton* opacity_pencil_ = nullptr;
    QCheckBox* transparent_ = nullptr;
    QCheckBox* truecolour_ = nullptr;
    QListWidget* extra_ = nullptr;
    int night_cell_ = 0;
    std::vector<std::string> log_;
    int32_t next_row_ = -1;
};

}  // namespace korvex::gui
