#include "gui/history_dialog.h"

#include <algorithm>

#include <QDialogButtonBox>
#include <QFont>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/language_menu.h"
#include "gui/qt_prompt.h"

namespace korvex::gui {

HistoryDialog::HistoryDialog(const std::vector<std::string>& names, size_t position,
                             const integration::Messages& msgs, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(caption_for("History", msgs));
    list_ = new QListWidget(this);
    list_->setObjectName("historySteps");
    // Entry 0 is the project before any step: undoing everything goes there.
    list_->addItem(caption_for("Opened project", msgs));
    for (const std::string& name : names) list_->addItem(from_message(name));
    const int current = static_cast<int>(std::min(position, names.size()));
    QListWidgetItem* here = list_->item(current);
    QFont bold = here->font();
    bold.setBold(true);
    here->setFont(bold);
    here->setText(QStringLiteral("\u25B6 ") + here->text());
    // Steps undone are greyed: a jump there redoes them.
    for (int i = current + 1; i < list_->count(); ++i) list_->item(i)->setForeground(Qt::gray);
    list_->setCurrentRow(current);
    list_->scrollToItem(here);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(caption_for("OK", msgs));
    buttons->button(QDialogButtonBox::Cancel)->setText(caption_for("Cancel", msgs));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list_, &QListWidget::itemDoubleClicked, this, [this] { accept(); });

    auto* box = new QVBoxLayout(this);
    box->addWidget(list_, 1);
    box->addWidget(buttons);
    resize(360, 420);
}

size_t HistoryDialog::chosen() const {
    return list_->currentRow() < 0 ? 0 : static_cast<size_t>(list_->currentRow());
}

}  // namespace korvex::gui
