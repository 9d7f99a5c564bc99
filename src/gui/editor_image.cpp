#include "gui/editor_image.h"

#include <QAction>
#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include "editor/bitmap_save.h"
#include "editor/image_import.h"
#include "editor/point_size.h"
#include "gui/canvas_widget.h"
#include "gui/editor_window.h"
#include "gui/qt_clipboard.h"
#include "gui/qt_images.h"

namespace korvex::gui {

EditorImage::EditorImage(EditorWindow& w) : QObject(&w), w_(w) {}

EditorImage::~EditorImage() = default;

platform::Clipboard& EditorImage::clipboard() {
    if (w_.env_.clipboard) return *w_.env_.clipboard;
    if (!own_clipboard_) own_clipboard_ = std::make_unique<QtClipboard>(w_.s_.codepage);
    return *own_clipboard_;
}

platform::ImageCodec& EditorImage::codec() {
    if (w_.env_.images) return *w_.env_.images;
    if (!own_codec_) own_codec_ = std::make_unique<QtImageCodec>();
    return *own_codec_;
}

QMenuBar* EditorImage::menu_bar() {
    if (bar_) return bar_;
    bar_ = new QMenuBar;
    QMenu* m = bar_->addMenu("&Image");
    const bool point = w_.e_.store_class() == 2 || w_.e_.store_class() == 4;
    auto add = [&](const char* name, const QString& caption, const QKeySequence& key, auto fn) {
        QAction* a = m->addAction(caption);
        a->setObjectName(name);
        if (!key.isEmpty()) {
            a->setShortcut(key);
            // The keys act wherever the focus is in the editor.
            w_.addAction(a);
        }
        connect(a, &QAction::triggered, this, fn);
        return a;
    };
    add("import", "Import Image...", {}, [this] { import(); });
    add("paste", "Paste", QKeySequence(Qt::CTRL | Qt::Key_V), [this] { paste(false); });
    add("paste_into", "Paste into Selection", QKeySequence(Qt::CTRL | Qt::Key_P), [this] { paste(true); });
    QAction* keep = m->addAction("Keep Proportions");
    keep->setObjectName("keep_proportions");
    keep->setCheckable(true);
    connect(keep, &QAction::toggled, this, [this](bool on) { set_keep_proportions(on); });
    m->addSeparator();
    add("copy", "Copy", QKeySequence(Qt::CTRL | Qt::Key_C), [this] { copy(false); });
    add("cut", "Cut", QKeySequence(Qt::CTRL | Qt::Key_X), [this] { copy(true); });
    QAction* crop_a = add("crop", "Crop", {}, [this] { crop(); });
    crop_a->setEnabled(point);
    m->addSeparator();
    add("save_bitmap", "Save as Bitmap...", {}, [this] { save_bitmap(); });
    m->addSeparator();
    QAction* back = add("undo_size", "Undo Size Change", {}, [this] { undo_size(0); });
    back->setToolTip(" Undo Bitmap Change of Size ");
    QAction* forward = add("redo_size", "Redo Size Change", {}, [this] { undo_size(1); });
    forward->setToolTip(" Undo Bitmap Change of Size ");
    refresh();
    return bar_;
}

QAction* EditorImage::action(const char* name) const {
    return bar_ ? bar_->findChild<QAction*>(name) : nullptr;
}

void EditorImage::add_point_size(QFormLayout* form, QSpinBox* width, QSpinBox* height) {
    width_ = width;
    height_ = height;
    width->setObjectName("width_box");
    height->setObjectName("height_box");
    // Above 128 the size button says so.
    for (QSpinBox* b : {width, height}) {
        b->setRange(0, 999);
        b->setReadOnly(false);
        b->setButtonSymbols(QAbstractSpinBox::UpDownArrows);
    }
    resize_button_ = new QPushButton("Resize");
    resize_button_->setObjectName("resize");
    resize_button_->setCheckable(true);
    resize_button_->setToolTip("Open the resize frame; Change size applies the size boxes");
    form->addRow(resize_button_);

    resize_frame_ = new QWidget;
    resize_frame_->setObjectName("resize_frame");
    auto* lay = new QVBoxLayout(resize_frame_);
    lay->setContentsMargins(0, 0, 0, 0);
    stretch_ = new QCheckBox("Stretch");
    stretch_->setObjectName("stretch");
    stretch_->setChecked(true);
    stretch_->setToolTip("Stretch the picture to the new size; without, it is padded with the transparent colour");
    auto* keep = new QCheckBox("Keep Proportions");
    keep->setObjectName("keep_box");
    auto* change = new QPushButton("Change size");
    change->setObjectName("change_size");
    auto* undo_row = new QHBoxLayout;
    auto* back = new QPushButton("Undo size");
    auto* forward = new QPushButton("Redo size");
    back->setToolTip(" Undo Bitmap Change of Size ");
    forward->setToolTip(" Undo Bitmap Change of Size ");
    undo_row->addWidget(back);
    undo_row->addWidget(forward);
    lay->addWidget(stretch_);
    lay->addWidget(keep);
    lay->addWidget(change);
    lay->addLayout(undo_row);
    resize_frame_->setVisible(false);
    form->addRow(resize_frame_);
    connect(resize_button_, &QPushButton::toggled, resize_frame_, &QWidget::setVisible);
    connect(change, &QPushButton::clicked, this, [this] { resize(); });
    connect(keep, &QCheckBox::toggled, this, [this](bool on) { set_keep_proportions(on); });
    connect(back, &QPushButton::clicked, this, [this] { undo_size(0); });
    connect(forward, &QPushButton::clicked, this, [this] { undo_size(1); });
}

void EditorImage::add_line_height(QFormLayout* form) {
    line_height_ = new QSpinBox;
    line_height_->setObjectName("bitmap_height");
    line_height_->setRange(0, 99);
    line_height_->setValue(w_.e_.height);
    line_height_->setToolTip("Height of the line's bitmap (1 - 32); its width stays 32");
    form->addRow("Bitmap height", line_height_);
    connect(line_height_, &QSpinBox::editingFinished, this, [this] {
        editor::EditorSession& e = w_.e_;
        if (e.solid || line_height_->value() == e.height) return;
        if (editor::changebmp(e, w_.ui_, line_height_->value()))
            changed();
        else
            line_height_->setValue(e.height);
    });
    refresh();
}

editor::ApplyForm EditorImage::apply_form() const {
    editor::ApplyForm f;
    f.resize_open = resize_frame_ && resize_frame_->isVisible();
    f.stretch = !stretch_ || stretch_->isChecked();
    return f;
}

void EditorImage::refresh() {
    const editor::EditorSession& e = w_.e_;
    if (line_height_) {
        line_height_->setEnabled(!e.solid);
        if (!line_height_->hasFocus()) line_height_->setValue(e.height);
    }
    if (QAction* a = action("undo_size")) a->setEnabled(e.sizeundo.slot[0].valid);
    if (QAction* a = action("redo_size")) a->setEnabled(e.sizeundo.slot[1].valid);
    if (QToolButton* b = w_.tool_button(editor::t_crop_select))
        b->setToolTip(e.tool == editor::t_crop_pending ? "Apply crop or press ESC to cancel" : "Crop selection: frame, then double click inside");
}

void EditorImage::changed() {
    w_.refresh_after_edit();
    w_.refresh_tool_buttons();
    if (width_) {
        width_->setValue(w_.e_.width);
        height_->setValue(w_.e_.height);
    }
}

void EditorImage::set_keep_proportions(bool on) {
    keep_proportions_ = on;
    if (QAction* a = action("keep_proportions"); a && a->isChecked() != on) a->setChecked(on);
    if (resize_frame_)
        if (auto* box = resize_frame_->findChild<QCheckBox*>("keep_box"); box && box->isChecked() != on) box->setChecked(on);
}

bool EditorImage::import() {
    if (!w_.env_.dialogs) return false;
    std::string& last = w_.env_.pastedfile ? *w_.env_.pastedfile : own_pastedfile_;
    const bool done = editor::import_file(w_.e_, w_.tools_, w_.ui_, *w_.env_.dialogs, codec(), last, {keep_proportions_});
    changed();
    return done;
}

bool EditorImage::paste(bool into_selection) {
    const bool done = editor::pastebut(w_.e_, w_.tools_, w_.ui_, clipboard(), into_selection, {keep_proportions_});
    changed();
    return done;
}

bool EditorImage::copy(bool cut) {
    const bool done = editor::copyp4(w_.tools_, w_.e_, w_.ui_, &clipboard(), cut);
    if (done) changed();
    return done;
}

void EditorImage::crop() {
    w_.choose_tool(editor::t_crop_select);
    refresh();
}

bool EditorImage::resize() {
    if (!width_) return false;
    const bool done = editor::resize_point(w_.e_, w_.ui_, width_->value(), height_->value(), stretch_->isChecked());
    changed();
    return done;
}

bool EditorImage::save_bitmap() {
    if (!w_.env_.dialogs) return false;
    return editor::savepoi(w_.e_, w_.ui_, *w_.env_.dialogs, codec(), "0x" + editor::type_code(w_.e_) + ".bmp");
}

bool EditorImage::undo_size(int slot) {
    w_.tools_.escape();
    const bool done = editor::size_undo_step(w_.e_, slot);
    if (done) changed();
    return done;
}

}  // namespace korvex::gui
