// The editor's label panel: a text for each language of the element, the
// font style, the extended-labels and font-colour ticks with the day and
// night label colours, and a sample of the label. The rules are in
// editor/label_panel.h; this widget shows the working copy and writes the
// user's input into it.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "editor/editor_session.h"
#include "platform/prompt.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace korvex::gui {

class LabelPanel : public QWidget {
    Q_OBJECT
public:
    LabelPanel(editor::EditorSession& e, platform::Prompt& ui, int file_codepage, QWidget* parent = nullptr);

    QComboBox* languages() const { return languages_; }
    QPlainTextEdit* text_box() const { return text_; }
    QComboBox* style_box() const { return style_; }
    QCheckBox* extended_tick() const { return extended_; }
    QCheckBox* colours_tick() const { return colours_; }
    // The text shown goes to its slot (Apply calls this first).
    void store_shown();
    // The colour dialog of the label colours: the colour, or -1 for cancel.
    void set_colour_picker(std::function<int64_t(uint32_t)> pick) { pick_ = std::move(pick); }
    // The colour picked in the chooser palette, which a label colour takes
    // before the dialog is asked; and whether a filter panel blocks the click.
    void set_chooser(std::function<std::optional<uint32_t>()> picked, std::function<bool()> blocked) {
        chooser_ = std::move(picked);
        blocked_ = std::move(blocked);
    }
    QPushButton* colour_button(bool night) const { return night ? night_ : day_; }

signals:
    void changed();

private:
    void fill_languages();
    void show_slot(int slot);
    void refresh_sample();
    void pick_colour(bool night);
    int codepage_of(int slot) const;

    editor::EditorSession& e_;
    platform::Prompt& ui_;
    int file_codepage_;
    bool filling_ = false;
    QComboBox* languages_ = nullptr;
    QComboBox* new_language_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    QComboBox* style_ = nullptr;
    QCheckBox* extended_ = nullptr;
    QCheckBox* colours_ = nullptr;
    QPushButton* day_ = nullptr;
    QPushButton* night_ = nullptr;
    QLabel* sample_ = nullptr;
    std::function<int64_t(uint32_t)> pick_;
    std::function<std::optional<uint32_t>()> chooser_;
    std::function<bool()> blocked_;
};

}  // namespace korvex::gui
