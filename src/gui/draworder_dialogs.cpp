#include "gui/draworder_dialogs.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QVBoxLayout>

#include "workbench/draw_order_model.h"

namespace korvex::gui {

namespace {

QComboBox* level_combo(int limit, QWidget* parent) {
    auto* c = new QComboBox(parent);
    for (int k = 1; k <= limit; ++k) c->addItem(QString::number(k));
    return c;
}

QDialogButtonBox* ok_cancel(QDialog* d) {
    auto* b = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(b, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(b, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return b;
}

}  // namespace

DrawselDialog::DrawselDialog(int level_limit, QWidget* parent) : QDialog(parent) {
    setWindowTitle("Draworders for Selected Polygons");
    auto* v = new QVBoxLayout(this);
    each_ = new QRadioButton("New Draworder for each Polygon", this);
    same_ = new QRadioButton("Same Draworder", this);
    auto* group = new QButtonGroup(this);
    group->addButton(each_);
    group->addButton(same_);
    caption_ = new QLabel("Draworder", this);
    levels_ = level_combo(level_limit, this);
    v->addWidget(each_);
    v->addWidget(same_);
    v->addWidget(caption_);
    v->addWidget(levels_);
    v->addWidget(ok_cancel(this));
    connect(each_, &QRadioButton::toggled, this,
            [this](bool on) { caption_->setText(on ? "Starting Draworder" : "Draworder"); });
}

workbench::DrawselMode DrawselDialog::mode() const {
    if (each_->isChecked()) return workbench::DrawselMode::each;
    if (same_->isChecked()) return workbench::DrawselMode::same;
    return workbench::DrawselMode::none;
}

int DrawselDialog::start() const { return levels_->currentText().toInt(); }

EdpolDialog::EdpolDialog(int level_limit, Check check, QWidget* parent) : QDialog(parent), check_(std::move(check)) {
    setWindowTitle("Add Separate Draworder");
    auto* form = new QFormLayout(this);
    type_ = new QLineEdit(this);
    type_->setObjectName("type");
    type_->setPlaceholderText("4b");
    subtype_ = new QLineEdit(this);
    subtype_->setObjectName("subtype");
    subtype_->setPlaceholderText("00");
    level_ = level_combo(level_limit, this);
    level_->setEditable(true);
    duplicate_ = new QCheckBox("Allow a second draworder for a polygon type", this);
    form->addRow("Type 0x", type_);
    form->addRow("Subtype 0x", subtype_);
    form->addRow("Draworder", level_);
    form->addRow(duplicate_);
    form->addRow(ok_cancel(this));
}

void EdpolDialog::edit(const std::string& code, int level, int32_t entry) {
    entry_ = entry;
    setWindowTitle("Edit Draworder");
    if (code.size() == 5) {
        type_->setText(QString::number(0x100 + QString::fromStdString(code.substr(1, 2)).toInt(nullptr, 16), 16));
        subtype_->setText(QString::fromStdString(code.substr(3, 2)).toLower());
    } else {
        type_->setText(QString::fromStdString(code.substr(code.size() >= 2 ? code.size() - 2 : 0)).toLower());
        subtype_->setText("00");
    }
    level_->setCurrentText(QString::number(level));
}

workbench::EdpolRequest EdpolDialog::request() const {
    workbench::EdpolRequest r;
    r.type = type_->text().toStdString();
    r.subtype = subtype_->text().toStdString();
    r.level = level_->currentText().toStdString();
    r.allow_duplicate = duplicate_->isChecked();
    r.edit_entry = entry_;
    return r;
}

void EdpolDialog::accept() {
    if (check_ && !check_(request())) return;
    QDialog::accept();
}

RedundDialog::RedundDialog(int mode, const std::vector<workbench::RedundantItem>& items, QWidget* parent)
    : QDialog(parent), items_(items) {
    setWindowTitle(mode == 0 ? "Show/Remove Extra Draworders" : "Remove Draworder");
    auto* v = new QVBoxLayout(this);
    v->addWidget(new QLabel(mode == 0 ? "These may be used as 'containers'" : "Polygons with NO Draworder", this));
    list_ = new QListWidget(this);
    for (const auto& item : items_) {
        auto* w = new QListWidgetItem(QString::fromStdString(item.caption), list_);
        w->setFlags(w->flags() | Qt::ItemIsUserCheckable);
        w->setCheckState(Qt::Checked);
    }
    v->addWidget(list_);
    v->addWidget(new QLabel("Deselect to keep a draworder", this));
    v->addWidget(ok_cancel(this));
}

std::vector<int32_t> RedundDialog::ticked() const {
    std::vector<int32_t> out;
    for (int k = 0; k < list_->count() && static_cast<size_t>(k) < items_.size(); ++k)
        if (list_->item(k)->checkState() == Qt::Checked) out.push_back(items_[static_cast<size_t>(k)].entry);
    return out;
}

}  // namespace korvex::gui
