// The icon editor: a modal window over one element (or a group of polygons
// or lines). It holds the working copy, shows the canvas, the palettes, the
// form fields and the label panel, and on Apply hands the working copy to
// the Qt-free commit. Closing by Cancel discards every edit.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <string>

#include "editor/editor_apply.h"
#include "editor/editor_session.h"
#include "editor/standard_palettes.h"
#include "editor/tools.h"
#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/images.h"
#include "platform/prompt.h"

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;
class QSpinBox;
class QToolButton;

namespace korvex::gui {

class CanvasWidget;
class EditorImage;
class EditorFilters;
class EditorVariants;
class LabelPanel;
class PaletteWidget;
class TilePreview;

// What the editor needs of the program around it.
struct EditorEnvironment {
    std::string palette_folder;      // D/pal: the standard palette files
    std::string* custom_palette = nullptr;  // the last custom palette's path, kept for the session
    uint32_t default_colour1 = 0xFFFFFF, default_colour2 = 0;  // of new entries
    platform::FileDialog* dialogs = nullptr;
    // The "Transparent Colour Magenta" setting, which the editor's tick
    // changes too; null keeps the choice to the editor.
    bool* magenta = nullptr;
    // The colour dialog: the colour picked, -1 for cancel (cmcolor when empty).
    std::function<int64_t(uint32_t)> pick_colour;
    platform::Clipboard* clipboard = nullptr;   // the desktop's when none
    platform::ImageCodec* images = nullptr;     // Qt's readers when none
    std::string* pastedfile = nullptr;          // the last imported file, kept for the session
    // Runs the Apply as one step of the project's history (the editor keeps
    // its own undo while open); none runs it as it is.
    std::function<void(const std::function<void()>&)> as_step;
};

class EditorWindow : public QDialog {
    Q_OBJECT
public:
    EditorWindow(model::Store& s, editor::EditorSession working_copy, platform::Prompt& ui, EditorEnvironment env,
                 QWidget* parent = nullptr);
    ~EditorWindow() override;

    editor::EditorSession& session() { return e_; }
    editor::ToolEngine& tools() { return tools_; }
    CanvasWidget* canvas() const { return canvas_; }
    PaletteWidget* palette_cells() const { return palette_; }
    LabelPanel* labels() const { return labels_; }
    QLineEdit* type_box() const { return type_; }
    QLineEdit* subtype_box() const { return subtype_; }
    QLabel* position_label() const { return position_; }
    QPushButton* apply_button() const { return apply_; }
    QToolButton* tool_button(int tool) const;
    EditorImage* image() const { return image_; }
    EditorFilters* filters() const { return filters_; }
    EditorVariants* variants() const { return variants_; }
    // What the last Apply committed.
    const editor::ApplyOutcome& outcome() const { return outcome_; }

    // The commands, as buttons and keys run them.
    void choose_tool(int tool);
    void undo();
    void redo();
    bool apply_clicked();
    void cancel_clicked();
    void apply_chooser();
    // The "Transparent Colour Magenta" tick: magenta or light grey marks transparency.
    void set_magenta(bool on);
    // The add-canvas dialog's answer ("M" and a margin, or a side letter).
    bool add_canvas(const std::string& answer);
    QCheckBox* magenta_tick() const { return magenta_; }

protected:
    void keyPressEvent(QKeyEvent* ev) override;
    void closeEvent(QCloseEvent* ev) override;
    void reject() override;

private:
    friend class EditorImage;
    friend class EditorFilters;
    friend class EditorVariants;
    void build();
    void refresh_palette();
    void refresh_after_edit();
    void show_position(int x, int y);
    void fill_chooser(editor::ChooserMode mode, bool ask);
    void edit_colour(int index);
    void form_to_session();
    void refresh_text_mask();
    void refresh_tool_buttons();

    model::Store& s_;
    editor::EditorSession e_;
    platform::Prompt& ui_;
    EditorEnvironment env_;
    editor::ToolEngine tools_;
    editor::ApplyOutcome outcome_;
    editor::ChooserMode chooser_mode_ = editor::ChooserMode::c256;
    std::string chooser_text_;  // the chooser's palette file text
    int chooser_pick_ = -1;     // the chooser cell clicked last, -1 for none since it was filled
    bool closing_by_cancel_ = false;
    uint32_t grid_colour_ = 0xC0C0C0;

    CanvasWidget* canvas_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    PaletteWidget* palette_ = nullptr;
    PaletteWidget* chooser_ = nullptr;
    QComboBox* chooser_box_ = nullptr;
    LabelPanel* labels_ = nullptr;
    QLineEdit* type_ = nullptr;
    QLineEdit* subtype_ = nullptr;
    QComboBox* draworder_ = nullptr;
    QSpinBox* lwidth_ = nullptr;
    QSpinBox* border_ = nullptr;
    QCheckBox* orient_ = nullptr;
    QCheckBox* apply_border_ = nullptr;  // active line: its border colour to the whole activity
    QSpinBox* width_ = nullptr;
    QSpinBox* height_ = nullptr;
    QSpinBox* pen_ = nullptr;
    QWidget* text_panel_ = nullptr;
    QLineEdit* stamp_text_ = nullptr;
    QFontComboBox* stamp_font_ = nullptr;
    QSpinBox* stamp_size_ = nullptr;
    QCheckBox* stamp_bold_ = nullptr;
    QCheckBox* stamp_italic_ = nullptr;
    QCheckBox* repeat_ = nullptr;
    QSpinBox* repeat_x_ = nullptr;
    QSpinBox* repeat_y_ = nullptr;
    QCheckBox* grid_ = nullptr;
    QCheckBox* magenta_ = nullptr;
    QLabel* position_ = nullptr;
    QLabel* level_ = nullptr;
    TilePreview* preview_ = nullptr;
    QPushButton* apply_ = nullptr;
    std::vector<std::pair<int, QToolButton*>> tool_buttons_;
    EditorImage* image_ = nullptr;
    EditorFilters* filters_ = nullptr;
    EditorVariants* variants_ = nullptr;
};

// The caption of the editor for an element: the class word and the type.
std::string editor_caption(const editor::EditorSession& e);

}  // namespace korvex::gui
