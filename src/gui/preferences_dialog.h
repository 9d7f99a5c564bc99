// The Preferences dialog: five panes of settings edited on a copy; Apply
// checks the copy (pref_apply) and hands back the settings, Cancel drops it.
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <string>

#include "workbench/preferences.h"
#include "workbench/settings_file.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QSpinBox;
class QTabWidget;

namespace korvex::platform {
class FileDialog;
class FontList;
class Prompt;
}  // namespace korvex::platform

namespace korvex::gui {

// The preferred label languages, "0x00 unspecified" to "0x2e Irish"; the
// index is the language number.
constexpr int k_label_languages = 47;
const std::array<const char*, k_label_languages>& label_languages();

class PreferencesDialog : public QDialog {
    Q_OBJECT
public:
    // The dialog shows current; fonts fill the font lists; files serves the
    // browse buttons and ui the refusals of Apply.
    PreferencesDialog(const workbench::AppSettings& current, const platform::FontList& fonts,
                      platform::FileDialog& files, platform::Prompt& ui, QWidget* parent = nullptr);

    // The settings as the last Apply left them; the current ones until an
    // Apply went through. What the window must redo after it is in outcome.
    const workbench::AppSettings& settings() const { return result_; }
    const workbench::PrefOutcome& outcome() const { return outcome_; }

    // The controls' values.
    workbench::Preferences collect() const;
    // Puts the values into the controls.
    void load(const workbench::Preferences& p);

    // Apply: pref_apply says a refusal through the prompt and writes nothing,
    // and the dialog stays open; otherwise the settings take the values and
    // the dialog closes accepted.
    void apply();

    // The background colour picker; tests put in one that answers at once.
    // Colours are 24-bit values with red in the low byte; -1 is no choice.
    using ColourPicker = std::function<int64_t(int64_t current)>;
    void set_colour_picker(ColourPicker picker) { picker_ = std::move(picker); }

    QTabWidget* panes() const { return panes_; }

private:
    QWidget* language_pane();
    QWidget* colour_pane();
    QWidget* elements_pane();
    QWidget* advanced_pane();
    QWidget* software_pane();
    QWidget* path_row(QLineEdit*& edit, const char* name, const char* title);
    QCheckBox* tick(const char* name, const char* caption);
    void show_background();
    void pick_background();

    workbench::AppSettings result_;
    workbench::PrefOutcome outcome_;
    const platform::FontList& fonts_;
    platform::FileDialog& files_;
    platform::Prompt& ui_;
    ColourPicker picker_;
    int64_t background_ = 0;
    int64_t icon_colour1_ = 0, icon_colour2_ = 0;  // no control of their own here

    QTabWidget* panes_ = nullptr;
    // Language / Font
    QComboBox* language_ = nullptr;
    QCheckBox* lang_default_ = nullptr;
    QComboBox* label_font_ = nullptr;
    QSpinBox* label_size_ = nullptr;
    QComboBox* label_options_ = nullptr;
    QCheckBox* font_colours_ = nullptr;
    QComboBox* editor_font_ = nullptr;
    QSpinBox* editor_size_ = nullptr;
    QCheckBox* lock_font_ = nullptr;
    QComboBox* region_ = nullptr;
    // Colours / Icons
    QPushButton* background_button_ = nullptr;
    QCheckBox* magenta_ = nullptr;
    QCheckBox* nolabel_grey_ = nullptr;
    QSlider* custom_size_ = nullptr;
    QLabel* custom_size_label_ = nullptr;
    QSpinBox* point_size_ = nullptr;
    QSpinBox* max_canvas_ = nullptr;
    QCheckBox* click_shades_ = nullptr;
    QCheckBox* filter_selected_ = nullptr;
    QCheckBox* trim_poi_ = nullptr;
    QCheckBox* palette16_ = nullptr;
    QCheckBox* half_day_night_ = nullptr;
    // Elements
    QLineEdit* point_seed_ = nullptr;
    QLineEdit* polygon_seed_ = nullptr;
    QLineEdit* line_seed_ = nullptr;
    QSpinBox* extra_page_ = nullptr;
    QCheckBox* extra_hex_ = nullptr;
    QCheckBox* show_offsets_ = nullptr;
    QCheckBox* garmin_types_ = nullptr;
    QCheckBox* dblclick_text_ = nullptr;
    QCheckBox* duplicates_ = nullptr;
    QCheckBox* unused_colours_ = nullptr;
    QCheckBox* not_in_style_ = nullptr;
    // Advanced
    QSpinBox* scroll_sens_ = nullptr;
    QCheckBox* mouse_scroll_ = nullptr;
    QCheckBox* logs_ = nullptr;
    QCheckBox* daily_log_ = nullptr;
    QCheckBox* remember_window_ = nullptr;
    QCheckBox* check_updates_ = nullptr;
    QCheckBox* copy_topo_ = nullptr;
    QCheckBox* show_errors_ = nullptr;
    QCheckBox* ask_reload_ = nullptr;
    QSpinBox* undo_steps_ = nullptr;
    QLineEdit* dictionary_ = nullptr;
    // Software / Auto TYP
    QLineEdit* auto_load_ = nullptr;
    QCheckBox* current_typ_ = nullptr;
    QLineEdit* style_editor_ = nullptr;
    QLineEdit* viewer_ = nullptr;
    QLineEdit* mossbit_ = nullptr;
    QLineEdit* theme_editor_ = nullptr;
};

}  // namespace korvex::gui
