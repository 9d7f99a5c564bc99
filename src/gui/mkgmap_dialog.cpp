#include "gui/mkgmap_dialog.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"
#include "integration/style_export.h"

namespace korvex::gui {

MkgmapDialog::MkgmapDialog(const model::Store& s, platform::Prompt& ui, platform::Clipboard& clip, int cls,
                           std::vector<int32_t> rows, QWidget* parent)
    : QDialog(parent), s_(s), ui_(ui), clip_(clip), cls_(cls), rows_(std::move(rows)) {
    setWindowTitle("Mkgmap Code");
    setObjectName("mkgmapDialog");
    auto* v = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    tag_ = new QComboBox(this);
    tag_->setEditable(true);
    for (const auto& t : integration::osm_tags()) tag_->addItem(QString::fromStdString(t));
    tag_->setCurrentText(QString::fromStdString(integration::default_tag(cls)));
    value_ = new QLineEdit(this);
    value_->setPlaceholderText("golf");
    if (!rows_.empty())
        value_->setText(from_codepage(integration::default_value(s, cls, rows_.front()), s.codepage));
    resolution_ = new QLineEdit("24", this);
    form->addRow("tag", tag_);
    form->addRow("value", value_);
    form->addRow("resolution", resolution_);
    v->addLayout(form);

    result_ = new QPlainTextEdit(this);
    result_->setObjectName("result");
    QFont courier("Courier");
    courier.setStyleHint(QFont::Monospace);
    result_->setFont(courier);
    result_->setLineWrapMode(QPlainTextEdit::NoWrap);
    v->addWidget(result_, 1);

    auto* buttons = new QHBoxLayout;
    create_ = new QPushButton("Create Code", this);
    copy_ = new QPushButton("Copy into Memory", this);
    copy_->setEnabled(false);
    auto* close = new QPushButton("Close", this);
    buttons->addWidget(create_);
    buttons->addWidget(copy_);
    buttons->addStretch(1);
    buttons->addWidget(close);
    v->addLayout(buttons);
    connect(create_, &QPushButton::clicked, this, [this] { create_code(); });
    connect(copy_, &QPushButton::clicked, this, [this] { copy_into_memory(); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    resize(520, 320);
}

void MkgmapDialog::create_code() {
    const integration::StyleCode c =
        integration::create_code(s_, ui_, cls_, rows_, tag_->currentText().toStdString(),
                                 value_->text().toUtf8().toStdString(), resolution_->text().toStdString());
    if (!c.ok) return;
    // The rules are UTF-8 already: the value came from the box.
    result_->setPlainText(QString::fromUtf8(c.text.data(), static_cast<qsizetype>(c.text.size())));
    copy_->setEnabled(true);
}

void MkgmapDialog::copy_into_memory() {
    const QByteArray text = result_->toPlainText().toUtf8();
    integration::copy_code(clip_, ui_, std::string(text.constData(), static_cast<size_t>(text.size())),
                           create_->text().toStdString());
}

}  // namespace korvex::gui
