#include "gui/qt_prompt.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QProgressBar>

#include "gui/report_window.h"
#include "platform/codepage.h"

namespace korvex::gui {

QString from_message(const std::string& text) {
    // Language files may be saved as UTF-8; Latin-1 text with accents is
    // almost never valid UTF-8, so the bytes tell which they are.
    const auto size = static_cast<qsizetype>(text.size());
    QString out = platform::is_valid_utf8(text) ? QString::fromUtf8(text.data(), size)
                                                : QString::fromLatin1(text.data(), size);
    out.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    out.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return out;
}

QString from_codepage(const std::string& bytes, int cp) {
    if (cp == 65001) return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const std::u32string wide = platform::bytes_to_wide(bytes, cp);
    return QString::fromUcs4(wide.data(), static_cast<qsizetype>(wide.size()));
}

std::string to_codepage(const QString& text, int cp) {
    if (cp == 65001) return text.toStdString();
    const QList<uint> ucs4 = text.toUcs4();
    std::u32string wide(ucs4.begin(), ucs4.end());
    return platform::wide_to_bytes(wide, cp);
}

QString from_path(const std::string& path) {
    return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}

std::string to_path(const QString& path) { return QFile::encodeName(path).toStdString(); }

void QtPrompt::set_progress_bar(QProgressBar* bar) { bar_ = bar; }
void QtPrompt::set_status_label(QLabel* label) { label_ = label; }
void QtPrompt::set_parent(QWidget* parent) { parent_ = parent; }

QMessageBox::StandardButton QtPrompt::ask(QMessageBox::Icon icon, const std::string& text,
                                          QMessageBox::StandardButtons buttons,
                                          QMessageBox::StandardButton escape) {
    QMessageBox box(icon, QString::fromLatin1(k_box_title), from_message(text), buttons, parent_);
    box.setEscapeButton(escape);
    const auto pressed = answerer_ ? answerer_(box) : static_cast<QMessageBox::StandardButton>(box.exec());
    // Closing the window by its frame gives no button at all.
    return buttons.testFlag(pressed) ? pressed : escape;
}

void QtPrompt::message(const std::string& text) {
    ask(QMessageBox::Information, text, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtPrompt::yes_no(const std::string& text) {
    return ask(QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

platform::Answer QtPrompt::yes_no_cancel(const std::string& text) {
    switch (ask(QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                QMessageBox::Cancel)) {
        case QMessageBox::Yes: return platform::Answer::yes;
        case QMessageBox::No: return platform::Answer::no;
        default: return platform::Answer::cancel;
    }
}

void QtPrompt::progress(int percent) {
    if (!bar_) return;
    bar_->setValue(percent > 0 ? std::min(percent, 100) : 0);
    // The loop that reports progress holds the event queue; without this the
    // bar would only move when the loop ends. User input waits, so no command
    // can start in the middle of a load.
    bar_->repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtPrompt::status(const std::string& text) {
    if (label_) label_->setText(from_message(text));
}

void QtPrompt::report(const std::string& title, const std::string& text) {
    auto* w = new ReportWindow(title, text, parent_);
    w->show();
    w->raise();
    report_ = w;
}

}  // namespace korvex::gui
