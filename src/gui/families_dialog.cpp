#include "gui/families_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/main_window.h"
#include "integration/family_typ.h"

namespace korvex::gui {

FamiliesDialog::FamiliesDialog(MainWindow& w, MakePlatform make, QWidget* parent)
    : QDialog(parent), w_(w), make_(std::move(make)) {
    setWindowTitle("TYP files in Mapsource/Basecamp");
    header_ = new QLabel(this);
    header_->setObjectName("current");
    rows_ = new QListWidget(this);
    rows_->setObjectName("families");
    rows_->setMinimumWidth(640);
    open_ = new QPushButton("Open TYP", this);
    open_->setObjectName("open_typ");
    upload_ = new QPushButton("Add or Replace TYP", this);
    upload_->setObjectName("add_or_replace_typ");
    auto* search_button = new QPushButton("Search", this);
    search_button->setObjectName("search");
    auto* close = new QPushButton("Close", this);
    close->setObjectName("close");

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {open_, upload_, search_button, close}) buttons->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(header_);
    layout->addWidget(rows_);
    layout->addLayout(buttons);

    connect(open_, &QPushButton::clicked, this, &FamiliesDialog::open_typ);
    connect(upload_, &QPushButton::clicked, this, &FamiliesDialog::add_or_replace);
    connect(search_button, &QPushButton::clicked, this, &FamiliesDialog::search);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(rows_, &QListWidget::currentRowChanged, this, &FamiliesDialog::follow_selection);
    connect(rows_, &QListWidget::itemDoubleClicked, this, &FamiliesDialog::open_typ);
    search();
}

void FamiliesDialog::search() {
    sys_ = make_();
    list_ = sys_ ? integration::read_families(*sys_) : integration::FamilyList{};
    fill();
}

void FamiliesDialog::fill() {
    QString head = " Current Map";
    if (!list_.current.empty()) head += ": " + QString::fromLocal8Bit(list_.current.c_str());
    header_->setText(head);
    rows_->clear();
    for (const integration::Family& f : list_.rows())
        rows_->addItem(QString::fromLocal8Bit(integration::row_text(f).c_str()));
    follow_selection();
}

void FamiliesDialog::follow_selection() {
    const bool any = selected() != nullptr;
    open_->setEnabled(any);
    upload_->setEnabled(any);
}

integration::Family* FamiliesDialog::selected() {
    const int row = rows_->currentRow();
    if (row < 0 || row >= static_cast<int>(list_.rows().size())) return nullptr;
    return &list_.rows()[static_cast<size_t>(row)];
}

void FamiliesDialog::open_typ() {
    integration::Family* f = selected();
    if (!f || !sys_) return;
    integration::FamilyTools t{w_.store(), w_.session(), w_.prompt(), *sys_, w_.clock(), w_.session().data_folder()};
    if (integration::open_family_typ(t, *f)) {
        w_.after_change();
        accept();
    }
}

void FamiliesDialog::add_or_replace() {
    integration::Family* f = selected();
    if (!f || !sys_) return;
    integration::FamilyTools t{w_.store(), w_.session(), w_.prompt(), *sys_, w_.clock(), w_.session().data_folder()};
    if (integration::add_or_replace_typ(t, *f) == integration::Upload::none) return;
    rows_->currentItem()->setText(QString::fromLocal8Bit(integration::row_text(*f).c_str()));
    w_.after_change();
}

}  // namespace korvex::gui
