#include "gui/batch_canvas_dialog.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QVBoxLayout>


namespace korvex::gui {

namespace {

// The pictures: the old icon dark, the space it gains light.
struct Picture {
    char letter;
    const char* text;
    const char* tip;
};
constexpr Picture k_pictures[] = {
    {'L', "\u2591\u2588", "New space on the left"},
    {'D', "\u2588\n\u2591", "New space below"},
    {'U', "\u2591\n\u2588", "New space above"},
    {'R', "\u2588\u2591", "New space on the right"},
    {'M', "\u2591\u2591\u2591\n\u2591\u2588\u2591\n\u2591\u2591\u2591", "A border all round"},
};

}  // namespace

BatchCanvasDialog::BatchCanvasDialog(char preset, QWidget* parent) : QDialog(parent) {
    setObjectName("batch_canvas");
    setWindowTitle("Click on a Picture");
    auto* root = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    pictures_ = new QButtonGroup(this);
    pictures_->setExclusive(true);
    for (const Picture& p : k_pictures) {
        auto* b = new QToolButton;
        b->setText(QString::fromUtf8(p.text));
        b->setToolTip(p.tip);
        b->setObjectName(QString(QChar(p.letter)));
        b->setCheckable(true);
        b->setChecked(p.letter == preset);
        b->setMinimumSize(64, 64);
        QFont big = b->font();
        big.setPointSizeF(big.pointSizeF() * 1.8);
        b->setFont(big);
        pictures_->addButton(b, p.letter);
        row->addWidget(b);
    }
    root->addLayout(row);
    auto* border = new QHBoxLayout;
    border->addWidget(new QLabel("Border (M): pixels"));
    amount_ = new QLineEdit("1");
    amount_->setObjectName("amount");
    amount_->setMaxLength(1);
    amount_->setValidator(new QRegularExpressionValidator(QRegularExpression("[1-9]"), amount_));
    amount_->setMaximumWidth(40);
    border->addWidget(amount_);
    border->addStretch();
    root->addLayout(border);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    root->addWidget(buttons);
}

char BatchCanvasDialog::choice() const {
    const int id = pictures_->checkedId();
    return id > 0 ? static_cast<char>(id) : '\0';
}

int BatchCanvasDialog::amount() const {
    const QString t = amount_->text();
    return t.size() == 1 && t[0].isDigit() ? t[0].digitValue() : 0;
}

}  // namespace korvex::gui
