#include "gui/errors_window.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "gui/qt_prompt.h"

namespace korvex::gui {

ErrorsWindow::ErrorsWindow(QWidget* parent) : QWidget(parent, Qt::Window), box_(new QPlainTextEdit(this)) {
    setWindowTitle(QStringLiteral("Errors"));
    setObjectName(QStringLiteral("errors"));
    box_->setReadOnly(true);
    box_->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(box_);
    resize(520, 360);
}

void ErrorsWindow::show_report(const std::string& loadrep) { box_->setPlainText(from_message(loadrep)); }

QString ErrorsWindow::text() const { return box_->toPlainText(); }

}  // namespace korvex::gui
