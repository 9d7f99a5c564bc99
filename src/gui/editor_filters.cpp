#include "gui/editor_filters.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QTimer>

#include "editor/canvas.h"
#include "editor/colour_count.h"
#include "editor/image_filters.h"
#include "editor/median_cut.h"
#include "editor/palette_file.h"
#include "editor/patterns.h"
#include "editor/transforms.h"
#include "gui/canvas_widget.h"
#include "gui/editor_window.h"

namespace korvex::gui {

namespace {

struct SliderDef {
    const char* name;
    int low, high;
};

// The panel's sliders; every one rests at 0.
const SliderDef k_sliders[] = {
    {"Brightness", -100, 100}, {"Contrast", -100, 100}, {"Hue", -180, 180},  {"Lightness", -100, 100},
    {"Saturation", -100, 100}, {"Red", -100, 100},      {"Green", -100, 100}, {"Blue", -100, 100},
    {"Cyan", -100, 100},       {"Magenta", -100, 100},  {"Yellow", -100, 100}, {"Vibrance", -100, 100},
};

// Half blinks of the colour count: three times on and off.
constexpr int k_blink_ms = 180;

}  // namespace

EditorFilters::EditorFilters(EditorWindow& w) : QObject(&w), w_(w) {
    build_menu();
    build_panel();
    blink_ = new QTimer(this);
    blink_->setInterval(k_blink_ms);
    connect(blink_, &QTimer::timeout, this, [this] { blink_tick(); });
}

void EditorFilters::build_menu() {
    QLayout* root = w_.layout();
    auto* bar = qobject_cast<QMenuBar*>(root->menuBar());
    if (!bar) {
        bar = new QMenuBar(&w_);
        root->setMenuBar(bar);
    }
    menu_ = bar->addMenu("Filters");
    menu_->setObjectName("filters_menu");
    for (const editor::FilterDef& d : editor::filter_table())
        menu_->addAction(d.caption, this, [this, code = d.code] { run_filter(code); })->setProperty("filter_group", true);
    menu_->addSeparator();
    auto group = [this](QAction* a) { a->setProperty("filter_group", true); };
    group(menu_->addAction("Adjust Colours...", this, [this] { open_panel(); }));
    group(menu_->addAction("Invert Colours", this, [this] {
        if (editor::minvert(w_.e_, w_.ui_)) after_edit();
    }));
    group(menu_->addAction("Desaturate", this, [this] {
        if (editor::mdesat(w_.e_)) after_edit();
    }));
    group(menu_->addAction("Reduce Colours...", this, [this] {
        bool ok = false;
        const int n = QInputDialog::getInt(&w_, "Reduce Colours", "Colours:", std::min(w_.e_.ncols(), editor::k_max_colours), 1,
                                           editor::k_max_colours, 1, &ok);
        if (ok) reduce_to(n);
    }));
    menu_->addSeparator();
    menu_->addAction("Flip Horizontal", this, [this] {
        if (editor::flip(w_.e_, 0, w_.tools_.has_frame(), w_.ui_)) after_edit();
    });
    menu_->addAction("Flip Vertical", this, [this] {
        if (editor::flip(w_.e_, 1, w_.tools_.has_frame(), w_.ui_)) after_edit();
    });
    menu_->addAction("Rotate", this, [this] {
        if (editor::rotate(w_.e_, w_.tools_.has_frame(), w_.ui_)) after_edit();
    });
    menu_->addSeparator();
    // The pen width gives the bars' width; a selection limits the pattern.
    auto area = [this] { return w_.tools_.has_frame() ? w_.tools_.frame() : editor::Rect{}; };
    QMenu* patterns = menu_->addMenu("Patterns");
    patterns->addAction("Horizontal Stripes", this, [this, area] {
        if (editor::stripes(w_.e_, 0, w_.tools_.pen, area(), random_, w_.ui_)) after_edit();
    });
    patterns->addAction("Vertical Stripes", this, [this, area] {
        if (editor::stripes(w_.e_, 1, w_.tools_.pen, area(), random_, w_.ui_)) after_edit();
    });
    patterns->addAction("Horizontal Waves", this, [this, area] {
        if (editor::waves(w_.e_, 0, area(), random_, w_.ui_)) after_edit();
    });
    patterns->addAction("Vertical Waves", this, [this, area] {
        if (editor::waves(w_.e_, 1, area(), random_, w_.ui_)) after_edit();
    });
    menu_->addSeparator();
    menu_->addAction("Colour Count:", this, [this] { colour_count(0); });
    menu_->addAction("Next Rarer Colour", this, [this] { colour_count(1); });
    connect(menu_, &QMenu::aboutToShow, this, [this] { shwfilt(filter_state()); });
}

void EditorFilters::build_panel() {
    panel_ = new QGroupBox("Adjust Colours");
    panel_->setObjectName("adjust_panel");
    auto* grid = new QGridLayout(panel_);
    int row = 0;
    for (const SliderDef& d : k_sliders) {
        auto* label = new QLabel(QString::fromStdString(editor::slider_label(d.name, 0)));
        label->setMinimumWidth(110);
        auto* s = new QSlider(Qt::Horizontal);
        s->setObjectName(d.name);
        s->setRange(d.low, d.high);
        s->setValue(0);
        s->setMinimumWidth(160);
        grid->addWidget(label, row, 0);
        grid->addWidget(s, row, 1);
        ++row;
        sliders_.push_back({d.name, s, label});
        connect(s, &QSlider::valueChanged, this, [this] { sliders_moved(); });
    }
    onecolour_ = new QCheckBox("Apply Filter to 1 colour ");
    grid->addWidget(onecolour_, row++, 0, 1, 2);
    connect(onecolour_, &QCheckBox::toggled, this, [this](bool on) {
        adjuster_.set_onecolour(w_.e_, on);
        w_.refresh_after_edit();
    });
    auto* buttons = new QHBoxLayout;
    auto* apply = new QPushButton("Apply");
    apply->setObjectName("adjust_apply");
    auto* cancel = new QPushButton("Cancel");
    cancel->setObjectName("adjust_cancel");
    auto* restore = new QPushButton("Restore Image");
    for (QPushButton* b : {apply, cancel, restore}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    grid->addLayout(buttons, row, 0, 1, 2);
    connect(apply, &QPushButton::clicked, this, [this] { apply_panel(); });
    connect(cancel, &QPushButton::clicked, this, [this] { cancel_panel(); });
    connect(restore, &QPushButton::clicked, this, [this] { restore_image(); });
    panel_->setVisible(false);
    if (auto* box = qobject_cast<QBoxLayout*>(w_.layout())) box->addWidget(panel_);
}

int EditorFilters::filter_state() const {
    const editor::EditorSession& e = w_.e_;
    if (adjuster_.is_open()) return 4;
    if (e.width <= 0 || e.height <= 0 || e.solid) return 0;
    if (w_.tools_.has_frame() || !w_.tools_.layer().empty()) return 2;
    return e.truecolour ? 3 : 1;
}

void EditorFilters::shwfilt(int state) {
    const bool on = state == 1 || state == 3;
    for (QAction* a : menu_->actions())
        if (a->property("filter_group").toBool()) a->setEnabled(on);
}

QAction* EditorFilters::action(const QString& caption) const {
    for (QAction* a : menu_->findChildren<QAction*>())
        if (a->text() == caption) return a;
    return nullptr;
}

QSlider* EditorFilters::slider(const QString& name) const {
    for (const SliderRow& r : sliders_)
        if (r.name == name) return r.slider;
    return nullptr;
}

void EditorFilters::after_edit() {
    w_.refresh_after_edit();
    w_.position_->setText(QString("Colours: %1").arg(w_.e_.ncols()));
}

void EditorFilters::run_filter(int code) {
    if (editor::Filter(w_.e_, code, w_.ui_)) after_edit();
}

void EditorFilters::reduce_to(int target) {
    const editor::ReduceOutcome r = editor::reduce_colours(w_.e_, target);
    if (r.after == 0) return;
    w_.ui_.status(editor::reduce_status(r));
    after_edit();
}

void EditorFilters::open_panel() {
    if (adjuster_.is_open() || filter_state() == 0) return;
    adjuster_.open(w_.e_);
    {
        const QSignalBlocker block(onecolour_);
        onecolour_->setChecked(adjuster_.onecolour());
    }
    for (const SliderRow& r : sliders_) {
        const QSignalBlocker block(r.slider);
        r.slider->setValue(0);
        r.label->setText(QString::fromStdString(editor::slider_label(r.name.toStdString(), 0)));
    }
    w_.tools_.panel_open = true;
    panel_->setVisible(true);
    shwfilt(4);
}

void EditorFilters::sliders_moved() {
    editor::Sliders s;
    int* fields[] = {&s.brightness, &s.contrast, &s.hue, &s.lightness, &s.saturation, &s.red,
                     &s.green,      &s.blue,     &s.cyan, &s.magenta,  &s.yellow,     &s.vibrance};
    for (size_t i = 0; i < sliders_.size(); ++i) {
        *fields[i] = sliders_[i].slider->value();
        sliders_[i].label->setText(QString::fromStdString(editor::slider_label(sliders_[i].name.toStdString(), *fields[i])));
    }
    adjuster_.move(w_.e_, s);
    w_.refresh_after_edit();
}

void EditorFilters::apply_panel() {
    adjuster_.apply(w_.e_);
    w_.tools_.panel_open = false;
    panel_->setVisible(false);
    after_edit();
}

void EditorFilters::cancel_panel() {
    adjuster_.cancel(w_.e_);
    w_.tools_.panel_open = false;
    panel_->setVisible(false);
    w_.refresh_after_edit();
}

void EditorFilters::restore_image() {
    adjuster_.restore(w_.e_);
    for (const SliderRow& r : sliders_) {
        const QSignalBlocker block(r.slider);
        r.slider->setValue(0);
        r.label->setText(QString::fromStdString(editor::slider_label(r.name.toStdString(), 0)));
    }
    w_.refresh_after_edit();
}

void EditorFilters::colour_count(int index) {
    editor::EditorSession& e = w_.e_;
    if (e.truecolour || e.ncols() == 0) return;
    const std::vector<long> counts = editor::colour_counts(e);
    int entry = e.curcol;
    if (index == 1 || !e.palette.valid(entry)) entry = editor::next_rarer(counts, index == 1 ? e.curcol : -1);
    if (!e.palette.valid(entry)) return;
    e.curcol = entry;
    w_.refresh_palette();
    w_.position_->setText(QString::fromStdString(editor::colour_count_text(counts, entry) + "  #" +
                                                 editor::hex6(e.palette.colour(entry))));
    // The entry blinks: three times in the blink colour and back.
    blink_entry_ = entry;
    blink_step_ = 0;
    blink_tick();
    blink_->start();
}

void EditorFilters::blink_tick() {
    editor::EditorSession& e = w_.e_;
    if (blink_step_ >= 2 * editor::k_blinks || !e.palette.valid(blink_entry_)) {
        blink_->stop();
        w_.canvas_->set_blink(0);
    } else {
        w_.canvas_->set_blink(blink_step_ % 2 == 0 ? blink_entry_ : 0);
    }
    ++blink_step_;
}

}  // namespace korvex::gui
