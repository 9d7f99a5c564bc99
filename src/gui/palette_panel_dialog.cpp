#include "gui/palette_panel_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "workbench/message_ids.h"
#include "workbench/palette_panel.h"

namespace korvex::gui {

PalettePanelDialog::PalettePanelDialog(const model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                                       std::string data_folder, bool from_typ, QWidget* parent)
    : QDialog(parent), s_(s), ui_(ui), m_(m), data_folder_(std::move(data_folder)), from_typ_(from_typ) {
    setWindowTitle(from_typ ? "Create Palette" : "Create 2 Colour Palette");
    setObjectName("palettePanel");
    auto* form = new QFormLayout;
    if (!from_typ) {
        colour1_ = new QLineEdit("000000");
        colour1_->setObjectName("colour1");
        colour1_->setMaxLength(6);
        colour2_ = new QLineEdit("FFFFFF");
        colour2_->setObjectName("colour2");
        colour2_->setMaxLength(6);
        count_ = new QLineEdit("16");
        count_->setObjectName("count");
        form->addRow("Colour 1", colour1_);
        form->addRow("Colour 2", colour2_);
        form->addRow(QString::fromStdString(m.get_msg(workbench::m_colours)), count_);
    }
    name_ = new QLineEdit(from_typ ? "typ" : "2colour");
    name_->setObjectName("name");
    form->addRow("Name", name_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("ok");
    connect(buttons, &QDialogButtonBox::accepted, this, &PalettePanelDialog::ok);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* box = new QVBoxLayout(this);
    box->addLayout(form);
    box->addWidget(buttons);
}

void PalettePanelDialog::ok() {
    std::vector<uint32_t> colours;
    if (from_typ_) {
        colours = workbench::typ_palette(s_);
        if (colours.empty()) {
            ui_.message(m_.get_msg(workbench::m_no_data));
            return;
        }
    } else {
        const auto steps = workbench::two_colour_palette(ui_, m_, colour1_->text().toStdString(),
                                                         colour2_->text().toStdString(), count_->text().toStdString());
        if (!steps) return;
        colours = *steps;
    }
    std::string name = name_->text().trimmed().toStdString();
    if (name.empty()) name = "palette";
    saved_ = workbench::save_palette(ui_, m_, data_folder_, name, colours);
    if (!saved_.empty()) accept();
}

}  // namespace korvex::gui
