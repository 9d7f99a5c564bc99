#include "gui/report_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"
#include "platform/files.h"

namespace korvex::gui {

ReportWindow::ReportWindow(const std::string& title, const std::string& text, QWidget* parent)
    : QWidget(parent, Qt::Window),
      bytes_(text),
      box_(new QPlainTextEdit(this)),
      copy_(new QPushButton(QStringLiteral("Copy"), this)),
      save_(new QPushButton(QStringLiteral("Save As…"), this)),
      close_(new QPushButton(QStringLiteral("Close"), this)) {
    setWindowTitle(from_message(title));
    setObjectName(QStringLiteral("report"));
    setAttribute(Qt::WA_DeleteOnClose);
    box_->setReadOnly(true);
    box_->setLineWrapMode(QPlainTextEdit::NoWrap);
    box_->setPlainText(from_message(text));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(box_);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(6, 0, 6, 6);
    buttons->addWidget(copy_);
    buttons->addWidget(save_);
    buttons->addStretch(1);
    buttons->addWidget(close_);
    layout->addLayout(buttons);
    connect(copy_, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(box_->toPlainText()); });
    connect(save_, &QPushButton::clicked, this, &ReportWindow::save_as);
    connect(close_, &QPushButton::clicked, this, &QWidget::close);
    auto* esc = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    esc->setContext(Qt::WidgetWithChildrenShortcut);
    connect(esc, &QShortcut::activated, this, &QWidget::close);
    resize(560, 400);
}

QString ReportWindow::text() const { return box_->toPlainText(); }

bool ReportWindow::save_to(const QString& path) const { return platform::write_file_atomic(to_path(path), bytes_); }

void ReportWindow::save_as() {
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save As"), QString(),
                                                      QStringLiteral("Text files (*.txt);;All files (*)"));
    if (path.isEmpty()) return;
    if (!save_to(path))
        QMessageBox::warning(this, QString::fromLatin1(k_box_title), QStringLiteral("Cannot write ") + path);
}

}  // namespace korvex::gui
