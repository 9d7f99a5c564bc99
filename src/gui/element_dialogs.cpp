#include "gui/element_dialogs.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"

namespace korvex::gui {

namespace {

// Message numbers shown as hints.
constexpr int m_point_types = 140;
constexpr int m_clear_level = 225;
// The spin boxes go past the limits so that the check, not the box, says no.
constexpr int k_spin_max = 999;

std::string utf8(const QString& t) {
    const QByteArray b = t.toUtf8();
    return std::string(b.constData(), static_cast<size_t>(b.size()));
}

QDialogButtonBox* buttons(QDialog* d, std::function<void()> ok) {
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(box, &QDialogButtonBox::accepted, d, std::move(ok));
    QObject::connect(box, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return box;
}

bool checked(const workbench::NewElementForm& f, const FormChecks& c) {
    const std::vector<std::string> refusals = workbench::check_form(c.s, f, c.msgs);
    for (const std::string& m : refusals) c.ui.message(m);
    return refusals.empty();
}

QSpinBox* spin(QWidget* parent, const char* name, int min, int value) {
    auto* s = new QSpinBox(parent);
    s->setObjectName(name);
    s->setRange(min, k_spin_max);
    s->setValue(value);
    return s;
}

}  // namespace

PoiSizesDialog::PoiSizesDialog(const workbench::NewElementForm& form, FormChecks checks, QWidget* parent)
    : QDialog(parent), form_(form), checks_(checks) {
    const int cls = form.cls;
    static const char* const titles[] = {"New Polygon", "", "New Point", "", "New Extra Point"};
    setWindowTitle(titles[cls == model::k_polygons ? 0 : cls == model::k_points ? 2 : 4]);
    auto* outer = new QVBoxLayout(this);
    auto* rows = new QFormLayout;
    outer->addLayout(rows);
    type_ = new QLineEdit(QString::fromStdString(form.type), this);
    type_->setObjectName("type");
    if (cls == model::k_extra_points) {
        auto* kind = new QHBoxLayout;
        auto* dec = new QRadioButton("Decimal", this);
        hex_ = new QRadioButton("Hex", this);
        hex_->setObjectName("hex");
        (form.hex ? hex_ : dec)->setChecked(true);
        kind->addWidget(type_);
        kind->addWidget(dec);
        kind->addWidget(hex_);
        rows->addRow("ID", kind);
    } else {
        rows->addRow("Type 0x", type_);
    }
    text_ = new QLineEdit(QString::fromUtf8(form.text.c_str()), this);
    text_->setObjectName("text");
    rows->addRow("Label", text_);
    if (cls == model::k_polygons) {
        level_ = spin(this, "level", 0, form.level);
        level_->setSpecialValueText("none");
        rows->addRow("Draw Order", level_);
        // How a level is cleared later.
        rows->addRow(new QLabel(from_message(checks.msgs.get_msg(m_clear_level)), this));
    }
    if (cls == model::k_points) {
        width_ = spin(this, "width", 0, form.width);
        height_ = spin(this, "height", 0, form.height);
        night_ = new QCheckBox("Night picture", this);
        night_->setObjectName("night");
        night_->setChecked(form.night);
        rows->addRow("Width", width_);
        rows->addRow("Height", height_);
        rows->addRow("", night_);
        rows->addRow(new QLabel(from_message(checks.msgs.get_msg(m_point_types)), this));
    }
    outer->addWidget(buttons(this, [this] { ok(); }));
}

workbench::NewElementForm PoiSizesDialog::form() const {
    workbench::NewElementForm f = form_;
    f.type = type_->text().trimmed().toStdString();
    f.text = utf8(text_->text().trimmed());
    if (level_) f.level = level_->value();
    if (width_) f.width = width_->value();
    if (height_) f.height = height_->value();
    if (night_) f.night = night_->isChecked();
    if (hex_) f.hex = hex_->isChecked();
    return f;
}

void PoiSizesDialog::ok() {
    if (checked(form(), checks_)) accept();
}

NewLineDialog::NewLineDialog(const workbench::NewElementForm& form, FormChecks checks, QWidget* parent)
    : QDialog(parent), form_(form), checks_(checks) {
    const bool active = form.cls == model::k_active_lines;
    setWindowTitle(active ? "New Active Line" : "New Line");
    auto* outer = new QVBoxLayout(this);
    auto* rows = new QFormLayout;
    outer->addLayout(rows);
    type_ = new QComboBox(this);
    type_->setObjectName("type");
    type_->setEditable(true);
    type_->addItem(QString::fromStdString(form.type));
    // An active line may take the type of an ordinary line ("0x00700#label").
    for (const std::string& t : form.line_types) {
        const std::string digits = t.substr(0, t.find('#'));
        if (digits.size() > 2) type_->addItem(QString::fromStdString(digits.substr(2)));
    }
    rows->addRow("Type 0x", type_);
    text_ = new QLineEdit(QString::fromUtf8(form.text.c_str()), this);
    text_->setObjectName("text");
    rows->addRow("Label", text_);
    if (active) {
        activity_ = new QComboBox(this);
        activity_->setObjectName("activity");
        for (const std::string& a : form.activities) activity_->addItem(from_message(a));
        activity_->setCurrentIndex(std::max(0, form.activity));
        rows->addRow("Activity", activity_);
    }
    outer->addWidget(buttons(this, [this] { ok(); }));
}

workbench::NewElementForm NewLineDialog::form() const {
    workbench::NewElementForm f = form_;
    f.type = type_->currentText().trimmed().toStdString();
    f.text = utf8(text_->text().trimmed());
    if (activity_) f.activity = activity_->currentIndex();
    return f;
}

void NewLineDialog::ok() {
    if (checked(form(), checks_)) accept();
}

bool QtElementDialogs::poisizes(workbench::NewElementForm& form) {
    PoiSizesDialog d(form, checks_, parent_);
    if (d.exec() != QDialog::Accepted) return false;
    form = d.form();
    return true;
}

bool QtElementDialogs::new_line(workbench::NewElementForm& form) {
    NewLineDialog d(form, checks_, parent_);
    if (d.exec() != QDialog::Accepted) return false;
    form = d.form();
    return true;
}

}  // namespace korvex::gui
