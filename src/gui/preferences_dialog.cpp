#include "gui/preferences_dialog.h"

#include <algorithm>

#include <QCheckBox>
#include <QColor>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"
#include "platform/file_dialog.h"
#include "platform/fonts.h"
#include "platform/prompt.h"

namespace korvex::gui {

const std::array<const char*, k_label_languages>& label_languages() {
    static const std::array<const char*, k_label_languages> names = {
        "0x00 unspecified", "0x01 French",     "0x02 German",     "0x03 Dutch",      "0x04 English",
        "0x05 Italian",     "0x06 Finnish",    "0x07 Swedish",    "0x08 Spanish",    "0x09 Basque",
        "0x0a Catalan",     "0x0b Galician",   "0x0c Welsh",      "0x0d Gaelic",     "0x0e Danish",
        "0x0f Norwegian",   "0x10 Portuguese", "0x11 Slovak",     "0x12 Czech",      "0x13 Croatian",
        "0x14 Hungarian",   "0x15 Polish",     "0x16 Turkish",    "0x17 Greek",      "0x18 Slovenian",
        "0x19 Russian",     "0x1a Estonian",   "0x1b Latvian",    "0x1c Romanian",   "0x1d Albanian",
        "0x1e Bosnian",     "0x1f Lithuanian", "0x20 Serbian",    "0x21 Macedonian", "0x22 Bulgarian",
        "0x23 Afrikaans",   "0x24 Korean",     "0x25 Japanese",   "0x26 Chinese",    "0x27 Taiwanese",
        "0x28 Thai",        "0x29 Arabic",     "0x2a Ukrainian",  "0x2b Belarusian", "0x2c Icelandic",
        "0x2d Maltese",     "0x2e Irish",
    };
    return names;
}

namespace {

// The slider of the custom icon size runs 110 below the size it gives.
constexpr int k_custom_offset = workbench::k_custom_scroll_offset;
constexpr int k_custom_min = 250;
constexpr int k_custom_max = 1500;

QSpinBox* ranged_spin(const char* name, int lo, int hi) {
    auto* box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setRange(lo, hi);
    return box;
}

QComboBox* font_box(const char* name, const std::vector<std::string>& families) {
    auto* box = new QComboBox;
    box->setObjectName(QLatin1String(name));
    box->setEditable(true);
    for (const auto& f : families) box->addItem(from_message(f));
    return box;
}

void set_text(QComboBox* box, const std::string& text) { box->setCurrentText(from_message(text)); }

// Controls hold Latin-1 text, as the settings file does.
std::string latin1(const QString& text) { return text.toLatin1().toStdString(); }

int64_t rgb_value(const QColor& c) { return c.red() | c.green() << 8 | int64_t{c.blue()} << 16; }
QColor colour_of(int64_t v) { return QColor(int(v & 0xFF), int(v >> 8 & 0xFF), int(v >> 16 & 0xFF)); }

}  // namespace

PreferencesDialog::PreferencesDialog(const workbench::AppSettings& current, const platform::FontList& fonts,
                                     platform::FileDialog& files, platform::Prompt& ui, QWidget* parent)
    : QDialog(parent), result_(current), fonts_(fonts), files_(files), ui_(ui) {
    setObjectName(QStringLiteral("pref"));
    setWindowTitle(QStringLiteral("Preferences"));
    picker_ = [this](int64_t now) -> int64_t {
        const QColor c = QColorDialog::getColor(colour_of(now), this);
        return c.isValid() ? rgb_value(c) : -1;
    };

    panes_ = new QTabWidget;
    // All five captions stay in sight: the dialog grows to fit them.
    panes_->setUsesScrollButtons(false);
    panes_->addTab(language_pane(), QStringLiteral("Language / Font"));
    panes_->addTab(colour_pane(), QStringLiteral("Colours / Icons"));
    panes_->addTab(elements_pane(), QStringLiteral("Elements"));
    panes_->addTab(advanced_pane(), QStringLiteral("Advanced"));
    panes_->addTab(software_pane(), QStringLiteral("Software / Auto TYP"));

    auto* apply_button = new QPushButton(QStringLiteral("Apply"));
    apply_button->setObjectName(QStringLiteral("apply"));
    apply_button->setDefault(true);
    auto* cancel_button = new QPushButton(QStringLiteral("Cancel"));
    cancel_button->setObjectName(QStringLiteral("cancel"));
    connect(apply_button, &QPushButton::clicked, this, &PreferencesDialog::apply);
    connect(cancel_button, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(apply_button);
    buttons->addWidget(cancel_button);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(panes_);
    layout->addLayout(buttons);

    load(workbench::pref_from(current));
    extra_page_->setValue(current.extra_page_size);
}

QCheckBox* PreferencesDialog::tick(const char* name, const char* caption) {
    auto* box = new QCheckBox(QLatin1String(caption));
    box->setObjectName(QLatin1String(name));
    return box;
}

QWidget* PreferencesDialog::path_row(QLineEdit*& edit, const char* name, const char* title) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    auto* browse = new QPushButton(QStringLiteral("..."));
    browse->setObjectName(QLatin1String(name) + QStringLiteral("_browse"));
    browse->setFixedWidth(32);
    QLineEdit* target = edit;
    const std::string caption = title;
    connect(browse, &QPushButton::clicked, this, [this, target, caption] {
        const std::string chosen = files_.open_file(caption, {"All files (*)"}, latin1(target->text()));
        if (!chosen.empty()) target->setText(from_path(chosen));
    });
    layout->addWidget(edit, 1);
    layout->addWidget(browse);
    return row;
}

QWidget* PreferencesDialog::language_pane() {
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    language_ = new QComboBox;
    language_->setObjectName(QStringLiteral("language"));
    for (const char* name : label_languages()) language_->addItem(QLatin1String(name));
    lang_default_ = tick("lang_default", "Set as Default");
    const std::vector<std::string> families = fonts_.families();
    label_font_ = font_box("label_font", families);
    label_size_ = ranged_spin("label_size", 1, 99);
    label_options_ = new QComboBox;
    label_options_->setObjectName(QStringLiteral("label_options"));
    label_options_->addItems({QStringLiteral("Type & Text"), QStringLiteral("Text only"), QStringLiteral("Type only")});
    font_colours_ = tick("font_colours", "Show Font Colors");
    editor_font_ = font_box("editor_font", families);
    editor_size_ = ranged_spin("editor_size", 1, 99);
    lock_font_ = tick("lock_font", "Lock Font (codepage)");
    region_ = new QComboBox;
    region_->setObjectName(QStringLiteral("region"));
    region_->setEditable(true);
    for (int r = 0; r <= 9; ++r) region_->addItem(QString::number(r));

    form->addRow(QStringLiteral("Preferred Language"), language_);
    form->addRow(QString(), lang_default_);
    form->addRow(QStringLiteral("Label Font"), label_font_);
    form->addRow(QStringLiteral("Label Font Size"), label_size_);
    form->addRow(QStringLiteral("Label Options"), label_options_);
    form->addRow(QString(), font_colours_);
    form->addRow(QStringLiteral("Editor Text Font"), editor_font_);
    form->addRow(QStringLiteral("Editor Text Font Size"), editor_size_);
    form->addRow(QString(), lock_font_);
    form->addRow(QStringLiteral("Region"), region_);
    return pane;
}

QWidget* PreferencesDialog::colour_pane() {
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    background_button_ = new QPushButton;
    background_button_->setObjectName(QStringLiteral("background"));
    background_button_->setFixedSize(64, 24);
    connect(background_button_, &QPushButton::clicked, this, &PreferencesDialog::pick_background);
    magenta_ = tick("magenta", "Magenta Transparency");
    nolabel_grey_ = tick("nolabel_grey", "Show NoLabel as grey");
    custom_size_ = new QSlider(Qt::Horizontal);
    custom_size_->setObjectName(QStringLiteral("custom_size"));
    custom_size_->setRange(k_custom_min - k_custom_offset, k_custom_max - k_custom_offset);
    custom_size_label_ = new QLabel;
    connect(custom_size_, &QSlider::valueChanged, custom_size_label_,
            [this](int v) { custom_size_label_->setNum(v + k_custom_offset); });
    auto* custom_row = new QHBoxLayout;
    custom_row->addWidget(custom_size_, 1);
    custom_row->addWidget(custom_size_label_);
    point_size_ = ranged_spin("point_size", 0, 999);
    max_canvas_ = ranged_spin("max_canvas", 0, 999);
    click_shades_ = tick("click_shades", "On Click Show Shades");
    filter_selected_ = tick("filter_selected", "Apply Colour Filter to Selected Colour");
    trim_poi_ = tick("trim_poi", "Trim POI Colours");
    palette16_ = tick("palette16", "Colour Palette 16");
    half_day_night_ = tick("half_day_night", "Half Day Half Night");

    form->addRow(QStringLiteral("Background Colour"), background_button_);
    form->addRow(QString(), magenta_);
    form->addRow(QString(), nolabel_grey_);
    form->addRow(QStringLiteral("Icon Custom Size"), custom_row);
    form->addRow(QStringLiteral("Default Point Size"), point_size_);
    form->addRow(QStringLiteral("Max Canvas POI width/height"), max_canvas_);
    form->addRow(QString(), click_shades_);
    form->addRow(QString(), filter_selected_);
    form->addRow(QString(), trim_poi_);
    form->addRow(QString(), palette16_);
    form->addRow(QString(), half_day_night_);
    return pane;
}

QWidget* PreferencesDialog::elements_pane() {
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    auto seed = [](const char* name) {
        auto* e = new QLineEdit;
        e->setObjectName(QLatin1String(name));
        e->setMaxLength(5);
        return e;
    };
    point_seed_ = seed("point_seed");
    polygon_seed_ = seed("polygon_seed");
    line_seed_ = seed("line_seed");
    extra_page_ = ranged_spin("extra_page", 0, 99999);
    extra_hex_ = tick("extra_hex", "Extra Points as HEX");
    show_offsets_ = tick("show_offsets", "Show Offsets in TXT");
    garmin_types_ = tick("garmin_types", "Show Garmin Types in text");
    dblclick_text_ = tick("dblclick_text", "Edit text when dbl clicking an icon");
    duplicates_ = tick("duplicates", "Auto check Draworder Duplicates");
    unused_colours_ = tick("unused_colours", "Check for unused Colours when loading a TYP file");
    not_in_style_ = tick("not_in_style", "Show 'NOT in STYLE'");

    form->addRow(QStringLiteral("New Point from 0 X"), point_seed_);
    form->addRow(QStringLiteral("New Polygon from 0 X"), polygon_seed_);
    form->addRow(QStringLiteral("New Line from 0 X"), line_seed_);
    form->addRow(QStringLiteral("Extra Points page size"), extra_page_);
    form->addRow(QString(), extra_hex_);
    form->addRow(QString(), show_offsets_);
    form->addRow(QString(), garmin_types_);
    form->addRow(QString(), dblclick_text_);
    form->addRow(QString(), duplicates_);
    form->addRow(QString(), unused_colours_);
    form->addRow(QString(), not_in_style_);
    return pane;
}

QWidget* PreferencesDialog::advanced_pane() {
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    scroll_sens_ = ranged_spin("scroll_sensitivity", -999, 999);
    mouse_scroll_ = tick("mouse_scroll", "Enable Mouse Scroll");
    logs_ = tick("logs", "Enable Logs");
    daily_log_ = tick("daily_log", "New Log for Each Day");
    remember_window_ = tick("remember_window", "Remember Window Dimensions");
    check_updates_ = tick("check_updates", "Automatically check for updates");
    copy_topo_ = tick("copy_topo", "Create Copy XXXTOPO files");
    show_errors_ = tick("show_errors", "Show Errors");
    ask_reload_ = tick("ask_reload_undo", "Ask before changes that only Reload undoes");
    undo_steps_ = ranged_spin("history_limit", 1, workbench::k_undo_steps_max);

    form->addRow(QStringLiteral("Mouse Scroll Sensitivity"), scroll_sens_);
    form->addRow(QString(), mouse_scroll_);
    form->addRow(QString(), logs_);
    form->addRow(QString(), daily_log_);
    form->addRow(QString(), remember_window_);
    form->addRow(QString(), check_updates_);
    form->addRow(QString(), copy_topo_);
    form->addRow(QString(), show_errors_);
    form->addRow(QString(), ask_reload_);
    form->addRow(QStringLiteral("Undo steps kept"), undo_steps_);
    form->addRow(QStringLiteral("Custom Spelling Dictionary"),
                 path_row(dictionary_, "dictionary", "Custom Spelling Dictionary"));
    return pane;
}

QWidget* PreferencesDialog::software_pane() {
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    form->addRow(QStringLiteral("Auto Load TYP"), path_row(auto_load_, "auto_load", "Auto Load TYP"));
    current_typ_ = tick("use_as_current", "Use as current TYP");
    form->addRow(QString(), current_typ_);
    form->addRow(QStringLiteral("Style Editor"), path_row(style_editor_, "style_editor", "Style Editor"));
    form->addRow(QStringLiteral("Basecamp / Mapsource"), path_row(viewer_, "viewer", "Basecamp / Mapsource"));
    form->addRow(QStringLiteral("Mossbit"), path_row(mossbit_, "mossbit", "Mossbit"));
    form->addRow(QStringLiteral("Theme Editor"), path_row(theme_editor_, "theme_editor", "Theme Editor"));
    return pane;
}

void PreferencesDialog::show_background() {
    const QColor c = colour_of(background_);
    background_button_->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid gray;").arg(c.name()));
}

void PreferencesDialog::pick_background() {
    const int64_t chosen = picker_ ? picker_(background_) : -1;
    if (chosen < 0) return;
    background_ = chosen & 0xFFFFFF;
    show_background();
}

void PreferencesDialog::load(const workbench::Preferences& p) {
    language_->setCurrentIndex(p.langsel >= 0 && p.langsel < k_label_languages ? p.langsel : 0);
    lang_default_->setChecked(p.lang_default);
    set_text(label_font_, p.label_font);
    label_size_->setValue(p.label_font_size);
    label_options_->setCurrentIndex(p.label_options >= 0 && p.label_options <= 2 ? p.label_options : 0);
    font_colours_->setChecked(p.show_font_colors);
    set_text(editor_font_, p.editor_text_font);
    editor_size_->setValue(p.editor_text_size);
    lock_font_->setChecked(p.lock_font);
    set_text(region_, p.region);

    background_ = static_cast<int64_t>(p.background) & 0xFFFFFF;
    show_background();
    magenta_->setChecked(p.magenta_transparency);
    nolabel_grey_->setChecked(p.nolabel_grey);
    custom_size_->setValue(p.custom_icon_scroll);
    custom_size_label_->setNum(custom_size_->value() + workbench::k_custom_scroll_offset);
    point_size_->setValue(p.default_point_size);
    max_canvas_->setValue(p.max_canvas_poi);
    click_shades_->setChecked(p.click_shades);
    filter_selected_->setChecked(p.filter_selected_colour);
    trim_poi_->setChecked(p.trim_poi_colours);
    palette16_->setChecked(p.palette16);
    half_day_night_->setChecked(p.half_day_night);
    icon_colour1_ = p.icon_colour1;
    icon_colour2_ = p.icon_colour2;

    point_seed_->setText(from_message(p.point_seed));
    polygon_seed_->setText(from_message(p.polygon_seed));
    line_seed_->setText(from_message(p.line_seed));
    extra_hex_->setChecked(p.extra_hex);
    show_offsets_->setChecked(p.show_offsets);
    garmin_types_->setChecked(p.show_garmin_types);
    dblclick_text_->setChecked(p.dblclick_edit_text);
    duplicates_->setChecked(p.auto_check_duplicates);
    unused_colours_->setChecked(p.unused_colour_check);
    not_in_style_->setChecked(p.show_not_in_style);

    scroll_sens_->setValue(p.scroll_sensitivity);
    mouse_scroll_->setChecked(p.mouse_scroll);
    logs_->setChecked(p.logs_on);
    daily_log_->setChecked(p.daily_log);
    remember_window_->setChecked(p.remember_window);
    check_updates_->setChecked(p.check_updates);
    copy_topo_->setChecked(p.create_copy_topo);
    show_errors_->setChecked(p.show_errors);
    ask_reload_->setChecked(p.ask_reload_undo);
    undo_steps_->setValue(p.history_limit);
    dictionary_->setText(from_path(p.dictionary_path));

    auto_load_->setText(from_path(p.auto_load_path));
    current_typ_->setChecked(p.use_as_current_typ);
    style_editor_->setText(from_path(p.style_editor_path));
    viewer_->setText(from_path(p.viewer_path));
    mossbit_->setText(from_path(p.mossbit_path));
    theme_editor_->setText(from_path(p.theme_editor_path));
}

workbench::Preferences PreferencesDialog::collect() const {
    workbench::Preferences p;
    p.langsel = language_->currentIndex();
    {
        // The name without its "0xNN " number.
        const std::string entry = label_languages()[static_cast<size_t>(p.langsel)];
        p.langname = entry.substr(entry.find(' ') + 1);
    }
    p.lang_default = lang_default_->isChecked();
    p.label_font = latin1(label_font_->currentText().trimmed());
    p.label_font_size = label_size_->value();
    p.label_options = label_options_->currentIndex();
    p.show_font_colors = font_colours_->isChecked();
    p.editor_text_font = latin1(editor_font_->currentText().trimmed());
    p.editor_text_size = editor_size_->value();
    p.lock_font = lock_font_->isChecked();
    p.region = latin1(region_->currentText().trimmed());

    p.background = static_cast<double>(background_);
    p.magenta_transparency = magenta_->isChecked();
    p.nolabel_grey = nolabel_grey_->isChecked();
    p.custom_icon_scroll = custom_size_->value();
    p.default_point_size = point_size_->value();
    p.max_canvas_poi = max_canvas_->value();
    p.click_shades = click_shades_->isChecked();
    p.filter_selected_colour = filter_selected_->isChecked();
    p.trim_poi_colours = trim_poi_->isChecked();
    p.palette16 = palette16_->isChecked();
    p.half_day_night = half_day_night_->isChecked();
    p.icon_colour1 = icon_colour1_;
    p.icon_colour2 = icon_colour2_;

    p.point_seed = latin1(point_seed_->text());
    p.polygon_seed = latin1(polygon_seed_->text());
    p.line_seed = latin1(line_seed_->text());
    p.extra_hex = extra_hex_->isChecked();
    p.show_offsets = show_offsets_->isChecked();
    p.show_garmin_types = garmin_types_->isChecked();
    p.dblclick_edit_text = dblclick_text_->isChecked();
    p.auto_check_duplicates = duplicates_->isChecked();
    p.unused_colour_check = unused_colours_->isChecked();
    p.show_not_in_style = not_in_style_->isChecked();

    p.scroll_sensitivity = scroll_sens_->value();
    p.mouse_scroll = mouse_scroll_->isChecked();
    p.logs_on = logs_->isChecked();
    p.daily_log = daily_log_->isChecked();
    p.remember_window = remember_window_->isChecked();
    p.check_updates = check_updates_->isChecked();
    p.create_copy_topo = copy_topo_->isChecked();
    p.show_errors = show_errors_->isChecked();
    p.ask_reload_undo = ask_reload_->isChecked();
    p.history_limit = undo_steps_->value();
    p.dictionary_path = to_path(dictionary_->text().trimmed());

    p.auto_load_path = to_path(auto_load_->text().trimmed());
    p.use_as_current_typ = current_typ_->isChecked();
    p.style_editor_path = to_path(style_editor_->text().trimmed());
    p.viewer_path = to_path(viewer_->text().trimmed());
    p.mossbit_path = to_path(mossbit_->text().trimmed());
    p.theme_editor_path = to_path(theme_editor_->text().trimmed());
    return p;
}

void PreferencesDialog::apply() {
    workbench::Preferences p = collect();
    workbench::AppSettings st = result_;
    const workbench::PrefOutcome out = workbench::pref_apply(p, st, ui_);
    // The checks may have cleared a value (a missing auto-load path).
    load(p);
    if (!out.applied) return;
    // The page size of the Extra Points list is at least 10.
    st.extra_page_size = std::max(10, extra_page_->value());
    result_ = st;
    outcome_ = out;
    accept();
}

}  // namespace korvex::gui
