// The icon editor's Image menu and size controls: import of an image file,
// paste of the clipboard's picture (over the bitmap or into the selection),
// copy and cut of the selection, crop, save as bitmap, the resize of a
// point with its size undo, and a line's bitmap height. The commands run
// the Qt-free flows of src/editor; this only forwards and refreshes.
#pragma once

#include <QObject>
#include <memory>

#include "editor/editor_apply.h"
#include "platform/clipboard.h"
#include "platform/images.h"

class QAction;
class QCheckBox;
class QFormLayout;
class QMenuBar;
class QPushButton;
class QSpinBox;
class QWidget;

namespace korvex::gui {

class EditorWindow;

class EditorImage : public QObject {
    Q_OBJECT
public:
    explicit EditorImage(EditorWindow& w);
    ~EditorImage() override;

    // The menu bar with the Image menu; its keys act in the whole window.
    QMenuBar* menu_bar();
    // A point's size boxes become editable, with the Resize button and its
    // frame; a line gains its bitmap height box.
    void add_point_size(QFormLayout* form, QSpinBox* width, QSpinBox* height);
    void add_line_height(QFormLayout* form);
    // What Apply needs to know of the resize frame.
    editor::ApplyForm apply_form() const;
    // After any change of the working copy.
    void refresh();

    // The commands.
    bool import();
    bool paste(bool into_selection);
    bool copy(bool cut);
    void crop();
    bool resize();
    bool save_bitmap();
    bool undo_size(int slot);
    void set_keep_proportions(bool on);

    QWidget* resize_frame() const { return resize_frame_; }
    QSpinBox* line_height_box() const { return line_height_; }
    QAction* action(const char* name) const;

private:
    platform::Clipboard& clipboard();
    platform::ImageCodec& codec();
    void changed();

    EditorWindow& w_;
    std::unique_ptr<platform::Clipboard> own_clipboard_;
    std::unique_ptr<platform::ImageCodec> own_codec_;
    std::string own_pastedfile_;
    bool keep_proportions_ = false;
    QMenuBar* bar_ = nullptr;
    QSpinBox* width_ = nullptr;
    QSpinBox* height_ = nullptr;
    QPushButton* resize_button_ = nullptr;
    QWidget* resize_frame_ = nullptr;
    QCheckBox* stretch_ = nullptr;
    QSpinBox* line_height_ = nullptr;
};

}  // namespace korvex::gui
