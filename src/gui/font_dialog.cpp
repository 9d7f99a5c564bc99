#include "gui/font_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace korvex::gui {

namespace {

QColor to_qcolor(const std::string& rgb) { return QColor(QString::fromStdString("#" + rgb)); }

std::string from_qcolor(const QColor& c) { return c.name().mid(1).toUpper().toStdString(); }

}  // namespace

FontDialog::FontDialog(int mode, const integration::FontRequest& start, Run run, QWidget* parent)
    : QDialog(parent), mode_(mode), run_(std::move(run)), day_colour_(start.day), night_colour_(start.night) {
    const bool colours = mode == integration::k_fonts_colours;
    setWindowTitle(mode == integration::k_fonts_selection ? "Edit  Fonts of Selected Elements"
                   : colours                             ? "Font Colours"
                                                         : "Font Conversion");
    setObjectName("fontDialog");
    auto* v = new QVBoxLayout(this);

    auto* options = new QGroupBox(this);
    auto* ov = new QVBoxLayout(options);
    auto* group = new QButtonGroup(this);
    const auto captions = integration::font_option_captions(mode);
    for (size_t k = 0; k < options_.size(); ++k) {
        options_[k] = new QRadioButton(k < captions.size() ? QString::fromStdString(captions[k]) : QString(), options);
        options_[k]->setVisible(k < captions.size());
        group->addButton(options_[k], static_cast<int>(k));
        ov->addWidget(options_[k]);
    }
    const int chosen = std::clamp(start.option, 0, static_cast<int>(captions.size()) - 1);
    options_[static_cast<size_t>(chosen)]->setChecked(true);
    v->addWidget(options);

    fonts_ = new QComboBox(this);
    fonts_->setObjectName("fonts");
    for (const auto& f : integration::font_styles()) fonts_->addItem(QString::fromStdString(f));
    fonts_->setCurrentText(QString::fromStdString(start.style.empty() ? "Default" : start.style));
    fonts_->setVisible(!colours);
    v->addWidget(fonts_);

    // The classes a whole-class run takes; the selection form runs on the class in view.
    auto* classes = new QHBoxLayout;
    const char* const names[3] = {"polygons", "lines", "pois"};
    const bool ticks[3] = {start.polygons, start.lines, start.points};
    for (int c = 0; c < 3; ++c) {
        boxes_[static_cast<size_t>(c)] = new QCheckBox(names[c], this);
        boxes_[static_cast<size_t>(c)]->setChecked(ticks[c]);
        boxes_[static_cast<size_t>(c)]->setVisible(mode != integration::k_fonts_selection);
    }
    // In the order of the original boxes: pois, lines, polygons.
    classes->addWidget(boxes_[2]);
    classes->addWidget(boxes_[1]);
    classes->addWidget(boxes_[0]);
    classes->addStretch(1);
    v->addLayout(classes);

    select_all_ = new QCheckBox("Select All", this);
    select_all_->setChecked(start.select_all);
    v->addWidget(select_all_);

    auto* cells = new QGridLayout;
    day_ = new QPushButton("Click to Change", this);
    night_ = new QPushButton("Click to Change", this);
    day_->setObjectName("dayColour");
    night_->setObjectName("nightColour");
    cells->addWidget(new QLabel("Day", this), 0, 0);
    cells->addWidget(day_, 0, 1);
    cells->addWidget(new QLabel("Night", this), 1, 0);
    cells->addWidget(night_, 1, 1);
    auto* cell_box = new QWidget(this);
    cell_box->setLayout(cells);
    cell_box->setVisible(colours);
    v->addWidget(cell_box);
    paint_cell(day_, day_colour_);
    paint_cell(night_, night_colour_);
    connect(day_, &QPushButton::clicked, this, [this] { pick(day_, day_colour_); });
    connect(night_, &QPushButton::clicked, this, [this] { pick(night_, night_colour_); });

    auto* buttons = new QHBoxLayout;
    ok_ = new QPushButton("OK", this);
    ok_->setDefault(true);
    auto* close = new QPushButton("Close", this);
    buttons->addStretch(1);
    buttons->addWidget(ok_);
    buttons->addWidget(close);
    v->addLayout(buttons);
    connect(ok_, &QPushButton::clicked, this, &FontDialog::accept);
    connect(close, &QPushButton::clicked, this, &FontDialog::reject);
}

void FontDialog::paint_cell(QPushButton* cell, const std::string& colour) {
    const QColor c = to_qcolor(colour);
    // Brightness as the eye sees it: pure yellow is bright, though its lightness is half.
    const int brightness = (299 * c.red() + 587 * c.green() + 114 * c.blue()) / 1000;
    cell->setStyleSheet(QString("background-color: %1; color: %2;")
                            .arg(c.name(), brightness > 140 ? QStringLiteral("black") : QStringLiteral("white")));
}

void FontDialog::set_colours(const std::string& day, const std::string& night) {
    day_colour_ = day;
    night_colour_ = night;
    paint_cell(day_, day_colour_);
    paint_cell(night_, night_colour_);
}

void FontDialog::pick(QPushButton* cell, std::string& colour) {
    const QColor c = QColorDialog::getColor(to_qcolor(colour), this);
    if (!c.isValid()) return;
    colour = from_qcolor(c);
    paint_cell(cell, colour);
}

integration::FontRequest FontDialog::request() const {
    integration::FontRequest r;
    r.mode = mode_;
    for (size_t k = 0; k < options_.size(); ++k)
        if (options_[k]->isChecked()) r.option = static_cast<int>(k);
    r.style = fonts_->currentText().toStdString();
    r.polygons = boxes_[0]->isChecked();
    r.lines = boxes_[1]->isChecked();
    r.points = boxes_[2]->isChecked();
    r.select_all = select_all_->isChecked();
    r.day = day_colour_;
    r.night = night_colour_;
    return r;
}

void FontDialog::accept() {
    if (run_ && !run_(request())) return;
    QDialog::accept();
}

}  // namespace korvex::gui
