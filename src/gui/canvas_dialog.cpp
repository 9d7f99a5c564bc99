#include "gui/canvas_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace korvex::gui {

CanvasDialog::CanvasDialog(QWidget* parent) : QDialog(parent) {
    setObjectName("add_canvas");
    setWindowTitle("Add canvas");
    auto* root = new QVBoxLayout(this);
    auto* margin_row = new QHBoxLayout;
    margin_ = new QSpinBox;
    margin_->setRange(1, 64);
    margin_->setValue(1);
    auto* margin = new QPushButton("Margin");
    margin->setObjectName("M");
    margin->setToolTip("A transparent margin all round");
    margin_row->addWidget(margin_);
    margin_row->addWidget(margin);
    root->addLayout(margin_row);
    root->addWidget(new QLabel("Click on a Picture"));
    // The picture shows where the old icon lands: the new half is the
    // light part.
    auto side = [this](const char* letter, const char* picture, const char* tip) {
        auto* b = new QPushButton(picture);
        b->setObjectName(letter);
        b->setToolTip(tip);
        b->setMinimumSize(56, 40);
        connect(b, &QPushButton::clicked, this, [this, letter] { choose(letter); });
        return b;
    };
    auto* width_box = new QGroupBox("Icon Width");
    auto* w = new QHBoxLayout(width_box);
    w->addWidget(side("L", "\u2591\u2588", "Double the width: new canvas on the left"));
    w->addWidget(side("R", "\u2588\u2591", "Double the width: new canvas on the right"));
    auto* height_box = new QGroupBox("icon Height");
    auto* h = new QHBoxLayout(height_box);
    h->addWidget(side("U", "\u2591\n\u2588", "Double the height: new canvas above"));
    h->addWidget(side("D", "\u2588\n\u2591", "Double the height: new canvas below"));
    auto* sides = new QHBoxLayout;
    sides->addWidget(width_box);
    sides->addWidget(height_box);
    root->addLayout(sides);
    auto* cancel = new QPushButton("Cancel");
    root->addWidget(cancel);
    connect(margin, &QPushButton::clicked, this, [this] { choose("M" + std::to_string(margin_->value())); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void CanvasDialog::choose(const std::string& answer) {
    answer_ = answer;
    accept();
}

std::string ask_canvas(QWidget* parent) {
    CanvasDialog d(parent);
    return d.exec() == QDialog::Accepted ? d.answer() : std::string();
}

}  // namespace korvex::gui
