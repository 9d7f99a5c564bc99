#include "gui/colour_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <functional>

#include "editor/colour_picker.h"
#include "editor/palette_file.h"
#include "editor/palette_map.h"
#include "gui/palette_widget.h"
#include "gui/qt_colour.h"

namespace korvex::gui {

namespace {

// One shade bar: 128 steps of a colour, a click picks a step.
class ShadeBar : public QWidget {
public:
    ShadeBar(bool light, std::function<void(int)> pick) : light_(light), pick_(std::move(pick)) {
        setMinimumSize(256, 14);
        setCursor(Qt::CrossCursor);
    }
    void set_base(uint32_t c) {
        bars_ = editor::shades(c);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        const auto& steps = light_ ? bars_.light : bars_.dark;
        for (int i = 0; i < 128; ++i) {
            const int x0 = i * width() / 128, x1 = (i + 1) * width() / 128;
            p.fillRect(x0, 0, x1 - x0, height(), qcolour(steps[static_cast<size_t>(i)]));
        }
    }
    void mousePressEvent(QMouseEvent* ev) override {
        pick_(std::clamp(static_cast<int>(ev->position().x() * 128 / std::max(1, width())), 0, 127));
    }

private:
    bool light_;
    std::function<void(int)> pick_;
    editor::ShadeBars bars_;
};

constexpr editor::ColourBox k_boxes[6] = {editor::ColourBox::red, editor::ColourBox::green, editor::ColourBox::blue,
                                          editor::ColourBox::hue, editor::ColourBox::saturation, editor::ColourBox::value};
const char* const k_box_names[6] = {"Red", "Green", "Blue", "Hue", "Sat", "Val"};

}  // namespace

ColourDialog::ColourDialog(uint32_t colour, platform::Prompt& ui, QWidget* parent) : QDialog(parent), ui_(ui) {
    setObjectName("cmcolor");
    setWindowTitle("Colour");
    auto* root = new QVBoxLayout(this);
    swatches_ = new PaletteWidget(nullptr, 24);
    std::vector<uint32_t> sw;
    for (const char* h : editor::colour_swatches()) {
        uint32_t c = 0;
        editor::from_hex(h, c);
        sw.push_back(c);
    }
    swatches_->set_colours(sw);
    swatches_->setMinimumWidth(24 * 8);
    root->addWidget(swatches_);
    connect(swatches_, &PaletteWidget::clicked, this, [this, sw](int i, bool) {
        base_ = sw[static_cast<size_t>(i)];
        set_colour(base_);
    });

    auto* dark = new ShadeBar(false, [this](int step) { pick_shade(false, step); });
    auto* light = new ShadeBar(true, [this](int step) { pick_shade(true, step); });
    dark_ = dark;
    light_ = light;
    root->addWidget(dark_);
    root->addWidget(light_);

    auto* grid = new QGridLayout;
    hex_ = new QLineEdit;
    hex_->setObjectName("hex");
    hex_->setMaxLength(6);
    grid->addWidget(new QLabel("#"), 0, 0);
    grid->addWidget(hex_, 0, 1);
    sample_ = new QLabel;
    sample_->setMinimumSize(48, 24);
    sample_->setAutoFillBackground(true);
    grid->addWidget(sample_, 0, 2, 1, 2);
    for (int i = 0; i < 6; ++i) {
        boxes_[i] = new QLineEdit;
        boxes_[i]->setObjectName(k_box_names[i]);
        boxes_[i]->setMaxLength(3);
        boxes_[i]->setMaximumWidth(48);
        grid->addWidget(new QLabel(k_box_names[i]), 1 + i % 3, i < 3 ? 0 : 2);
        grid->addWidget(boxes_[i], 1 + i % 3, i < 3 ? 1 : 3);
        connect(boxes_[i], &QLineEdit::textEdited, this, [this, i] { number_edited(i); });
    }
    root->addLayout(grid);
    connect(hex_, &QLineEdit::textEdited, this, [this](const QString& t) {
        const std::string kept = editor::hex_box_text(t.toStdString());
        if (kept != t.toStdString()) {
            const int at = hex_->cursorPosition();
            hex_->setText(QString::fromStdString(kept));
            hex_->setCursorPosition(std::min(at, static_cast<int>(kept.size())));
        }
        uint32_t c = 0;
        if (kept.empty() || !editor::from_hex(kept, c)) return;
        colour_ = c;
        base_ = c;
        show_colour(hex_);
    });

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    root->addWidget(buttons);
    base_ = colour & 0xFFFFFF;
    set_colour(base_);
}

void ColourDialog::set_colour(uint32_t colour) {
    colour_ = colour & 0xFFFFFF;
    show_colour(nullptr);
}

void ColourDialog::pick_shade(bool light, int step) {
    const editor::ShadeBars b = editor::shades(base_);
    colour_ = (light ? b.light : b.dark)[static_cast<size_t>(std::clamp(step, 0, 127))];
    show_colour(nullptr);
}

void ColourDialog::number_edited(int index) {
    if (filling_) return;
    std::string warning;
    int v[6];
    for (int i = 0; i < 6; ++i) {
        std::string w;
        v[i] = editor::box_value(k_boxes[i], boxes_[i]->text().toStdString(), w);
        if (i == index) warning = w;
    }
    if (!warning.empty()) {
        ui_.message(warning);
        filling_ = true;
        boxes_[index]->setText(QString::number(v[index]));
        filling_ = false;
    } else {
        // Only digits stay.
        const QString digits = QString::number(v[index]);
        if (boxes_[index]->text() != digits && !boxes_[index]->text().isEmpty()) {
            filling_ = true;
            boxes_[index]->setText(digits);
            filling_ = false;
        }
    }
    colour_ = index < 3 ? editor::rgb(static_cast<uint32_t>(v[0]), static_cast<uint32_t>(v[1]), static_cast<uint32_t>(v[2]))
                        : editor::HSLToRGB02(v[3], v[4], v[5]);
    base_ = colour_;
    show_colour(boxes_[index]);
}

void ColourDialog::show_colour(QLineEdit* keep) {
    filling_ = true;
    if (keep != hex_) hex_->setText(QString::fromStdString(editor::hex6(colour_)).toUpper());
    const editor::Hsv h = editor::rgbtohsv(colour_);
    const int v[6] = {static_cast<int>(editor::red_of(colour_)), static_cast<int>(editor::green_of(colour_)),
                      static_cast<int>(editor::blue_of(colour_)), h.h, h.s, h.v};
    for (int i = 0; i < 6; ++i)
        if (boxes_[i] != keep) boxes_[i]->setText(QString::number(v[i]));
    filling_ = false;
    QPalette pal = sample_->palette();
    pal.setColor(QPalette::Window, qcolour(colour_));
    sample_->setPalette(pal);
    static_cast<ShadeBar*>(dark_)->set_base(base_);
    static_cast<ShadeBar*>(light_)->set_base(base_);
}

int64_t cmcolor(uint32_t colour, platform::Prompt& ui, QWidget* parent) {
    ColourDialog d(colour, ui, parent);
    return d.exec() == QDialog::Accepted ? static_cast<int64_t>(d.colour()) : -1;
}

}  // namespace korvex::gui
