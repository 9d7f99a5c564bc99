#include "gui/editor_variants.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>

#include "editor/canvas.h"
#include "editor/editor_session.h"
#include "editor/extra_points.h"
#include "editor/night_option.h"
#include "editor/opacity.h"
#include "editor/point_pictures.h"
#include "editor/transparency.h"
#include "editor/true_colour.h"
#include "gui/canvas_widget.h"
#include "gui/editor_window.h"
#include "gui/label_panel.h"
#include "gui/palette_widget.h"
#include "gui/qt_colour.h"

namespace korvex::gui {

namespace {

// The pink of the opacity tools.
const char* k_pink = "QToolButton { background: #FFB6D9; } QToolButton:checked { background: #FF69B4; }";

}  // namespace

PreviewWidget::PreviewWidget(QWidget* parent) : QWidget(parent) { setMinimumSize(64, 64); }

void PreviewWidget::set_picture(editor::Raster picture, uint32_t marker, editor::PixelGrid opacity) {
    picture_ = std::move(picture);
    opacity_ = std::move(opacity);
    marker_ = marker;
    update();
}

void PreviewWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    if (picture_.empty()) return;
    const int cell = std::max(1, std::min(width() / picture_.width(), height() / picture_.height()));
    const int ox = (width() - cell * picture_.width()) / 2, oy = (height() - cell * picture_.height()) / 2;
    for (int y = 0; y < picture_.height(); ++y)
        for (int x = 0; x < picture_.width(); ++x) {
            const QRect r(ox + x * cell, oy + y * cell, cell, cell);
            // The chequer behind shows through what is transparent.
            p.fillRect(r, (x + y) % 2 ? QColor(0xCC, 0xCC, 0xCC) : Qt::white);
            const uint32_t c = picture_.at(x, y);
            const int level = opacity_.inside(x, y) ? opacity_.at(x, y) : (c == marker_ ? editor::k_max_level : 0);
            if (level >= editor::k_max_level) continue;
            QColor q = qcolour(c);
            q.setAlpha(255 - level * 255 / editor::k_max_level);
            p.fillRect(r, q);
        }
}

EditorVariants::EditorVariants(EditorWindow& w) : QObject(&w), w_(w) {
    build();
    refresh();
}

QToolButton* EditorVariants::opacity_tool_button(int tool) const {
    if (tool == editor::t_opacity_fill) return opacity_fill_;
    if (tool == editor::t_opacity_pencil) return opacity_pencil_;
    return nullptr;
}

void EditorVariants::build() {
    editor::EditorSession& e = w_.e_;
    const int cls = e.store_class();
    const bool point = editor::is_point(e);
    panel_ = new QGroupBox("Night && Opacity");
    panel_->setObjectName("variants_panel");
    auto* box = new QVBoxLayout(panel_);

    label_ = new QLabel;
    label_->setObjectName("variant_label");
    night_ = new QCheckBox("Has Night BMP");
    night_->setObjectName("night_tick");
    swap_ = new QPushButton;
    swap_->setObjectName("day_night");
    preview_ = new PreviewWidget;
    preview_->setObjectName("night_preview");
    box->addWidget(label_);
    box->addWidget(night_);
    box->addWidget(swap_);
    box->addWidget(preview_);
    connect(night_, &QCheckBox::toggled, this, [this](bool on) { set_night(on); });
    connect(swap_, &QPushButton::clicked, this, [this] { swap_day_night(); });

    if (!point) {
        // The night colours of a line or polygon: shown, edited here only.
        night_cells_ = new PaletteWidget;
        night_cells_->setObjectName("night_cells");
        edit_night_ = new QPushButton("Edit Night Colours");
        reverse_ = new QPushButton("Reverse");
        reverse_->setToolTip("The two colours change places in the bitmap");
        box->addWidget(night_cells_);
        box->addWidget(edit_night_);
        box->addWidget(reverse_);
        connect(night_cells_, &PaletteWidget::clicked, this, [this](int i, bool) {
            night_cell_ = i + 1;
            w_.ui_.message("To Edit colours Click Edit Night Colours.");
            refresh();
        });
        connect(night_cells_, &PaletteWidget::double_clicked, this, [this](int i) {
            night_cell_ = i + 1;
            edit_night_colour();
        });
        connect(edit_night_, &QPushButton::clicked, this, [this] { edit_night_colour(); });
        connect(reverse_, &QPushButton::clicked, this, [this] { reverse(); });
    }

    transparent_ = new QCheckBox("Transparent");
    transparent_->setObjectName("transparent_tick");
    transparent_->setToolTip("The selected colour is the transparent one");
    box->addWidget(transparent_);
    connect(transparent_, &QCheckBox::toggled, this, [this](bool on) { set_transparent(on); });

    if (point) {
        opacity_ = new QCheckBox("Opacity");
        opacity_->setObjectName("opacity_tick");
        opacity_->setToolTip("Colormode 32: a level of opacity for every pixel and colour");
        truecolour_ = new QCheckBox("True colour");
        truecolour_->setObjectName("truecolour_tick");
        level_ = new QComboBox;
        level_->setObjectName("opacity_level");
        for (int i = 0; i <= editor::k_max_level; ++i) level_->addItem(QString::number(i));
        level_->setToolTip("Opacity level: 0 opaque, 15 fully transparent");
        opacity_fill_ = new QToolButton;
        opacity_fill_->setText("Opacity Fill");
        opacity_fill_->setToolTip("Every pixel of the colour under the pointer takes the level");
        opacity_pencil_ = new QToolButton;
        opacity_pencil_->setText("Opacity Pencil");
        opacity_pencil_->setToolTip("The pixels under the pointer take the level");
        for (QToolButton* b : {opacity_fill_, opacity_pencil_}) {
            b->setCheckable(true);
            b->setStyleSheet(k_pink);
        }
        opacity_fill_->setObjectName("tool_opacity_fill");
        opacity_pencil_->setObjectName("tool_opacity_pencil");
        auto* tools = new QHBoxLayout;
        tools->addWidget(level_);
        tools->addWidget(opacity_fill_);
        tools->addWidget(opacity_pencil_);
        box->addWidget(truecolour_);
        box->addWidget(opacity_);
        box->addLayout(tools);
        connect(opacity_, &QCheckBox::toggled, this, [this](bool on) { set_opacity(on); });
        connect(truecolour_, &QCheckBox::toggled, this, [this](bool on) { set_truecolour(on); });
        connect(level_, &QComboBox::activated, this, [this](int i) { w_.e_.oplevel = editor::moplev(i); });
        connect(opacity_fill_, &QToolButton::clicked, this, [this] {
            w_.choose_tool(editor::t_opacity_fill);
            refresh();
        });
        connect(opacity_pencil_, &QToolButton::clicked, this, [this] {
            w_.choose_tool(editor::t_opacity_pencil);
            refresh();
        });
    }
    if (cls == 4) {
        extra_ = new QListWidget;
        extra_->setObjectName("extra_list");
        int current = -1;
        for (const editor::ExtraPointItem& item : editor::extra_point_list(w_.s_)) {
            if (item.row == e.row) current = extra_->count();
            extra_->addItem(QString::fromStdString(item.name));
        }
        extra_->setCurrentRow(current);
        box->addWidget(extra_);
        connect(extra_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { go_to_extra_point(extra_->row(item)); });
    }
    box->addStretch(1);
    if (auto* root = qobject_cast<QBoxLayout*>(w_.layout())) root->addWidget(panel_);
    // The preview follows the pointer's work on the canvas.
    connect(w_.canvas_, &CanvasWidget::edited, this, [this] { refresh(); });
}

void EditorVariants::refresh() {
    editor::EditorSession& e = w_.e_;
    const bool point = editor::is_point(e);
    const uint32_t marker = e.transparentcolour;
    {
        const QSignalBlocker b1(night_), b2(transparent_);
        night_->setChecked(editor::has_night(e));
        const int entry = editor::transp_entry_of(e);
        transparent_->setChecked(e.palette.transparent(entry, marker));
        transparent_->setEnabled(!e.truecolour && e.palette.valid(entry));
    }
    label_->setText(QString::fromStdString(editor::variant_label(e)));
    label_->setVisible(point && e.bmpmode != 0);
    swap_->setText(QString::fromStdString(editor::cmd19_caption(e)));
    swap_->setVisible(point && e.bmpmode != 0);
    night_->setEnabled(!e.is_group() || e.curclass == editor::k_line_group || e.curclass == editor::k_polygon_group);

    if (editor::has_night(e)) {
        preview_->set_picture(editor::nightvers(e), marker);
        preview_->setToolTip("Night");
    } else if (point && e.alpha) {
        preview_->set_picture(e.surface, marker, e.opacity);
        preview_->setToolTip("Opacity");
    } else {
        preview_->set_picture({}, marker);
    }
    preview_->setVisible(!preview_->picture().empty());

    if (night_cells_) {
        night_cells_->set_colours(e.nightpal.colours, marker);
        night_cells_->set_marks(night_cell_ - 1, -1);
        night_cells_->setVisible(e.hasnight && e.nightpal.ncols() > 0);
        edit_night_->setVisible(e.hasnight && e.nightpal.ncols() > 0);
        reverse_->setEnabled(!e.is_group() && !e.solid);
    }
    if (opacity_) {
        const QSignalBlocker b1(opacity_), b2(truecolour_);
        opacity_->setChecked(e.alpha);
        truecolour_->setChecked(e.truecolour);
        level_->setCurrentIndex(editor::moplev(e.oplevel));
        for (QWidget* wd : std::initializer_list<QWidget*>{level_, opacity_fill_, opacity_pencil_}) wd->setEnabled(e.alpha);
        opacity_fill_->setChecked(e.alpha && e.tool == editor::t_opacity_fill);
        opacity_pencil_->setChecked(e.alpha && e.tool == editor::t_opacity_pencil);
        std::vector<int> levels;
        if (e.alpha && !e.truecolour)
            for (int i = 1; i <= e.ncols(); ++i) levels.push_back(editor::level_of(e.palette, i, marker));
        w_.palette_->set_levels(levels);
        w_.palette_->setToolTip(e.alpha ? "Double Click to change Color / Right Click to change Opacity" : "Double Click to change Color ");
        // With opacity on the levels tell transparency, not the "T".
        if (e.alpha) w_.palette_->set_colours(e.palette.colours, -1);
        if (e.alpha) w_.position_->setText("Click Pink Buttons to change alpha values.");
    }
}

void EditorVariants::after_edit() {
    w_.refresh_after_edit();
    refresh();
}

bool EditorVariants::palette_click(int index, bool right) {
    if (!right || !w_.e_.alpha) return false;
    if (editor::set_colour_level(w_.e_, index + 1, w_.e_.oplevel)) after_edit();
    return true;
}

bool EditorVariants::before_palette_change() { return editor::resetnight(w_.e_, w_.ui_); }

void EditorVariants::before_apply() {
    editor::EditorSession& e = w_.e_;
    if (e.curclass != 4) return;
    const std::vector<std::string> lines = editor::poiextraset(e, e.row - w_.s_.pt_n);
    log_.insert(log_.end(), lines.begin(), lines.end());
}

void EditorVariants::swap_day_night() {
    w_.tools_.escape();
    if (editor::cmd19(w_.e_)) after_edit();
}

void EditorVariants::set_night(bool on) {
    editor::EditorSession& e = w_.e_;
    const bool extended = e.labels.extendedlabels;
    if (editor::set_night(e, on, w_.ui_) && e.labels.extendedlabels != extended) w_.labels_->extended_tick()->setChecked(e.labels.extendedlabels);
    after_edit();
}

void EditorVariants::set_opacity(bool on) {
    editor::EditorSession& e = w_.e_;
    // Without opacity the pink tools' slots are the flip and the turn again.
    if (editor::opaval(e, on, w_.ui_) && !on && (e.tool == editor::t_opacity_fill || e.tool == editor::t_opacity_pencil))
        w_.choose_tool(editor::t_pencil);
    after_edit();
}

void EditorVariants::set_transparent(bool on) {
    editor::transp(w_.e_, on, w_.ui_);
    after_edit();
}

void EditorVariants::set_truecolour(bool on) {
    editor::truecol(w_.e_, on, w_.ui_);
    after_edit();
}

void EditorVariants::edit_night_colour() {
    editor::EditorSession& e = w_.e_;
    if (!e.nightpal.valid(night_cell_)) night_cell_ = 1;
    if (!e.nightpal.valid(night_cell_)) return;
    const int64_t picked = w_.env_.pick_colour(e.nightpal.colour(night_cell_));
    if (picked < 0) return;
    e.nightpal.set(night_cell_, static_cast<uint32_t>(picked));
    e.changes1 |= editor::ch_night;
    e.eddirty = true;
    after_edit();
}

void EditorVariants::reverse() {
    if (editor::reverse_pair(w_.e_, w_.ui_)) after_edit();
}

void EditorVariants::go_to_extra_point(int index) {
    const std::vector<editor::ExtraPointItem> list = editor::extra_point_list(w_.s_);
    if (index < 0 || static_cast<size_t>(index) >= list.size()) return;
    w_.form_to_session();
    editor::ApplyOutcome applied;
    std::vector<std::string> lines;
    if (!editor::leave_extra_point(w_.s_, w_.e_, list[static_cast<size_t>(index)], w_.ui_, lines, applied)) {
        for (int i = 0; i < extra_->count(); ++i)
            if (list[static_cast<size_t>(i)].row == w_.e_.row) extra_->setCurrentRow(i);
        return;
    }
    log_.insert(log_.end(), lines.begin(), lines.end());
    next_row_ = list[static_cast<size_t>(index)].row;
    // The editor closes on this point and opens on the clicked one.
    w_.e_.eddirty = false;
    if (applied.committed) {
        w_.outcome_ = applied;
        w_.accept();
    } else {
        w_.closing_by_cancel_ = true;
        w_.QDialog::reject();
    }
}

}  // namespace korvex::gui
