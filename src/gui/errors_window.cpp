#include "gui/errors_window.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"

namespace korvex::gui {

ErrorsWindow::ErrorsWindow(const QString& close_caption, QWidget* parent)
    : QWidget(parent, Qt::Window), box_(new QPlainTextEdit(this)), close_(new QPushButton(close_caption, this)) {
    setWindowTitle(QStringLiteral("Errors"));
    setObjectName(QStringLiteral("errors"));
    box_->setReadOnly(true);
    box_->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(box_);
    // A window without a frame of its own (or a desktop without one) still closes.
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(6, 0, 6, 6);
    buttons->addStretch(1);
    buttons->addWidget(close_);
    layout->addLayout(buttons);
    close_->setObjectName(QStringLiteral("errorsClose"));
    connect(close_, &QPushButton::clicked, this, &QWidget::close);
    auto* esc = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    esc->setContext(Qt::WidgetWithChildrenShortcut);
    connect(esc, &QShortcut::activated, this, &QWidget::close);
    resize(520, 360);
}

void ErrorsWindow::show_report(const std::string& loadrep) { box_->setPlainText(from_message(loadrep)); }

QString ErrorsWindow::text() const { return box_->toPlainText(); }

}  // namespace korvex::gui
