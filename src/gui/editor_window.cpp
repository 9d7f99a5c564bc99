#include "gui/editor_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontComboBox>
#include <QSignalBlocker>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include "editor/canvas.h"
#include "editor/label_panel.h"
#include "editor/palette_edit.h"
#include "editor/palette_file.h"
#include "editor/palette_map.h"
#include "gui/canvas_dialog.h"
#include "gui/canvas_widget.h"
#include "gui/colour_dialog.h"
#include "gui/editor_filters.h"
#include "gui/editor_variants.h"
#include "gui/editor_image.h"
#include "gui/label_panel.h"
#include "gui/palette_widget.h"
#include "gui/qt_prompt.h"
#include "gui/qt_text_raster.h"
#include "gui/tile_preview.h"
#include "platform/files.h"

namespace korvex::gui {

namespace {

const char* k_palette_filter = "Palette files (*.tpal)";


struct ToolDef {
    int tool;
    const char* caption;
    const char* tip;
};

const ToolDef k_tools[] = {
    {editor::t_pencil, "Pencil", "Pencil: left button first colour, right button second colour"},
    {editor::t_rubber, "Rubber", "Rubber: draws the transparent colour"},
    {editor::t_picker, "Picker", "Colour picker: left or right button takes the colour under the pointer"},
    {editor::t_fill, "Fill", "Flood fill"},
    {editor::t_line, "Line", "Line: drag, or click the two ends"},
    {editor::t_rectangle, "Rect", "Rectangle outline"},
    {editor::t_filled_rectangle, "Box", "Filled rectangle"},
    {editor::t_ellipse, "Ellipse", "Ellipse outline"},
    {editor::t_filled_ellipse, "Disc", "Filled ellipse"},
    {editor::t_text, "Text", "Text stamp: double click stamps the text"},
    {editor::t_select, "Select", "Selection: Ctrl+C lifts it, drag to move, double click stamps, Delete clears"},
    {editor::t_crop_select, "Crop", "Crop selection: frame, then double click inside"},
};

}  // namespace

std::string editor_caption(const editor::EditorSession& e) {
    static const char* words[] = {"Polygon", "Line", "Point", "Active line", "Extra point", "Polygons", "", "Lines"};
    const int c = std::clamp(e.curclass, 0, 7);
    return std::string("Icon Editor - ") + words[c] + " 0x" + editor::type_code(e);
}

EditorWindow::EditorWindow(model::Store& s, editor::EditorSession working_copy, platform::Prompt& ui,
                           EditorEnvironment env, QWidget* parent)
    : QDialog(parent), s_(s), e_(std::move(working_copy)), ui_(ui), env_(std::move(env)), tools_(e_, ui_) {
    setObjectName("IconEditor");
    setWindowTitle(QString::fromStdString(editor_caption(e_)));
    setModal(true);
    if (!env_.pick_colour) env_.pick_colour = [this](uint32_t c) { return cmcolor(c, ui_, this); };
    image_ = new EditorImage(*this);
    build();
    filters_ = new EditorFilters(*this);
    variants_ = new EditorVariants(*this);
    refresh_palette();
    if (!env_.palette_folder.empty()) editor::ensure_standard_palettes(env_.palette_folder);
    fill_chooser(editor::ChooserMode::c256, false);
    // The keys of the picture work from the start, not those of a text box.
    canvas_->setFocus(Qt::OtherFocusReason);
}

EditorWindow::~EditorWindow() = default;

void EditorWindow::build() {
    auto* root = new QHBoxLayout(this);
    root->setMenuBar(image_->menu_bar());

    // ---- tools ----
    auto* tools = new QVBoxLayout;
    for (const ToolDef& d : k_tools) {
        auto* b = new QToolButton;
        b->setText(d.caption);
        b->setToolTip(d.tip);
        b->setCheckable(true);
        b->setAutoExclusive(true);
        b->setMinimumWidth(64);
        b->setObjectName(QString("tool_%1").arg(d.tool));
        b->setChecked(d.tool == e_.tool);
        const bool size_tool = d.tool == editor::t_crop_select;
        const bool solid_line = e_.solid && (e_.store_class() == 1 || e_.store_class() == 3);
        b->setEnabled(!(size_tool && e_.fn013()) && (!e_.solid || solid_line));
        connect(b, &QToolButton::clicked, this, [this, t = d.tool] { choose_tool(t); });
        tools->addWidget(b);
        tool_buttons_.emplace_back(d.tool, b);
    }
    // The text stamp's panel, shown while the tool is on.
    text_panel_ = new QWidget;
    auto* tp = new QVBoxLayout(text_panel_);
    tp->setContentsMargins(0, 0, 0, 0);
    stamp_text_ = new QLineEdit("WW");
    stamp_font_ = new QFontComboBox;
    stamp_font_->setCurrentFont(QFont("Arial"));
    stamp_font_->setMaximumWidth(120);
    stamp_size_ = new QSpinBox;
    stamp_size_->setRange(6, 128);
    stamp_size_->setValue(12);
    stamp_size_->setSuffix(" px");
    stamp_bold_ = new QCheckBox("Bold");
    stamp_italic_ = new QCheckBox("Italic");
    for (QWidget* w : std::initializer_list<QWidget*>{stamp_text_, stamp_font_, stamp_size_, stamp_bold_, stamp_italic_}) tp->addWidget(w);
    text_panel_->setVisible(false);
    tools->addWidget(text_panel_);
    auto restamp = [this] { refresh_text_mask(); };
    connect(stamp_text_, &QLineEdit::textChanged, this, restamp);
    connect(stamp_font_, &QFontComboBox::currentFontChanged, this, restamp);
    connect(stamp_size_, &QSpinBox::valueChanged, this, restamp);
    connect(stamp_bold_, &QCheckBox::toggled, this, restamp);
    connect(stamp_italic_, &QCheckBox::toggled, this, restamp);

    repeat_ = new QCheckBox("Repeat Fill");
    repeat_x_ = new QSpinBox;
    repeat_y_ = new QSpinBox;
    repeat_x_->setRange(0, 128);
    repeat_y_->setRange(0, 128);
    repeat_x_->setPrefix("x ");
    repeat_y_->setPrefix("y ");
    repeat_x_->setValue(4);
    repeat_y_->setValue(4);
    tools->addWidget(repeat_);
    tools->addWidget(repeat_x_);
    tools->addWidget(repeat_y_);
    auto set_repeat = [this] {
        const bool on = repeat_->isChecked();
        if (!tools_.set_repeat(on, repeat_x_->value(), repeat_y_->value()) && on) {
            const QSignalBlocker block(repeat_);
            repeat_->setChecked(false);
            tools_.repeat = false;
        }
    };
    connect(repeat_, &QCheckBox::toggled, this, set_repeat);
    connect(repeat_x_, &QSpinBox::valueChanged, this, set_repeat);
    connect(repeat_y_, &QSpinBox::valueChanged, this, set_repeat);

    pen_ = new QSpinBox;
    pen_->setRange(1, 10);
    pen_->setPrefix("Pen ");
    pen_->setToolTip("Pen width of lines and outlines");
    connect(pen_, &QSpinBox::valueChanged, this, [this](int v) { tools_.pen = v; });
    tools->addWidget(pen_);
    auto* undo_b = new QToolButton;
    undo_b->setText("Undo");
    undo_b->setToolTip("Undo (Ctrl+Z)");
    connect(undo_b, &QToolButton::clicked, this, [this] { undo(); });
    auto* redo_b = new QToolButton;
    redo_b->setText("Redo");
    redo_b->setToolTip("Redo (Ctrl+Y, Ctrl+Shift+Z)");
    connect(redo_b, &QToolButton::clicked, this, [this] { redo(); });
    tools->addWidget(undo_b);
    tools->addWidget(redo_b);
    grid_ = new QCheckBox("Grid");
    grid_->setChecked(true);
    tools->addWidget(grid_);
    auto* grid_colour = new QToolButton;
    grid_colour->setText("Grid colour");
    grid_colour->setToolTip("The colour of the grid lines");
    connect(grid_colour, &QToolButton::clicked, this, [this] {
        const int64_t c = env_.pick_colour(grid_colour_);
        if (c < 0) return;
        grid_colour_ = static_cast<uint32_t>(c);
        canvas_->set_grid_colour(QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF)));
    });
    tools->addWidget(grid_colour);
    auto* zoom_in = new QToolButton;
    zoom_in->setText("Zoom +");
    auto* zoom_out = new QToolButton;
    zoom_out->setText("Zoom -");
    tools->addWidget(zoom_in);
    tools->addWidget(zoom_out);
    tools->addStretch(1);
    root->addLayout(tools);

    // ---- canvas ----
    auto* middle = new QVBoxLayout;
    canvas_ = new CanvasWidget(e_, tools_);
    scroll_ = new QScrollArea;
    scroll_->setWidget(canvas_);
    scroll_->setAlignment(Qt::AlignCenter);
    scroll_->setMinimumSize(420, 420);
    middle->addWidget(scroll_, 1);
    auto* status = new QHBoxLayout;
    position_ = new QLabel(" ");
    position_->setObjectName("position");
    level_ = new QLabel;
    status->addWidget(position_, 1);
    status->addWidget(level_);
    middle->addLayout(status);
    preview_ = new TilePreview(e_);
    middle->addWidget(preview_, 0, Qt::AlignHCenter);
    root->addLayout(middle, 1);
    connect(grid_, &QCheckBox::toggled, canvas_, &CanvasWidget::set_grid);
    connect(zoom_in, &QToolButton::clicked, this, [this] { canvas_->set_zoom(canvas_->zoom() + std::max(1, canvas_->zoom() / 4)); });
    connect(zoom_out, &QToolButton::clicked, this, [this] { canvas_->set_zoom(canvas_->zoom() - std::max(1, canvas_->zoom() / 5)); });
    connect(canvas_, &CanvasWidget::hovered, this, [this](int x, int y) { show_position(x, y); });
    connect(canvas_, &CanvasWidget::edited, this, [this] { refresh_after_edit(); });

    // ---- right side: form, palettes, labels, buttons ----
    auto* side = new QVBoxLayout;
    auto* form_box = new QGroupBox("Element");
    auto* form = new QFormLayout(form_box);
    auto* type_row = new QHBoxLayout;
    type_ = new QLineEdit(QString::fromStdString(e_.type_field));
    type_->setMaxLength(e_.curclass == 4 ? 8 : 3);
    type_->setObjectName("type");
    subtype_ = new QLineEdit(QString::fromStdString(e_.subtype_field));
    subtype_->setMaxLength(2);
    subtype_->setObjectName("subtype");
    type_row->addWidget(new QLabel("0x"));
    type_row->addWidget(type_);
    type_row->addWidget(new QLabel("Sub"));
    type_row->addWidget(subtype_);
    form->addRow("Type", type_row);
    if (e_.is_group()) {
        type_->setEnabled(false);
        subtype_->setEnabled(false);
    }
    const int cls = e_.store_class();
    if (cls == 0) {
        draworder_ = new QComboBox;
        draworder_->addItem("none");
        for (int i = 1; i <= 8; ++i) draworder_->addItem(QString::number(i));
        const int lv = std::atoi(e_.draworder.c_str());
        if (lv > 8) draworder_->addItem(QString::number(lv));
        draworder_->setCurrentText(lv > 0 ? QString::number(lv) : "none");
        form->addRow("Draworder", draworder_);
    }
    if (cls == 1 || cls == 3) {
        lwidth_ = new QSpinBox;
        lwidth_->setRange(0, 31);
        lwidth_->setValue(e_.lwidth);
        border_ = new QSpinBox;
        border_->setRange(0, 31);
        border_->setValue(e_.border);
        lwidth_->setEnabled(e_.solid);
        border_->setEnabled(e_.solid);
        form->addRow("Line width", lwidth_);
        form->addRow("Border", border_);
        orient_ = new QCheckBox("Use orientation");
        orient_->setChecked(e_.orient != 0);
        form->addRow(orient_);
        image_->add_line_height(form);
        if (cls == 3) {
            apply_border_ = new QCheckBox("Apply Border");
            apply_border_->setObjectName("apply_border");
            apply_border_->setToolTip("Apply sends the second colour to the border of every line of this activity");
            form->addRow(apply_border_);
        }
    }
    if (cls == 2 || cls == 4) {
        width_ = new QSpinBox;
        height_ = new QSpinBox;
        width_->setRange(0, 255);
        height_->setRange(0, 255);
        width_->setValue(e_.width);
        height_->setValue(e_.height);
        auto* size = new QHBoxLayout;
        size->addWidget(width_);
        size->addWidget(new QLabel("x"));
        size->addWidget(height_);
        if (!e_.truecolour) {
            auto* canvas = new QPushButton("Canvas...");
            canvas->setObjectName("add_canvas");
            canvas->setToolTip("Add a transparent margin, or double the width or height");
            connect(canvas, &QPushButton::clicked, this, [this] { add_canvas(ask_canvas(this)); });
            size->addWidget(canvas);
        }
        form->addRow("Size", size);
        image_->add_point_size(form, width_, height_);
        if (e_.truecolour) form->addRow(new QLabel("True colour icon"));
    }
    side->addWidget(form_box);

    auto* pal_box = new QGroupBox("Palette");
    auto* pal = new QVBoxLayout(pal_box);
    palette_ = new PaletteWidget;
    palette_->setObjectName("palette");
    palette_->setToolTip("Double Click to change Color ");
    pal->addWidget(palette_);
    auto* pal_buttons = new QGridLayout;
    auto* add = new QPushButton("Add 1 Color");
    auto* del = new QPushButton("Delete");
    auto* trim = new QPushButton("Trim");
    auto* clear = new QPushButton("Clear");
    clear->setToolTip("Clear the whole icon with the first colour");
    connect(clear, &QPushButton::clicked, this, [this] {
        if (editor::clearicon(e_, ui_, e_.alpha)) refresh_after_edit();
    });
    pal_buttons->addWidget(add, 0, 0);
    pal_buttons->addWidget(del, 0, 1);
    pal_buttons->addWidget(trim, 0, 2);
    pal_buttons->addWidget(clear, 1, 0);
    pal->addLayout(pal_buttons);
    magenta_ = new QCheckBox("Transparent Colour Magenta");
    magenta_->setChecked(e_.transparentcolour == editor::k_transparent_magenta);
    pal->addWidget(magenta_);
    connect(magenta_, &QCheckBox::toggled, this, [this](bool on) { set_magenta(on); });
    const bool palette_edits = !e_.truecolour;
    add->setEnabled(palette_edits && !e_.fn013() && !e_.is_group());
    del->setEnabled(palette_edits && !e_.fn013() && !e_.is_group());
    trim->setEnabled(palette_edits && !e_.fn013() && !e_.is_group());
    connect(add, &QPushButton::clicked, this, [this] {
        if (editor::add_colour(e_, ui_, env_.default_colour1, env_.default_colour2, e_.alpha)) refresh_after_edit();
    });
    connect(del, &QPushButton::clicked, this, [this] {
        if (variants_->before_palette_change() && editor::removecol(e_, e_.curcol, ui_, e_.alpha)) refresh_after_edit();
    });
    connect(trim, &QPushButton::clicked, this, [this] {
        if (ui_.yes_no("Remove unused colours?") && editor::trimcols(e_, ui_, e_.alpha)) refresh_after_edit();
    });
    connect(palette_, &PaletteWidget::clicked, this, [this](int i, bool right) {
        if (variants_->palette_click(i, right)) return;
        (right ? e_.curcol2 : e_.curcol) = i + 1;
        refresh_palette();
    });
    connect(palette_, &PaletteWidget::double_clicked, this, [this](int i) { edit_colour(i + 1); });

    auto* chooser_row = new QHBoxLayout;
    chooser_box_ = new QComboBox;
    for (auto m : {editor::ChooserMode::c256, editor::ChooserMode::c64, editor::ChooserMode::c16, editor::ChooserMode::custom})
        chooser_box_->addItem(QString::fromStdString(editor::chooser_caption(m)));
    auto* map = new QPushButton("Apply palette");
    map->setToolTip("Map the picture onto this palette (Ctrl+G)");
    auto* save_pal = new QPushButton("Save palette");
    chooser_row->addWidget(chooser_box_, 1);
    chooser_row->addWidget(map);
    chooser_row->addWidget(save_pal);
    pal->addLayout(chooser_row);
    chooser_ = new PaletteWidget(nullptr, 12);
    chooser_->setObjectName("chooser");
    chooser_->setToolTip("Click: first colour of the element takes it; right click: second colour");
    pal->addWidget(chooser_);
    connect(chooser_box_, &QComboBox::activated, this, [this](int i) { fill_chooser(static_cast<editor::ChooserMode>(i), true); });
    connect(map, &QPushButton::clicked, this, [this] { apply_chooser(); });
    connect(save_pal, &QPushButton::clicked, this, [this] {
        if (!env_.dialogs) return;
        const std::string path = env_.dialogs->save_file("Save palette", {k_palette_filter}, env_.palette_folder);
        if (path.empty()) return;
        std::string why;
        if (!editor::save_tpal(path, e_.palette.colours, &why)) ui_.message(why);
    });
    connect(chooser_, &PaletteWidget::clicked, this, [this](int i, bool right) {
        const std::vector<uint32_t> cols = editor::chooser_colours(chooser_text_);
        if (static_cast<size_t>(i) >= cols.size()) return;
        chooser_pick_ = i;
        chooser_->set_marks(i, -1);
        const int entry = right ? e_.curcol2 : e_.curcol;
        if (!e_.palette.valid(entry) || e_.truecolour) {
            if (e_.truecolour) (right ? e_.pen_colour2 : e_.pen_colour) = cols[static_cast<size_t>(i)];
            return;
        }
        editor::save_curpalette(e_);
        e_.palette.set(entry, cols[static_cast<size_t>(i)]);
        e_.changes1 |= editor::ch_colour;
        e_.eddirty = true;
        editor::painticon(e_);
        refresh_after_edit();
    });
    side->addWidget(pal_box);

    auto* label_box = new QGroupBox("Labels");
    auto* lb = new QVBoxLayout(label_box);
    labels_ = new LabelPanel(e_, ui_, s_.codepage);
    labels_->set_colour_picker(env_.pick_colour);
    labels_->set_chooser(
        [this]() -> std::optional<uint32_t> {
            const std::vector<uint32_t> cols = editor::chooser_colours(chooser_text_);
            if (chooser_pick_ < 0 || static_cast<size_t>(chooser_pick_) >= cols.size()) return std::nullopt;
            return cols[static_cast<size_t>(chooser_pick_)];
        },
        [this] { return tools_.panel_open; });
    lb->addWidget(labels_);
    side->addWidget(label_box);
    side->addStretch(1);

    auto* buttons = new QHBoxLayout;
    apply_ = new QPushButton("Apply");
    apply_->setDefault(false);
    apply_->setAutoDefault(false);
    auto* cancel = new QPushButton("Cancel");
    cancel->setAutoDefault(false);
    buttons->addStretch(1);
    buttons->addWidget(apply_);
    buttons->addWidget(cancel);
    side->addLayout(buttons);
    connect(apply_, &QPushButton::clicked, this, [this] { apply_clicked(); });
    connect(cancel, &QPushButton::clicked, this, [this] { cancel_clicked(); });
    auto* side_widget = new QWidget;
    side_widget->setLayout(side);
    side_widget->setMaximumWidth(420);
    root->addWidget(side_widget);

    // ---- keys ----
    auto key = [this](const QKeySequence& k, auto fn) {
        auto* sc = new QShortcut(k, this);
        connect(sc, &QShortcut::activated, this, fn);
    };
    key(QKeySequence(Qt::CTRL | Qt::Key_Z), [this] { undo(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_Y), [this] { redo(); });
    key(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), [this] { redo(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_R), [this] { redo(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_A), [this] {
        tools_.select_all();
        refresh_tool_buttons();
        canvas_->update();
    });
    key(QKeySequence(Qt::Key_Delete), [this] {
        if (tools_.clear_selection()) refresh_after_edit();
    });
    key(QKeySequence(Qt::CTRL | Qt::Key_G), [this] { apply_chooser(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { canvas_->set_zoom(canvas_->zoom() + std::max(1, canvas_->zoom() / 4)); });
    key(QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { canvas_->set_zoom(canvas_->zoom() - std::max(1, canvas_->zoom() / 5)); });
    show_position(-1, -1);
}

QToolButton* EditorWindow::tool_button(int tool) const {
    for (const auto& [t, b] : tool_buttons_)
        if (t == tool) return b;
    return nullptr;
}

void EditorWindow::refresh_text_mask() {
    platform::TextStyle st;
    st.font = stamp_font_->currentFont().family().toStdString();
    st.pixel_size = stamp_size_->value();
    st.bold = stamp_bold_->isChecked();
    st.italic = stamp_italic_->isChecked();
    tools_.set_text_mask(QtTextRasteriser().render(stamp_text_->text().toStdString(), st));
    canvas_->update();
}

void EditorWindow::refresh_tool_buttons() {
    for (auto& [t, b] : tool_buttons_) b->setChecked(t == e_.tool);
    // The pointer tells the tool: a hand picks, a frame tool sizes, the rest draw.
    const int t = e_.tool;
    canvas_->setCursor(t == editor::t_picker                                                     ? Qt::PointingHandCursor
                       : t == editor::t_select || t == editor::t_crop_select || t == editor::t_crop_pending ? Qt::SizeFDiagCursor
                       : t == editor::t_text                                                     ? Qt::IBeamCursor
                                                                                                 : Qt::CrossCursor);
    text_panel_->setVisible(e_.tool == editor::t_text);
    const std::string hint = tools_.hint();
    if (!hint.empty()) position_->setText(QString::fromStdString(hint));
}

void EditorWindow::choose_tool(int tool) {
    if (e_.solid) {
        // "Convert to Bitmap?": a solid line takes a bitmap first.
        if (!editor::convert_to_bitmap(e_, ui_)) {
            refresh_tool_buttons();
            return;
        }
        if (lwidth_) {
            lwidth_->setEnabled(false);
            border_->setEnabled(false);
        }
        refresh_after_edit();
    }
    tools_.set_tool(tool);
    if (e_.tool == editor::t_text) refresh_text_mask();
    refresh_tool_buttons();
    refresh_palette();
    canvas_->update();
}

void EditorWindow::undo() {
    if (filters_->panel_open()) return;  // the panel's Cancel takes its colours back
    // A palette change is taken back first; a second Ctrl+Z brings it again.
    if (e_.lastpalok ? editor::load_lastpalette(e_) : editor::undo_step(e_)) refresh_after_edit();
}

void EditorWindow::redo() {
    if (editor::redo_step(e_)) refresh_after_edit();
}

void EditorWindow::refresh_palette() {
    palette_->set_colours(e_.palette.colours, e_.transparentcolour);
    palette_->set_marks(e_.curcol - 1, e_.curcol2 - 1);
    if (variants_) variants_->refresh();
}

void EditorWindow::refresh_after_edit() {
    refresh_palette();
    preview_->refresh();
    canvas_->picture_changed();
    if (width_ && !width_->hasFocus()) width_->setValue(e_.width);
    if (height_ && !height_->hasFocus()) height_->setValue(e_.height);
    level_->setText(QString("Undo level %1").arg(e_.undo.level()));
    image_->refresh();
    // The pixel under the pointer may have changed under it (undo, a filter).
    const QPoint h = canvas_->hover();
    if (h.x() >= 0 && h.x() < e_.width && h.y() < e_.height) show_position(h.x(), h.y());
}

void EditorWindow::show_position(int x, int y) {
    if (x < 0 || y < 0) {
        const std::string hint = tools_.hint();
        position_->setText(hint.empty() ? QString("%1 x %2").arg(e_.width).arg(e_.height) : QString::fromStdString(hint));
        return;
    }
    const uint32_t c = e_.surface.at(x, y);
    QString text = QString("x %1  y %2  #%3").arg(x).arg(y).arg(QString::fromStdString(editor::hex6(c)));
    if (!e_.truecolour) {
        const int entry = e_.pixels.at(x, y) + 1;
        text += QString("  colour %1").arg(entry);
        if (e_.palette.transparent(entry, e_.transparentcolour)) text += " (transparent)";
    }
    position_->setText(text);
}

void EditorWindow::fill_chooser(editor::ChooserMode mode, bool ask) {
    std::string path;
    if (mode == editor::ChooserMode::custom) {
        if (ask && env_.dialogs) {
            path = env_.dialogs->open_file("Palette", {k_palette_filter}, env_.palette_folder);
            if (path.empty()) {
                chooser_box_->setCurrentIndex(static_cast<int>(chooser_mode_));
                return;
            }
            if (env_.custom_palette) *env_.custom_palette = path;
        } else if (env_.custom_palette) {
            path = *env_.custom_palette;
        }
    } else if (!env_.palette_folder.empty()) {
        path = env_.palette_folder + "/" + editor::standard_file_name(mode);
    }
    std::optional<std::string> text = path.empty() ? std::nullopt : platform::read_file(path);
    if (!text) {
        if (mode == editor::ChooserMode::custom) {
            if (ask) ui_.message("Can't find Palette " + path);
            return;
        }
        text = editor::tpal_text(editor::standard_palette(mode));
    }
    chooser_mode_ = mode;
    chooser_text_ = *text;
    chooser_pick_ = -1;
    chooser_->set_marks(-1, -1);
    chooser_box_->setCurrentIndex(static_cast<int>(mode));
    chooser_->set_colours(editor::parse_tpal(chooser_text_));
}

void EditorWindow::set_magenta(bool on) {
    editor::switch_transparent_marker(e_, on ? editor::k_transparent_magenta : editor::k_transparent_grey);
    if (env_.magenta) *env_.magenta = on;
    if (magenta_->isChecked() != on) {
        const QSignalBlocker block(magenta_);
        magenta_->setChecked(on);
    }
    refresh_after_edit();
}

bool EditorWindow::add_canvas(const std::string& answer) {
    if (answer.empty() || !editor::add_canvas(e_, answer, ui_)) return false;
    canvas_->set_zoom(canvas_->zoom());
    refresh_after_edit();
    return true;
}

void EditorWindow::apply_chooser() {
    // The mapping reads the palette's file afresh: the mode's file, the
    // custom one chosen, or the 256 colours when none was.
    std::string path;
    if (chooser_mode_ == editor::ChooserMode::custom && env_.custom_palette && !env_.custom_palette->empty())
        path = *env_.custom_palette;
    else
        path = env_.palette_folder + "/" +
               editor::standard_file_name(chooser_mode_ == editor::ChooserMode::custom ? editor::ChooserMode::c256 : chooser_mode_);
    std::vector<size_t> hidden;
    if (!editor::apply_palette_file(e_, path, tools_.has_frame(), ui_, &hidden)) return;
    for (size_t i : hidden) chooser_->hide_cell(static_cast<int>(i));
    refresh_after_edit();
}

void EditorWindow::edit_colour(int entry) {
    if (!e_.palette.valid(entry)) return;
    const int64_t picked = env_.pick_colour(e_.palette.colour(entry));
    if (picked < 0) return;
    editor::save_curpalette(e_);
    e_.palette.set(entry, static_cast<uint32_t>(picked));
    e_.changes1 |= editor::ch_colour;
    e_.eddirty = true;
    editor::painticon(e_);
    refresh_after_edit();
}

void EditorWindow::form_to_session() {
    labels_->store_shown();
    e_.type_field = type_->text().toStdString();
    e_.subtype_field = subtype_->text().toStdString();
    if (draworder_) {
        const QString d = draworder_->currentText();
        e_.draworder = d == "none" ? std::string() : d.toStdString();
    }
    if (lwidth_) {
        if (lwidth_->value() != e_.lwidth) e_.changes2 |= editor::ch_lwidth;
        if (border_->value() != e_.border) e_.changes2 |= editor::ch_border;
        e_.lwidth = lwidth_->value();
        e_.border = border_->value();
        e_.orient = orient_->isChecked() ? 1 : 0;
    }
    if (width_) {
        e_.width_box = width_->value();
        e_.height_box = height_->value();
    }
}

bool EditorWindow::apply_clicked() {
    // A pasted picture still floating is part of what the user sees.
    tools_.commit_layer();
    form_to_session();
    editor::ApplyForm form = image_->apply_form();
    form.filter_panel_open = filters_->panel_open();
    variants_->before_apply();
    form.apply_border = apply_border_ && apply_border_->isChecked();
    const auto apply = [&] { outcome_ = editor::apply(s_, e_, ui_, form); };
    if (env_.as_step)
        env_.as_step(apply);
    else
        apply();
    if (width_) {
        width_->setValue(e_.width_box);
        height_->setValue(e_.height_box);
    }
    subtype_->setText(QString::fromStdString(e_.subtype_field));
    type_->setText(QString::fromStdString(e_.type_field));
    if (!outcome_.committed) return false;
    e_.eddirty = false;
    accept();
    return true;
}

void EditorWindow::cancel_clicked() {
    e_.eddirty = false;
    e_.labelchanged = false;
    closing_by_cancel_ = true;
    QDialog::reject();
}

void EditorWindow::keyPressEvent(QKeyEvent* ev) {
    if (ev->key() == Qt::Key_Escape) {
        // Esc ends a tool's work; it never closes the editor.
        if (tools_.escape()) {
            refresh_tool_buttons();
            canvas_->update();
        }
        ev->accept();
        return;
    }
    QDialog::keyPressEvent(ev);
}

void EditorWindow::reject() {
    // The window's close button and the platform's close key come here.
    if (closing_by_cancel_) {
        QDialog::reject();
        return;
    }
    if (e_.eddirty && !ui_.yes_no("Exit without saving changes?")) return;
    QDialog::reject();
}

void EditorWindow::closeEvent(QCloseEvent* ev) {
    if (result() == QDialog::Accepted || closing_by_cancel_ || !e_.eddirty || ui_.yes_no("Exit without saving changes?")) {
        ev->accept();
        return;
    }
    ev->ignore();
}

}  // namespace korvex::gui
