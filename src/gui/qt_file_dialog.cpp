#include "gui/qt_file_dialog.h"

#include <QFileDialog>

#include "gui/qt_prompt.h"

namespace korvex::gui {

QString qt_filters(const std::vector<std::string>& filters) {
    QStringList list;
    for (const auto& f : filters) {
        // Qt wants the patterns of a filter apart by blanks and the filter
        // ending in its bracket: "(*.png;*.gif;)" becomes "(*.png *.gif )".
        QString q = from_message(f).trimmed();
        const qsizetype open = q.lastIndexOf(QLatin1Char('('));
        if (open >= 0) q = q.left(open) + q.mid(open).replace(QLatin1Char(';'), QLatin1Char(' '));
        list << q;
    }
    return list.join(QStringLiteral(";;"));
}

namespace {

// The flows write Windows-style separators in paths they build; the desktop
// wants its own.
QString native_start(const std::string& start) {
    QString s = from_path(start);
#ifndef Q_OS_WIN
    s.replace(QLatin1Char('\\'), QLatin1Char('/'));
#endif
    return s;
}

QFileDialog::Options options(bool native) {
    // The flows ask "File exists." and "Replace this file?" themselves.
    QFileDialog::Options o = QFileDialog::DontConfirmOverwrite;
    if (!native) o |= QFileDialog::DontUseNativeDialog;
    return o;
}

}  // namespace

std::string QtFileDialog::open_file(const std::string& title, const std::vector<std::string>& filters,
                                    const std::string& start) {
    const QString chosen = QFileDialog::getOpenFileName(parent_, from_message(title), native_start(start),
                                                        qt_filters(filters), nullptr, options(native_));
    return to_path(chosen);
}

std::string QtFileDialog::save_file(const std::string& title, const std::vector<std::string>& filters,
                                    const std::string& proposed) {
    const QString chosen = QFileDialog::getSaveFileName(parent_, from_message(title), native_start(proposed),
                                                        qt_filters(filters), nullptr, options(native_));
    return to_path(chosen);
}

}  // namespace korvex::gui
